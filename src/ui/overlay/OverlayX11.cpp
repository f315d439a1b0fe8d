// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/OverlayX11.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QHash>
#include <QWidget>

#include <xcb/xcb.h>

#include <sys/uio.h>
#include <xcb/xcbext.h>

#include <cstdlib>
#include <memory>
#include <vector>

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

// The shape extension's request number, or 0 without the extension.
quint8 shapeOpcode(xcb_connection_t* c)
{
    static int opcode = -1;
    if (opcode < 0) {
        static const char name[] = "SHAPE";
        const Reply<xcb_query_extension_reply_t> reply(
            xcb_query_extension_reply(c, xcb_query_extension(c, sizeof(name) - 1, name), nullptr));
        opcode = reply && reply->present ? reply->major_opcode : 0;
    }
    return quint8(opcode);
}

} // namespace

bool setDevicePixelShape(QWidget* window, const QList<QRect>& rectangles)
{
    xcb_connection_t* c = connection();
    if (!c || !window)
        return false;
    const quint8 opcode = shapeOpcode(c);
    if (opcode == 0)
        return false;
    // ShapeRectangles (minor 1): operation Set, kind Bounding (which also bounds input), unsorted.
    // libxcb-shape would send exactly these bytes; core libxcb sends them without another library.
    struct
    {
        quint8 major;
        quint8 minor;
        quint16 length;
        quint8 operation;
        quint8 kind;
        quint8 ordering;
        quint8 pad;
        quint32 window;
        qint16 xOffset;
        qint16 yOffset;
    } header{opcode, 1, 0, 0, 0, 0, 0, quint32(window->winId()), 0, 0};
    std::vector<xcb_rectangle_t> rects;
    rects.reserve(std::size_t(rectangles.size()));
    for (const QRect& r : rectangles)
        rects.push_back({qint16(r.x()), qint16(r.y()), quint16(r.width()), quint16(r.height())});
    iovec parts[4];
    parts[2].iov_base = &header;
    parts[2].iov_len = sizeof(header);
    parts[3].iov_base = rects.data();
    parts[3].iov_len = rects.size() * sizeof(xcb_rectangle_t);
    const xcb_protocol_request_t request{2, nullptr, opcode, 1};
    xcb_send_request(c, 0, &parts[2], &request);
    xcb_flush(c);
    return true;
}

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
