// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/setup/SetupSymbols.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tolvane {

void drawSetupSymbol(QPainter& painter, SetupSymbol symbol, const QRectF& rect)
{
    const qreal s = rect.width();
    const QPointF o = rect.topLeft();
    auto at = [&](qreal x, qreal y) { return o + QPointF(x * s, y * s); };
    const QColor ink = painter.pen().color();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(ink, std::max<qreal>(1.0, s * 0.09), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    switch (symbol) {
    case SetupSymbol::keyboard:
        painter.drawRoundedRect(QRectF(at(0.05, 0.22), at(0.95, 0.78)), s * 0.1, s * 0.1);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        for (int row = 0; row < 2; ++row) {
            for (int col = 0; col < 4; ++col)
                painter.drawRect(QRectF(at(0.18 + col * 0.18, 0.33 + row * 0.14), QSizeF(s * 0.09, s * 0.08)));
        }
        painter.drawRect(QRectF(at(0.3, 0.62), QSizeF(s * 0.4, s * 0.07)));
        break;
    case SetupSymbol::appearance: {
        const QRectF circle(at(0.1, 0.1), at(0.9, 0.9));
        painter.drawEllipse(circle);
        QPainterPath half;
        half.moveTo(circle.center());
        half.arcTo(circle, 90, 180);
        half.closeSubpath();
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        painter.drawPath(half);
        break;
    }
    case SetupSymbol::quote:
        painter.setPen(Qt::NoPen);
        painter.setBrush(ink);
        for (qreal x : {0.12, 0.55}) {
            painter.drawEllipse(QRectF(at(x, 0.3), QSizeF(s * 0.28, s * 0.28)));
            QPainterPath tail;
            tail.moveTo(at(x + 0.02, 0.48));
            tail.quadTo(at(x + 0.08, 0.78), at(x + 0.3, 0.8));
            tail.lineTo(at(x + 0.28, 0.42));
            tail.closeSubpath();
            painter.drawPath(tail);
        }
        break;
    case SetupSymbol::accessibility:
        painter.setBrush(ink);
        painter.drawEllipse(at(0.5, 0.14), s * 0.09, s * 0.09);
        painter.setBrush(Qt::NoBrush);
        painter.drawLine(at(0.14, 0.34), at(0.86, 0.34));
        painter.drawLine(at(0.5, 0.34), at(0.5, 0.6));
        painter.drawLine(at(0.5, 0.6), at(0.3, 0.92));
        painter.drawLine(at(0.5, 0.6), at(0.7, 0.92));
        break;
    case SetupSymbol::viewfinder: {
        const qreal c = 0.25;
        painter.drawPolyline(QPolygonF{at(0.08, 0.08 + c), at(0.08, 0.08), at(0.08 + c, 0.08)});
        painter.drawPolyline(QPolygonF{at(0.92 - c, 0.08), at(0.92, 0.08), at(0.92, 0.08 + c)});
        painter.drawPolyline(QPolygonF{at(0.08, 0.92 - c), at(0.08, 0.92), at(0.08 + c, 0.92)});
        painter.drawPolyline(QPolygonF{at(0.92 - c, 0.92), at(0.92, 0.92), at(0.92, 0.92 - c)});
        painter.drawLine(at(0.3, 0.42), at(0.7, 0.42));
        painter.drawLine(at(0.3, 0.6), at(0.6, 0.6));
        break;
    }
    case SetupSymbol::power: {
        const QRectF ring(at(0.18, 0.22), at(0.82, 0.86));
        painter.drawArc(ring, 120 * 16, -240 * 16);
        painter.drawLine(at(0.5, 0.1), at(0.5, 0.5));
        break;
    }
    case SetupSymbol::arrowDown:
        painter.drawEllipse(QRectF(at(0.1, 0.1), at(0.9, 0.9)));
        painter.drawLine(at(0.5, 0.26), at(0.5, 0.72));
        painter.drawLine(at(0.32, 0.54), at(0.5, 0.72));
        painter.drawLine(at(0.68, 0.54), at(0.5, 0.72));
        break;
    case SetupSymbol::timer:
        painter.drawEllipse(QRectF(at(0.12, 0.18), at(0.88, 0.94)));
        painter.drawLine(at(0.4, 0.06), at(0.6, 0.06));
        painter.drawLine(at(0.5, 0.56), at(0.5, 0.34));
        painter.drawLine(at(0.5, 0.56), at(0.66, 0.66));
        break;
    case SetupSymbol::bell: {
        QPainterPath bell;
        bell.moveTo(at(0.16, 0.74));
        bell.quadTo(at(0.26, 0.64), at(0.26, 0.46));
        bell.cubicTo(at(0.26, 0.14), at(0.74, 0.14), at(0.74, 0.46));
        bell.quadTo(at(0.74, 0.64), at(0.84, 0.74));
        bell.closeSubpath();
        painter.setBrush(ink);
        painter.drawPath(bell);
        painter.drawEllipse(at(0.5, 0.84), s * 0.07, s * 0.05);
        painter.drawEllipse(at(0.82, 0.2), s * 0.1, s * 0.1);
        break;
    }
    }
    painter.restore();
}

QIcon setupSymbolIcon(SetupSymbol symbol)
{
    QIcon icon;
    for (int side : {13, 26, 39}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setPen(Qt::black);
        drawSetupSymbol(painter, symbol, QRectF(0, 0, side, side));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace tolvane
