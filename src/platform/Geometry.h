// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QRectF>

// Geometry in Tolvane's logic is in points with the origin at the bottom-left of the primary
// screen and y growing upward. Platform code converts once, at its edge.
namespace tolvane {

struct ScreenInfo
{
    QRectF frame;        // whole screen
    QRectF visibleFrame; // without panels and docks
    double scale = 1.0;  // device pixels per point
};

} // namespace tolvane
