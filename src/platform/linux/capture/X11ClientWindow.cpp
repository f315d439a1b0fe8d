// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/X11ClientWindow.h"

#include "platform/linux/XcbSupport.h"

namespace tolvane::x11 {

std::optional<QRect> clientWindowRectAt(int rootX, int rootY)
{
    xcb_connection_t* c = connection();
    if (!c)
        return std::nullopt;
    const xcb_window_t root = rootWindow(c);
    if (root == XCB_WINDOW_NONE)
        return std::nullopt;
    const xcb_window_t under = topLevelAt(c, root, rootX, rootY);
    if (under == XCB_WINDOW_NONE)
        return std::nullopt;
    const xcb_atom_t pidAtom = atom(c, "_NET_WM_PID", /*onlyIfExists=*/true);
    if (pidAtom == XCB_ATOM_NONE)
        return std::nullopt;
    // The client is the window that names its process.
    const auto client = searchTree(c, under, 2, [&](xcb_window_t w) -> std::optional<xcb_window_t> {
        if (cardinalProperty(c, w, pidAtom, XCB_ATOM_CARDINAL))
            return w;
        return std::nullopt;
    });
    if (!client)
        return std::nullopt;
    Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(c, xcb_get_geometry(c, *client), nullptr));
    Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(c, xcb_translate_coordinates(c, *client, root, 0, 0), nullptr));
    if (!geometry || !origin || geometry->width == 0 || geometry->height == 0)
        return std::nullopt;
    return QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
}

} // namespace tolvane::x11
