// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/SectionCard.h"

#include "ui/components/TextStyle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace tolvane {

namespace {

constexpr int symbolSide = 13;

QPixmap whiteSymbol(const QIcon& symbol, qreal ratio)
{
    QPixmap pixmap = symbol.pixmap(QSize(symbolSide, symbolSide), ratio);
    if (pixmap.isNull())
        return pixmap;
    // Whatever colour the theme drew it in, only its shape is kept.
    QPainter painter(&pixmap);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), pixmap.deviceIndependentSize()), Qt::white);
    return pixmap;
}

// Drawn at paint time, so the square is sharp at whatever pixel density the window lands on.
class SectionBadge final : public QWidget
{
public:
    SectionBadge(const QIcon& symbol, const QColor& tint)
        : m_symbol(symbol)
        , m_tint(tint)
    {
        setFixedSize(SectionCard::badgeSide, SectionCard::badgeSide);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.drawPixmap(0, 0, sectionBadge(m_symbol, m_tint, devicePixelRatioF()));
    }

private:
    QIcon m_symbol;
    QColor m_tint;
};

} // namespace

QPixmap sectionBadge(const QIcon& symbol, const QColor& tint, qreal devicePixelRatio)
{
    const int side = SectionCard::badgeSide;
    QPixmap badge(QSize(side, side) * devicePixelRatio);
    badge.setDevicePixelRatio(devicePixelRatio);
    badge.fill(Qt::transparent);
    QPainter painter(&badge);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, 0, side);
    gradient.setColorAt(0, tint.lighter(125));
    gradient.setColorAt(1, tint);
    QPainterPath square;
    square.addRoundedRect(QRectF(0, 0, side, side), SectionCard::badgeRadius, SectionCard::badgeRadius);
    painter.fillPath(square, gradient);
    const QPixmap white = whiteSymbol(symbol, devicePixelRatio);
    if (!white.isNull()) {
        const qreal offset = (side - symbolSide) / 2.0;
        painter.drawPixmap(QPointF(offset, offset), white);
    }
    return badge;
}

SectionCard::SectionCard(const QString& title, const QIcon& symbol, const QColor& tint, QWidget* parent)
    : QFrame(parent)
    , m_title(new QLabel(title))
    , m_content(new QVBoxLayout)
{
    setAccessibleName(title);
    auto* badge = new SectionBadge(symbol, tint);

    m_title->setTextFormat(Qt::PlainText);
    m_title->setFont(textStyleFont(TextStyle::headline));

    auto* header = new QHBoxLayout;
    header->setSpacing(8);
    header->addWidget(badge);
    header->addWidget(m_title, 1);

    m_content->setContentsMargins(0, 0, 0, 0);
    m_content->setSpacing(6);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 10, 12, 12);
    layout->setSpacing(8);
    layout->addLayout(header);
    layout->addLayout(m_content);
}

QString SectionCard::title() const
{
    return m_title->text();
}

void SectionCard::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    // A panel a shade off the window colour, readable in light and dark alike.
    QColor fill = palette().color(QPalette::Text);
    fill.setAlphaF(0.05f);
    QColor edge = palette().color(QPalette::Text);
    edge.setAlphaF(0.10f);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 10, 10);
}

} // namespace tolvane
