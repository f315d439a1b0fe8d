// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/X11ClientWindow.h"

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

bool hasProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property)
{
    Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, property, XCB_ATOM_CARDINAL, 0, 1), nullptr));
    return reply && xcb_get_property_value_length(reply.get()) >= 4;
}

// The window manager's frame holds the client a level or two down.
xcb_window_t clientIn(xcb_connection_t* c, xcb_window_t window, xcb_atom_t pidAtom, int depth)
{
    if (hasProperty(c, window, pidAtom))
        return window;
    if (depth == 0)
        return XCB_WINDOW_NONE;
    Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (!tree)
        return XCB_WINDOW_NONE;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i) {
        if (const xcb_window_t client = clientIn(c, children[i], pidAtom, depth - 1); client != XCB_WINDOW_NONE)
            return client;
    }
    return XCB_WINDOW_NONE;
}

} // namespace

std::optional<QRect> clientWindowRectAt(int rootX, int rootY)
{
    xcb_connection_t* c = connection();
    if (!c)
        return std::nullopt;
    const xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(c));
    if (!screens.rem)
        return std::nullopt;
    const xcb_window_t root = screens.data->root;
    Reply<xcb_translate_coordinates_reply_t> under(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, root, root, static_cast<int16_t>(rootX), static_cast<int16_t>(rootY)),
        nullptr));
    if (!under || under->child == XCB_WINDOW_NONE)
        return std::nullopt;
    const char name[] = "_NET_WM_PID";
    Reply<xcb_intern_atom_reply_t> pidAtom(
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 1, uint16_t(std::strlen(name)), name), nullptr));
    if (!pidAtom || pidAtom->atom == XCB_ATOM_NONE)
        return std::nullopt;
    const xcb_window_t client = clientIn(c, under->child, pidAtom->atom, 2);
    if (client == XCB_WINDOW_NONE)
        return std::nullopt;
    Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, client), nullptr));
    Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, client, root, 0, 0), nullptr));
    if (!geometry || !origin || geometry->width == 0 || geometry->height == 0)
        return std::nullopt;
    return QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
}

} // namespace tolvane::x11
