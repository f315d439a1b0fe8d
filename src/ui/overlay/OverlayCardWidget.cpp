// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/OverlayCardWidget.h"

#include "core/overlay/OverlayGeometry.h"
#include "ui/overlay/OverlayX11.h"

#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QRegion>

#include <algorithm>
#include <cmath>

namespace tolvane {

using namespace overlay;

namespace {

QColor withAlpha(QColor color, double alpha)
{
    color.setAlphaF(float(alpha));
    return color;
}

} // namespace

OverlayPalette OverlayPalette::current(bool translucent)
{
    const QPalette palette = QApplication::palette();
    OverlayPalette p;
    p.dark = palette.color(QPalette::Window).lightnessF() < 0.5;
    const QColor ink = p.dark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    if (p.dark) {
        p.material = QColor(38, 38, 40);
        p.primary = withAlpha(ink, 0.88);
        p.secondary = withAlpha(ink, 0.55);
        p.tertiary = withAlpha(ink, 0.28);
        p.blue = QColor(10, 132, 255);
        p.purple = QColor(191, 90, 242);
        p.green = QColor(50, 215, 75);
    } else {
        p.material = QColor(246, 246, 247);
        p.primary = withAlpha(ink, 0.85);
        p.secondary = withAlpha(ink, 0.50);
        p.tertiary = withAlpha(ink, 0.26);
        p.blue = QColor(0, 122, 255);
        p.purple = QColor(175, 82, 222);
        p.green = QColor(40, 205, 65);
    }
    // The desktop's own accent, as its selection colour shows it.
    p.accent = palette.color(QPalette::Active, QPalette::Highlight);
    if (translucent)
        p.material.setAlphaF(0.97f);
    return p;
}

QColor OverlayPalette::tint(HoverOverlayView::Tint tint) const
{
    switch (tint) {
    case HoverOverlayView::Tint::blue:
        return blue;
    case HoverOverlayView::Tint::accent:
        return accent;
    case HoverOverlayView::Tint::purple:
        return purple;
    case HoverOverlayView::Tint::green:
        return green;
    case HoverOverlayView::Tint::secondary:
        break;
    }
    return secondary;
}

OverlayCardWidget::OverlayCardWidget(QWidget* parent)
    : QWidget(parent, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus | Qt::WindowStaysOnTopHint |
                          Qt::NoDropShadowWindowHint)
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11DoNotAcceptFocus);
    setAttribute(Qt::WA_X11NetWmWindowTypeToolTip);
    setFocusPolicy(Qt::NoFocus);
    chooseTranslucency();
}

void OverlayCardWidget::chooseTranslucency()
{
    const bool translucent = overlayx11::compositingManagerRuns();
    if (translucent == m_translucent && m_palette.material.isValid())
        return;
    const QRect card = cardGeometry();
    m_translucent = translucent;
    m_palette = OverlayPalette::current(m_translucent);
    if (testAttribute(Qt::WA_WState_Created)) {
        // The visual is chosen when the native window is made: make it again.
        const bool wasVisible = isVisible();
        hide();
        destroy();
        setAttribute(Qt::WA_TranslucentBackground, m_translucent);
        create();
        setCardGeometry(card);
        if (wasVisible)
            orderFront();
    } else {
        setAttribute(Qt::WA_TranslucentBackground, m_translucent);
        setAutoFillBackground(false);
    }
    updateShape();
    paletteChanged();
    update();
}

void OverlayCardWidget::prepareWindow()
{
    chooseTranslucency();
    winId();
    updateShape();
    overlayx11::markFloatingCard(this);
}

QMargins OverlayCardWidget::shadowMargins() const
{
    if (!m_translucent)
        return {};
    const int blur = int(std::ceil(cardShadowRadius));
    const int offset = int(std::ceil(cardShadowOffset));
    return {blur, blur - offset, blur, blur + offset};
}

void OverlayCardWidget::setCardGeometry(const QRect& card)
{
    setGeometry(card.marginsAdded(shadowMargins()));
}

void OverlayCardWidget::placeAt(const QRectF& frame, const QList<ScreenInfo>& screens)
{
    if (const auto geometry = toTopLeft(frame, screens))
        setCardGeometry(*geometry);
    else
        setCardGeometry(QRect(cardGeometry().topLeft(), frame.size().toSize()));
}

QRect OverlayCardWidget::cardGeometry() const
{
    return geometry().marginsRemoved(shadowMargins());
}

QRect OverlayCardWidget::cardRect() const
{
    return rect().marginsRemoved(shadowMargins());
}

QRect OverlayCardWidget::contentRect() const
{
    const int padding = int(cardPadding);
    return cardRect().adjusted(padding, padding, -padding, -padding);
}

