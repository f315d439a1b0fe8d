// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/HotkeyKeycaps.h"

#include "core/hotkeys/KeyNames.h"
#include "core/support/PlatformWording.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace tolvane {

namespace {
// Room below the caps for their shadow.
constexpr qreal shadowOffset = 1;
} // namespace

HotkeyKeycaps::HotkeyKeycaps(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

HotkeyKeycaps::HotkeyKeycaps(const QString& displayString, qreal pointSize, QWidget* parent)
    : HotkeyKeycaps(parent)
{
    m_pointSize = pointSize;
    setDisplayString(displayString);
}

void HotkeyKeycaps::setDisplayString(const QString& displayString)
{
    m_displayString = displayString;
    setAccessibleName(keysOnThisPlatform(displayString));
    updateGeometry();
    update();
}

void HotkeyKeycaps::setPointSize(qreal pointSize)
{
    m_pointSize = pointSize > 0 ? pointSize : 13;
    updateGeometry();
    update();
}

QStringList HotkeyKeycaps::keycaps() const
{
    // The caps say the keys as this desktop's keyboards print them: Ctrl, Alt, Shift, Super.
    QStringList caps = keycapLabels(m_displayString);
    for (QString& cap : caps)
        cap = keysOnThisPlatform(cap);
    return caps;
}

QFont HotkeyKeycaps::keycapFont() const
{
    QFont font = this->font();
    // Sizes are in layout points, which are Qt's logical pixels.
    font.setPixelSize(std::max(1, int(std::lround(m_pointSize))));
    font.setWeight(QFont::DemiBold);
    return font;
}

QList<QSizeF> HotkeyKeycaps::keycapSizes() const
{
    const QFontMetricsF metrics(keycapFont());
    const qreal minimum = 2 * m_pointSize;
    QList<QSizeF> sizes;
    for (const QString& cap : keycaps()) {
        // Names get room on both sides so that "Space" does not touch its edges; symbols do not.
        const qreal padding = cap.size() > 1 ? 2 * wordPadding : 0;
        const qreal width = std::max(minimum, std::ceil(metrics.horizontalAdvance(cap)) + padding);
        const qreal height = std::max(minimum, std::ceil(metrics.height()));
        sizes.append(QSizeF(width, height));
    }
    return sizes;
}

QList<QRectF> HotkeyKeycaps::keycapRects() const
{
    QList<QRectF> rects;
    qreal x = 0;
    const qreal rowHeight = height() - shadowOffset;
    for (const QSizeF& size : keycapSizes()) {
        rects.append(QRectF(QPointF(x, (rowHeight - size.height()) / 2), size));
        x += size.width() + spacing;
    }
    return rects;
}

QSize HotkeyKeycaps::sizeHint() const
{
    qreal width = 0;
    qreal height = 0;
    const QList<QSizeF> sizes = keycapSizes();
    for (const QSizeF& size : sizes) {
        width += size.width();
        height = std::max(height, size.height());
    }
    if (!sizes.isEmpty())
        width += spacing * qreal(sizes.size() - 1);
    return QSize(int(std::ceil(width)), int(std::ceil(height + shadowOffset)));
}

void HotkeyKeycaps::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(keycapFont());
    const QStringList caps = keycaps();
    const QList<QRectF> rects = keycapRects();
    const QColor background = palette().color(QPalette::Button);
    QColor separator = palette().color(QPalette::WindowText);
    separator.setAlphaF(0.15f);
    for (qsizetype i = 0; i < caps.size(); ++i) {
        const QRectF cap = rects.at(i).adjusted(0.5, 0.5, -0.5, -0.5);
        // A soft shadow: the cap's outline a point lower, faint black.
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, int(0.18 * 255)));
        painter.drawRoundedRect(cap.translated(0, shadowOffset), cornerRadius, cornerRadius);
        painter.setBrush(background);
        painter.setPen(QPen(separator, 1));
        painter.drawRoundedRect(cap, cornerRadius, cornerRadius);
        painter.setPen(palette().color(QPalette::ButtonText));
        painter.drawText(rects.at(i), Qt::AlignCenter, caps.at(i));
    }
}

void HotkeyKeycaps::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange) {
        updateGeometry();
        update();
    }
    QWidget::changeEvent(event);
}

} // namespace tolvane
