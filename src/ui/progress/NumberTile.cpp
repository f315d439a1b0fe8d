// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/progress/NumberTile.h"

#include "core/progress/ProgressTexts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>

namespace tolvane {

TabularNumberLabel::TabularNumberLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setFont(numberFont(TextStyle::title1));
}

QFont TabularNumberLabel::numberFont(TextStyle style, QFont::Weight weight)
{
    // Quicksand is rounded; DejaVu Sans, always there, is the plain fallback. One family, chosen
    // here, so that measuring and drawing use the same face.
    static const QString family = QFontDatabase::hasFamily(QStringLiteral("Quicksand")) ? QStringLiteral("Quicksand")
                                                                                        : QStringLiteral("DejaVu Sans");
    QFont font(family);
    font.setPixelSize(int(textStyleSize(style)));
    font.setWeight(weight);
    return font;
}

qreal TabularNumberLabel::digitCell() const
{
    const QFontMetricsF metrics(font());
    qreal widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

qreal TabularNumberLabel::textWidth() const
{
    const QFontMetricsF metrics(font());
    const qreal cell = digitCell();
    qreal width = 0;
    for (const QChar c : text())
        width += c.isDigit() ? cell : metrics.horizontalAdvance(c);
    return width;
}

QSize TabularNumberLabel::sizeHint() const
{
    const QFontMetricsF metrics(font());
    return QSize(int(std::ceil(textWidth())), int(std::ceil(metrics.height())));
}

void TabularNumberLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(foregroundRole()));
    const QFontMetricsF metrics(font());
    const qreal cell = digitCell();
    qreal x = alignment() & Qt::AlignHCenter ? (width() - textWidth()) / 2 : 0;
    const qreal baseline = (height() - metrics.height()) / 2 + metrics.ascent();
    for (const QChar c : text()) {
        const qreal advance = metrics.horizontalAdvance(c);
        if (c.isDigit()) {
            painter.drawText(QPointF(x + (cell - advance) / 2, baseline), QString(c));
            x += cell;
        } else {
            painter.drawText(QPointF(x, baseline), QString(c));
            x += advance;
        }
    }
}

NumberTile::NumberTile(const QString& caption, QWidget* parent)
    : QWidget(parent)
    , m_value(new TabularNumberLabel)
    , m_caption(new QLabel(caption))
{
    m_caption->setTextFormat(Qt::PlainText);
    m_caption->setFont(textStyleFont(TextStyle::caption));
    m_caption->setForegroundRole(QPalette::PlaceholderText);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_value);
    layout->addWidget(m_caption);
    setValue(0);
}

void NumberTile::setValue(qint64 value)
{
    m_value->setText(progress_texts::number(value));
    m_value->setAccessibleName(m_caption->text() + QStringLiteral(": ") + m_value->text());
    m_value->updateGeometry();
}

} // namespace tolvane
