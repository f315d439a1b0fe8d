// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/StatusBadge.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace tolvane {

namespace {
constexpr qreal dotSize = 6;
constexpr qreal horizontalPadding = 8;
constexpr qreal verticalPadding = 3;
constexpr qreal dotGap = 5;
} // namespace

StatusBadge::StatusBadge(QString onText, QString offText, QWidget* parent)
    : QLabel(parent)
    , m_onText(std::move(onText))
    , m_offText(std::move(offText))
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setText(currentText());
}

void StatusBadge::setOn(bool on)
{
    if (on == m_isOn)
        return;
    m_isOn = on;
    setText(currentText());
    updateGeometry();
    update();
}

QColor StatusBadge::onColor()
{
    return QColor(0x34, 0xC7, 0x59);
}

QColor StatusBadge::offColor()
{
    return QColor(0xFF, 0x95, 0x00);
}

QFont StatusBadge::badgeFont() const
{
    QFont f = font();
    f.setWeight(QFont::Medium);
    return f;
}

QSize StatusBadge::sizeHint() const
{
    const QFontMetricsF metrics(badgeFont());
    const qreal width =
        horizontalPadding + dotSize + dotGap + metrics.horizontalAdvance(currentText()) + horizontalPadding;
    const qreal height = std::max(dotSize, metrics.height()) + 2 * verticalPadding;
    return QSize(int(std::ceil(width)), int(std::ceil(height)));
}

void StatusBadge::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor tint = m_isOn ? onColor() : offColor();
    QColor capsule = tint;
    capsule.setAlphaF(0.13f);
    const QRectF bounds = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(capsule);
    painter.drawRoundedRect(bounds, bounds.height() / 2, bounds.height() / 2);
    painter.setBrush(tint);
    painter.drawEllipse(QRectF(horizontalPadding, (height() - dotSize) / 2, dotSize, dotSize));
    painter.setFont(badgeFont());
    // The text in the window's text colour keeps it readable on both light and dark windows.
    painter.setPen(palette().color(QPalette::WindowText));
    const QRectF textRect(horizontalPadding + dotSize + dotGap, 0, width() - horizontalPadding - dotSize - dotGap,
                          height());
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft, currentText());
}

void StatusBadge::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QLabel::changeEvent(event);
}

} // namespace tolvane
