// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AppIcon.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tolvane {

namespace {

QPixmap drawMark(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);

    const qreal s = size;
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(s * 0.06, s * 0.08, s * 0.88, s * 0.68), s * 0.2, s * 0.2);
    QPainterPath tail;
    tail.moveTo(s * 0.26, s * 0.70);
    tail.lineTo(s * 0.20, s * 0.94);
    tail.lineTo(s * 0.48, s * 0.72);
    tail.closeSubpath();
    bubble = bubble.united(tail);

    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2F, 0x6F, 0xEB));
    p.drawPath(bubble);

    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(qMax(6, int(s * 0.46)));
    p.setFont(font);
    p.setPen(Qt::white);
    p.drawText(QRectF(s * 0.06, s * 0.08, s * 0.88, s * 0.68), Qt::AlignCenter, QStringLiteral("A"));
    return pixmap;
}

} // namespace

QIcon appIcon()
{
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(drawMark(size));
    return icon;
}

} // namespace tolvane
