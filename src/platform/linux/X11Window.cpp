// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/X11Window.h"

#include "platform/linux/XcbSupport.h"

namespace tolvane::x11 {

namespace {

std::optional<qint64> pidInTree(xcb_connection_t* c, xcb_window_t window)
{
    const xcb_atom_t pidAtom = atom(c, "_NET_WM_PID");
    return searchTree(c, window, 2, [&](xcb_window_t w) -> std::optional<qint64> {
        if (auto pid = cardinalProperty(c, w, pidAtom, XCB_ATOM_CARDINAL))
            return qint64(*pid);
        return std::nullopt;
    });
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
    return pidInTree(c, *active);
}

std::optional<qint64> processIdAt(int rootX, int rootY)
{
    xcb_connection_t* c = connection();
    if (!c)
        return std::nullopt;
    const xcb_window_t under = topLevelAt(c, rootWindow(c), rootX, rootY);
    if (under == XCB_WINDOW_NONE)
        return std::nullopt;
    return pidInTree(c, under);
}

} // namespace tolvane::x11
