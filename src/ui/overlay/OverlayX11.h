// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

class QWidget;

// What the floating cards ask of the X server. Nothing happens off X11 (offscreen, Wayland).
namespace tolvane::overlayx11 {

// Whether a compositing manager runs on the card's screen: only then can a card be translucent.
bool compositingManagerRuns();
// Marks a card's window, before each map, as on every desktop, above others, out of the taskbar
// and the pager, and as never taking input focus.
void markFloatingCard(QWidget* window);

} // namespace tolvane::overlayx11
