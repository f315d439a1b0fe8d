// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

#include <optional>

namespace tolvane::x11 {

// Where the application window of the top-level window under a root-window point is, in root
// device pixels: the window inside the window manager's frame, the one that names its process.
// Applications that scale themselves report their accessible geometry in their own pixels; this
// is the measure to compare it with.
std::optional<QRect> clientWindowRectAt(int rootX, int rootY);

} // namespace tolvane::x11
