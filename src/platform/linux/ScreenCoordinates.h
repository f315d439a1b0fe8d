// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>

// Qt, X11 and AT-SPI put the origin at the top-left and y downward; Tolvane's logic uses points
// with the origin at the bottom-left of the primary screen and y upward. These are the only
// conversions between the two.
namespace tolvane::screen {

double primaryHeight();
QPointF fromQt(QPointF logical);
QRectF fromQt(const QRectF& logical);
QPointF toQt(QPointF point);
QRectF toQt(const QRectF& rect);
// X11 and AT-SPI speak in device pixels; Qt in logical pixels.
double scaleAt(QPointF logical);

} // namespace tolvane::screen
