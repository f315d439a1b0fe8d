// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QRect>

class QWidget;

// What the floating cards ask of the X server. Nothing happens off X11 (offscreen, Wayland).
namespace tolvane::overlayx11 {

// Whether a compositing manager runs on the card's screen: only then can a card be translucent.
bool compositingManagerRuns();
// Cuts the window to these rectangles, given in device pixels relative to the window (Qt's own
// masks are in logical pixels, so at a device pixel ratio of 2 a rounded corner would step by two
// pixels). Returns false where X has no shape extension; the caller then uses Qt's mask.
bool setDevicePixelShape(QWidget* window, const QList<QRect>& rectangles);
// Marks a card's window, before each map, as on every desktop, above others, out of the taskbar
// and the pager, and as never taking input focus.
void markFloatingCard(QWidget* window);

} // namespace tolvane::overlayx11
