// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/overlay/OverlayWidgets.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>

#include <cmath>

namespace tolvane {

CardLabel::CardLabel(QWidget* parent, bool wraps)
    : QLabel(parent)
    , m_wraps(wraps)
{
    setTextFormat(Qt::PlainText);
    setTextInteractionFlags(Qt::NoTextInteraction);
    setFocusPolicy(Qt::NoFocus);
    setWordWrap(wraps);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void CardLabel::setColor(const QColor& color)
{
    if (color == m_color)
        return;
    m_color = color;
    QPalette p = palette();
    p.setColor(QPalette::WindowText, color);
    setPalette(p);
}

void CardLabel::setCardFont(const QFont& font)
{
    if (font != this->font())
        setFont(font);
}

void CardLabel::setCardText(const QString& text)
{
    if (text == this->text())
        return;
    setText(text);
    setAccessibleName(text);
}

double CardLabel::naturalWidth() const
{
    // Wider than any card: no need to measure further (a long text costs nothing here).
    const QString& t = text();
    if (t.size() > 400)
        return 10000;
    const QFontMetricsF metrics(font());
    double widest = 0;
    for (const QString& line : t.split(QLatin1Char('\n')))
        widest = std::max(widest, metrics.horizontalAdvance(line));
    return std::ceil(widest);
}

int CardLabel::heightAt(int width) const
{
    // No card is taller than this; a longer text is clipped by the card anyway.
    constexpr int tallest = 420;
    if (m_wraps)
        return std::min(heightForWidth(width), tallest);
    return sizeHint().height();
}

SpeakerButton::SpeakerButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setCursor(Qt::PointingHandCursor);
}

void SpeakerButton::setColor(const QColor& color)
{
    m_color = color;
    update();
}

QSize SpeakerButton::sizeHint() const
{
    const int side = std::max(14, fontMetrics().height());
    return {side + 2, side};
}

void SpeakerButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = m_color;
    if (isDown())
        color.setAlphaF(color.alphaF() * 0.6f);
    const double h = std::min(width(), height()) * 0.72;
    const QRectF box(0, (height() - h) / 2, h * 1.25, h);
    // The speaker: a small box and its cone.
    QPainterPath speaker;
    const double cy = box.center().y();
    speaker.moveTo(box.left(), cy - h * 0.16);
    speaker.lineTo(box.left() + h * 0.24, cy - h * 0.16);
    speaker.lineTo(box.left() + h * 0.52, cy - h * 0.42);
    speaker.lineTo(box.left() + h * 0.52, cy + h * 0.42);
    speaker.lineTo(box.left() + h * 0.24, cy + h * 0.16);
    speaker.lineTo(box.left(), cy + h * 0.16);
    speaker.closeSubpath();
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPath(speaker);
    // Two waves.
    QPen pen(color, std::max(1.0, h * 0.09));
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    for (const double r : {h * 0.22, h * 0.42}) {
        const QRectF arc(box.left() + h * 0.52 - r + h * 0.08, cy - r, 2 * r, 2 * r);
        painter.drawArc(arc, -50 * 16, 100 * 16);
    }
}

CardSpinner::CardSpinner(QWidget* parent)
    : QWidget(parent)
    , m_timer(new QTimer(this))
{
    m_timer->setInterval(80);
    connect(m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % 12;
        update();
    });
}

void CardSpinner::setColor(const QColor& color)
{
    m_color = color;
    update();
}

void CardSpinner::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_timer->start();
}

void CardSpinner::hideEvent(QHideEvent* event)
{
    m_timer->stop();
    QWidget::hideEvent(event);
}

void CardSpinner::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    painter.translate(width() / 2.0, height() / 2.0);
    // Twelve spokes, the leading one darkest, like the desktop's small busy indicators.
    for (int i = 0; i < 12; ++i) {
        QColor color = m_color;
        const int age = (m_step - i + 12) % 12;
        color.setAlphaF(float(m_color.alphaF() * (1.0 - age / 13.0)));
        QPen pen(color, side * 0.11);
        pen.setCapStyle(Qt::RoundCap);
        painter.setPen(pen);
        painter.save();
        painter.rotate(i * 30.0);
        painter.drawLine(QPointF(0, -side * 0.24), QPointF(0, -side * 0.44));
        painter.restore();
    }
}

} // namespace tolvane
