// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/AppIcon.h"

#include <QFont>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace tolvane {

namespace {

QPainterPath bubbleOutline(qreal s)
{
    QPainterPath bubble;
    bubble.addRoundedRect(QRectF(s * 0.06, s * 0.08, s * 0.88, s * 0.68), s * 0.2, s * 0.2);
    QPainterPath tail;
    tail.moveTo(s * 0.26, s * 0.70);
    tail.lineTo(s * 0.20, s * 0.94);
    tail.lineTo(s * 0.48, s * 0.72);
    tail.closeSubpath();
    return bubble.united(tail);
}

QFont letterFont(qreal s)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setBold(true);
    font.setPixelSize(qMax(6, int(s * 0.46)));
    return font;
}

QPixmap drawMonochromeMark(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal s = size;
    // The letter is cut out of the bubble, so the panel shows through it whatever its colour.
    QPainterPath letter;
    letter.addText(QPointF(), letterFont(s), QStringLiteral("A"));
    const QRectF box = letter.boundingRect();
    letter.translate(QPointF(s * 0.5, s * 0.42) - box.center());
    const QPainterPath mark = bubbleOutline(s).subtracted(letter);
    p.setPen(QPen(QColor(0x20, 0x20, 0x20, 200), qMax(1.0, s / 16.0)));
    p.setBrush(QColor(0xF2, 0xF2, 0xF2));
    p.drawPath(mark);
    return pixmap;
}

QPixmap drawMark(int size)
{
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);

    const qreal s = size;
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0x2F, 0x6F, 0xEB));
    p.drawPath(bubbleOutline(s));

    p.setFont(letterFont(s));
    p.setPen(Qt::white);
    p.drawText(QRectF(s * 0.06, s * 0.08, s * 0.88, s * 0.68), Qt::AlignCenter, QStringLiteral("A"));
    return pixmap;
}

} // namespace

QIcon trayIcon()
{
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(drawMonochromeMark(size));
    return icon;
}

QIcon appIcon()
{
    QIcon icon;
    for (int size : {16, 22, 24, 32, 48, 64, 128})
        icon.addPixmap(drawMark(size));
    return icon;
}

} // namespace tolvane