void OverlayCardWidget::orderFront()
{
    // A compositing manager may have come or gone since the last show.
    chooseTranslucency();
    winId();
    updateShape();
    overlayx11::markFloatingCard(this);
    if (!isVisible())
        show();
    keepOnTop();
}

void OverlayCardWidget::keepOnTop()
{
    // The card is not managed by the window manager, so nothing keeps it above a window raised
    // after it (a full-screen player taking the screen): it raises itself on every change.
    if (isVisible() && QGuiApplication::platformName() == QLatin1String("xcb"))
        raise();
}

void OverlayCardWidget::setBorderTint(const QColor& tint)
{
    if (tint == m_borderTint)
        return;
    m_borderTint = tint;
    update();
}

void OverlayCardWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    updateShape();
}

void OverlayCardWidget::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) {
        m_palette = OverlayPalette::current(m_translucent);
        paletteChanged();
        update();
    }
    QWidget::changeEvent(event);
}

void OverlayCardWidget::updateShape()
{
    // Only X windows take a shape; elsewhere (offscreen pictures) the card is drawn as it is. A
    // window not yet made gets its shape when it is.
    if (!testAttribute(Qt::WA_WState_Created))
        return;
    if (m_translucent || QGuiApplication::platformName() != QLatin1String("xcb")) {
        clearMask();
        return;
    }
    // Without a compositor the window is cut to the card. X shapes are whole device pixels: a
    // pixel is kept when its centre lies inside the rounded card, so the edge follows the curve at
    // any device pixel ratio and the border's antialiasing blends into the card's own colour.
    const double ratio = devicePixelRatioF();
    const QRect card(
        QPoint(int(std::lround(cardRect().x() * ratio)), int(std::lround(cardRect().y() * ratio))),
        QSize(int(std::lround(cardRect().width() * ratio)), int(std::lround(cardRect().height() * ratio))));
    const double radius = std::min({cardCornerRadius * ratio, card.width() / 2.0, card.height() / 2.0});
    const int rows = int(std::ceil(radius));
    QList<QRect> rectangles{card.adjusted(0, rows, 0, -rows)};
    for (int row = 0; row < rows; ++row) {
        const double dy = radius - (row + 0.5);
        const double inset = dy > 0 ? radius - std::sqrt(radius * radius - dy * dy) : 0;
        const int first = int(std::ceil(inset - 0.5));
        const int width = card.width() - 2 * first;
        rectangles.append(QRect(card.left() + first, card.top() + row, width, 1));
        rectangles.append(QRect(card.left() + first, card.bottom() - row, width, 1));
    }
    if (overlayx11::setDevicePixelShape(this, rectangles))
        return;
    QRegion region;
    for (const QRect& r : std::as_const(rectangles))
        region += QRect((QPointF(r.topLeft()) / ratio).toPoint(),
                        (QSizeF(r.size()) / ratio).toSize().expandedTo(QSize(1, 1)));
    setMask(region);
}

void OverlayCardWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF card = QRectF(cardRect());

    if (m_translucent) {
        // A soft shadow: concentric rounded outlines fading out over the blur radius, offset down.
        const QRectF shadowCard = card.translated(0, cardShadowOffset);
        const int steps = int(cardShadowRadius);
        painter.setPen(Qt::NoPen);
        for (int i = steps; i >= 1; --i) {
            const double t = double(i) / steps;
            const double alpha = cardShadowOpacity * (1 - t) * (1 - t) / steps * 2.2;
            painter.setBrush(QColor(0, 0, 0, int(std::lround(255 * alpha))));
            const QRectF grown = shadowCard.adjusted(-i, -i, i, i);
            painter.drawRoundedRect(grown, cardCornerRadius + i, cardCornerRadius + i);
        }
    } else if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        // Fill the whole shaped window first, so the pixels at the rim are the card's colour.
        // (Elsewhere there is no shape, and a picture of the card keeps its corners clear.)
        QColor opaque = m_palette.material;
        opaque.setAlpha(255);
        painter.fillRect(rect(), opaque);
    }

    painter.setPen(Qt::NoPen);
    painter.setBrush(m_palette.material);
    painter.drawRoundedRect(card, cardCornerRadius, cardCornerRadius);

    // The border lies inside the card's edge.
    QColor border = m_borderTint.isValid() ? m_borderTint : m_palette.secondary;
    border.setAlphaF(float(border.alphaF() * cardBorderOpacity));
    const double inset = cardBorderWidth / 2;
    QPen pen(border, cardBorderWidth);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(card.adjusted(inset, inset, -inset, -inset), cardCornerRadius - inset,
                            cardCornerRadius - inset);
}

} // namespace tolvane
