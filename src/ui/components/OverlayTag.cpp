// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/OverlayTag.h"

#include "ui/components/TextStyle.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tolvane {

namespace {
QFont tagFont()
{
    QFont font = pointSizeFont(9, QFont::Bold);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0.4);
    return font;
}
} // namespace

OverlayTag::OverlayTag(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(tagFont());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

OverlayTag::OverlayTag(const QString& text, const QColor& tint, QWidget* parent)
    : OverlayTag(parent)
{
    m_tint = tint;
    setTagText(text);
}

void OverlayTag::setTint(const QColor& tint)
{
    if (tint == m_tint)
        return;
    m_tint = tint;
    update();
}

void OverlayTag::setTagText(const QString& text)
{
    if (text == this->text())
        return;
    setText(text);
    setAccessibleName(text);
    updateGeometry();
}

QSize OverlayTag::sizeHint() const
{
    const QFontMetricsF metrics(font());
    const double width = metrics.horizontalAdvance(text()) + 2 * horizontalPadding;
    const double height = metrics.height() + 2 * verticalPadding;
    return {int(std::ceil(width)), int(std::ceil(height))};
}

void OverlayTag::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF bounds = QRectF(rect());
    QColor fill = m_tint;
    fill.setAlphaF(float(m_tint.alphaF() * fillOpacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    const double radius = bounds.height() / 2;
    painter.drawRoundedRect(bounds, radius, radius);
    painter.setPen(m_tint);
    painter.setFont(font());
    // Cut to the capsule when the card gives the tag less than it asks for.
    const QRectF inside = bounds.adjusted(horizontalPadding, 0, -horizontalPadding, 0);
    const QString shown = QFontMetricsF(font()).elidedText(text(), Qt::ElideRight, inside.width());
    painter.drawText(inside, Qt::AlignCenter | Qt::TextSingleLine, shown);
}

} // namespace tolvane
