// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/X11Window.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace tolvane::x11 {

namespace {

struct FreeDeleter
{
    void operator()(void* p) const { std::free(p); }
};
template <typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

xcb_connection_t* connection()
{
    auto* x11App = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11App ? x11App->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* c, const char* name)
{
    Reply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

std::optional<quint32> cardinalProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property, xcb_atom_t type)
{
    Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, property, type, 0, 1), nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < 4)
        return std::nullopt;
    return *static_cast<const quint32*>(xcb_get_property_value(reply.get()));
}

// Window managers put the client window inside a frame; look a few levels down for the pid.
std::optional<qint64> pidInTree(xcb_connection_t* c, xcb_window_t window, xcb_atom_t pidAtom, int depth)
{
    if (auto pid = cardinalProperty(c, window, pidAtom, XCB_ATOM_CARDINAL))
        return qint64(*pid);
    if (depth == 0)
        return std::nullopt;
    Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (!tree)
        return std::nullopt;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i) {
        if (auto pid = pidInTree(c, children[i], pidAtom, depth - 1))
            return pid;
    }
    return std::nullopt;
}

xcb_window_t rootWindow(xcb_connection_t* c)
{
    const xcb_setup_t* setup = xcb_get_setup(c);
    xcb_screen_iterator_t it = xcb_setup_roots_iterator(setup);
    return it.rem ? it.data->root : xcb_window_t(XCB_WINDOW_NONE);
}

} // namespace

bool available()
{
    return connection() != nullptr;
}

std::optional<qint64> activeWindowProcessId()
{
    xcb_connection_t* c = connection();
    if (!c)
        return std::nullopt;
    const auto active = cardinalProperty(c, rootWindow(c), atom(c, "_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW);
    if (!active || *active == XCB_WINDOW_NONE)
        return std::nullopt;
    return pidInTree(c, *active, atom(c, "_NET_WM_PID"), 2);
}

std::optional<qint64> processIdAt(int rootX, int rootY)
{
    xcb_connection_t* c = connection();
    if (!c)
        return std::nullopt;
    const xcb_window_t root = rootWindow(c);
    Reply<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, root, root, static_cast<int16_t>(rootX), static_cast<int16_t>(rootY)),
        nullptr));
    if (!reply || reply->child == XCB_WINDOW_NONE)
        return std::nullopt;
    return pidInTree(c, reply->child, atom(c, "_NET_WM_PID"), 2);
}

} // namespace tolvane::x11
