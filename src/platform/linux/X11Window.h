// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <optional>

// Small questions for the X server about other clients' windows. No X header reaches callers.
namespace tolvane::x11 {

// Whether Tolvane runs on an X11 connection at all.
bool available();
// _NET_ACTIVE_WINDOW's _NET_WM_PID.
std::optional<qint64> activeWindowProcessId();
// The process owning the top-level window under a root-window point in device pixels.
std::optional<qint64> processIdAt(int rootX, int rootY);

} // namespace tolvane::x11
