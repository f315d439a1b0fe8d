// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/ProgressSymbols.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include <cmath>

namespace tolvane {

namespace {

// A four-pointed star centred at (x, y) with arms of length r.
void addSparkle(QPainterPath& path, qreal x, qreal y, qreal r)
{
    const qreal waist = r * 0.22;
    path.moveTo(x, y - r);
    path.quadTo(x + waist, y - waist, x + r, y);
    path.quadTo(x + waist, y + waist, x, y + r);
    path.quadTo(x - waist, y + waist, x - r, y);
    path.quadTo(x - waist, y - waist, x, y - r);
    path.closeSubpath();
}

// Filled shapes on a 16 × 16 grid.
QPainterPath filledPath(ProgressSymbol symbol)
{
    QPainterPath p;
    switch (symbol) {
    case ProgressSymbol::sparkles:
        addSparkle(p, 6.5, 9, 5.5);
        addSparkle(p, 12.5, 4, 3);
        addSparkle(p, 13, 12.5, 2);
        break;
    case ProgressSymbol::star:
        for (int i = 0; i < 10; ++i) {
            const qreal angle = -M_PI / 2 + i * M_PI / 5;
            const qreal r = i % 2 ? 3.1 : 7.2;
            const QPointF point(8 + r * std::cos(angle), 8.6 + r * std::sin(angle));
            i ? p.lineTo(point) : p.moveTo(point);
        }
        p.closeSubpath();
        break;
    case ProgressSymbol::flame:
        p.moveTo(8, 1);
        p.cubicTo(9, 4, 13.5, 6, 13.5, 10);
        p.cubicTo(13.5, 13.2, 11, 15, 8, 15);
        p.cubicTo(5, 15, 2.5, 13.2, 2.5, 10);
        p.cubicTo(2.5, 7.5, 4, 6.5, 4.8, 5);
        p.cubicTo(5.2, 6.8, 6, 7.5, 6.6, 7.6);
        p.cubicTo(6.4, 5, 7, 3, 8, 1);
        p.closeSubpath();
        break;
    case ProgressSymbol::cardTower:
        p.addRoundedRect(QRectF(2, 9, 12, 5), 1.5, 1.5);
        p.addRoundedRect(QRectF(3.5, 5.2, 9, 3), 1.2, 1.2);
        p.addRoundedRect(QRectF(5, 2, 6, 2.4), 1, 1);
        break;
    default:
        break;
    }
    return p;
}

// Strokes on a 16 × 16 grid.
QPainterPath strokedPath(ProgressSymbol symbol)
{
    QPainterPath p;
    switch (symbol) {
    case ProgressSymbol::magnifier:
        p.addEllipse(QPointF(6.8, 6.8), 4.3, 4.3);
        p.moveTo(10, 10);
        p.lineTo(14, 14);
        p.moveTo(4.8, 5.6);
        p.lineTo(8.8, 5.6);
        p.moveTo(4.8, 8);
        p.lineTo(7.8, 8);
        break;
    case ProgressSymbol::cardStack:
        p.addRoundedRect(QRectF(2, 5.5, 12, 8.5), 1.5, 1.5);
        p.moveTo(3.5, 3.5);
        p.lineTo(12.5, 3.5);
        p.moveTo(5, 1.8);
        p.lineTo(11, 1.8);
        break;
    case ProgressSymbol::arrowDown:
        p.moveTo(8, 2);
        p.lineTo(8, 14);
        p.moveTo(3.5, 9.5);
        p.lineTo(8, 14);
        p.lineTo(12.5, 9.5);
        break;
    default:
        break;
    }
    return p;
}

QPixmap draw(ProgressSymbol symbol, const QColor& colour, int side, qreal ratio)
{
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 16.0, side / 16.0);
    painter.fillPath(filledPath(symbol), colour);
    painter.strokePath(strokedPath(symbol), QPen(colour, 1.7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    return pixmap;
}

} // namespace

QIcon progressSymbol(ProgressSymbol symbol, const QColor& colour)
{
    QIcon icon;
    // Each size drawn for itself, so small ones stay crisp on screens of any density.
    for (const int side : {13, 16, 20, 26, 32, 40, 48, 64, 96})
        icon.addPixmap(draw(symbol, colour, side, 1.0));
    return icon;
}

} // namespace tolvane
