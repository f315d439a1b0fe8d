// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/OverlayX11.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QHash>
#include <QWidget>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace tolvane::overlayx11 {

namespace {

struct FreeDeleter
{
    void operator()(void* reply) const { std::free(reply); }
};
template <typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

xcb_connection_t* connection()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* c, const char* name)
{
    static QHash<QByteArray, xcb_atom_t> cache;
    const QByteArray key(name);
    if (const auto it = cache.constFind(key); it != cache.cend())
        return *it;
    const Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, quint16(key.size()), key.constData()), nullptr));
    const xcb_atom_t value = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    if (value != XCB_ATOM_NONE)
        cache.insert(key, value);
    return value;
}

} // namespace

bool compositingManagerRuns()
{
    xcb_connection_t* c = connection();
    if (!c)
        return false;
    // The default screen's number is not exposed by Qt; Tolvane's cards live on screen 0 of the
    // display, which is every screen of a desktop that spans its monitors with RandR.
    const xcb_atom_t selection = atom(c, "_NET_WM_CM_S0");
    if (selection == XCB_ATOM_NONE)
        return false;
    const Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr));
    return reply && reply->owner != xcb_window_t(XCB_WINDOW_NONE);
}

void markFloatingCard(QWidget* window)
{
    xcb_connection_t* c = connection();
    if (!c || !window)
        return;
    const auto id = xcb_window_t(window->winId());
    const xcb_atom_t states[] = {atom(c, "_NET_WM_STATE_STICKY"), atom(c, "_NET_WM_STATE_ABOVE"),
                                 atom(c, "_NET_WM_STATE_SKIP_TASKBAR"), atom(c, "_NET_WM_STATE_SKIP_PAGER")};
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, atom(c, "_NET_WM_STATE"), XCB_ATOM_ATOM, 32, std::size(states),
                        states);
    const quint32 allDesktops = 0xFFFFFFFFu;
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, atom(c, "_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, 32, 1,
                        &allDesktops);
    // WM_HINTS: flags = InputHint (1), input = False. Qt sets the same for a window that does not
    // accept focus; saying it here keeps it true whatever Qt writes first.
    const quint32 hints[9] = {1, 0, 0, 0, 0, 0, 0, 0, 0};
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, 9, hints);
    xcb_flush(c);
}

} // namespace tolvane::overlayx11
