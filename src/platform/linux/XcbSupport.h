// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The small XCB pieces every X11 caller in the Linux platform layer needs: owned replies, the
// application's connection, atoms, properties and a bounded walk down a window tree. Only .cpp
// files of this layer include it, so no X header reaches the rest of the program.

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

namespace tolvane::x11 {

struct FreeDeleter
{
    void operator()(void* p) const { std::free(p); }
};
// XCB hands every reply over to be released with free().
template <typename T> using Reply = std::unique_ptr<T, FreeDeleter>;

// Null when Tolvane does not run on X11.
inline xcb_connection_t* connection()
{
    auto* x11App = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11App ? x11App->connection() : nullptr;
}

// With onlyIfExists the server answers XCB_ATOM_NONE instead of creating a name nobody set.
inline xcb_atom_t atom(xcb_connection_t* c, const char* name, bool onlyIfExists = false)
{
    Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        c, xcb_intern_atom(c, onlyIfExists ? 1 : 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

inline xcb_window_t rootWindow(xcb_connection_t* c)
{
    const xcb_screen_iterator_t it = xcb_setup_roots_iterator(xcb_get_setup(c));
    return it.rem ? it.data->root : xcb_window_t(XCB_WINDOW_NONE);
}

// The first 32-bit value of a property, when it is set.
inline std::optional<quint32> cardinalProperty(xcb_connection_t* c, xcb_window_t window, xcb_atom_t property,
                                               xcb_atom_t type)
{
    Reply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(c, xcb_get_property(c, 0, window, property, type, 0, 1), nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < 4)
        return std::nullopt;
    return *static_cast<const quint32*>(xcb_get_property_value(reply.get()));
}

// The root's child (a top-level window or its frame) under a point of the root window.
inline xcb_window_t topLevelAt(xcb_connection_t* c, xcb_window_t root, int rootX, int rootY)
{
    Reply<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, root, root, static_cast<int16_t>(rootX), static_cast<int16_t>(rootY)),
        nullptr));
    return reply ? reply->child : xcb_window_t(XCB_WINDOW_NONE);
}

// Window managers put the client window inside a frame a level or two down: asks `probe` of the
// window, then of its children topmost first, at most `depth` levels down.
template <typename Probe>
auto searchTree(xcb_connection_t* c, xcb_window_t window, int depth, const Probe& probe) -> decltype(probe(window))
{
    if (auto found = probe(window))
        return found;
    if (depth == 0)
        return std::nullopt;
    Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
    if (!tree)
        return std::nullopt;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i) {
        if (auto found = searchTree(c, children[i], depth - 1, probe))
            return found;
    }
    return std::nullopt;
}

} // namespace tolvane::x11
