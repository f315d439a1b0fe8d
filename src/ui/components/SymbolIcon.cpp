// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/components/SymbolIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

namespace tolvane {

namespace {

const char* themeName(Symbol symbol)
{
    switch (symbol) {
    case Symbol::chevronLeft:
        return "go-previous-symbolic";
    case Symbol::chevronRight:
        return "go-next-symbolic";
    case Symbol::trash:
        return "user-trash-symbolic";
    case Symbol::shuffle:
        return "media-playlist-shuffle-symbolic";
    case Symbol::share:
        return "emblem-shared-symbolic";
    case Symbol::checkmark:
        return "object-select-symbolic";
    case Symbol::cardStack:
        return "view-paged-symbolic";
    case Symbol::document:
        return "text-x-generic-symbolic";
    case Symbol::filter:
        return "view-filter-symbolic";
    case Symbol::calendar:
        return "x-office-calendar-symbolic";
    }
    return "";
}

// Strokes on a 16 × 16 grid.
QPainterPath symbolPath(Symbol symbol)
{
    QPainterPath p;
    switch (symbol) {
    case Symbol::chevronLeft:
        p.moveTo(10, 3);
        p.lineTo(5, 8);
        p.lineTo(10, 13);
        break;
    case Symbol::chevronRight:
        p.moveTo(6, 3);
        p.lineTo(11, 8);
        p.lineTo(6, 13);
        break;
    case Symbol::trash:
        p.moveTo(2.5, 4);
        p.lineTo(13.5, 4);
        p.moveTo(6, 4);
        p.lineTo(6, 2.5);
        p.lineTo(10, 2.5);
        p.lineTo(10, 4);
        p.moveTo(4, 4);
        p.lineTo(4.8, 14);
        p.lineTo(11.2, 14);
        p.lineTo(12, 4);
        p.moveTo(6.8, 6.5);
        p.lineTo(6.8, 11.5);
        p.moveTo(9.2, 6.5);
        p.lineTo(9.2, 11.5);
        break;
    case Symbol::shuffle:
        p.moveTo(2, 4.5);
        p.cubicTo(7, 4.5, 8, 11.5, 13, 11.5);
        p.moveTo(2, 11.5);
        p.cubicTo(7, 11.5, 8, 4.5, 13, 4.5);
        p.moveTo(11, 2.5);
        p.lineTo(13.5, 4.5);
        p.lineTo(11, 6.5);
        p.moveTo(11, 9.5);
        p.lineTo(13.5, 11.5);
        p.lineTo(11, 13.5);
        break;
    case Symbol::share:
        p.moveTo(8, 1.5);
        p.lineTo(8, 10);
        p.moveTo(5, 4.5);
        p.lineTo(8, 1.5);
        p.lineTo(11, 4.5);
        p.moveTo(5.5, 7);
        p.lineTo(3.5, 7);
        p.lineTo(3.5, 14.5);
        p.lineTo(12.5, 14.5);
        p.lineTo(12.5, 7);
        p.lineTo(10.5, 7);
        break;
    case Symbol::checkmark:
        p.moveTo(2.5, 8.5);
        p.lineTo(6.5, 12.5);
        p.lineTo(13.5, 3.5);
        break;
    case Symbol::cardStack:
        p.addRoundedRect(QRectF(2.5, 6, 11, 8), 1.5, 1.5);
        p.moveTo(4, 4);
        p.lineTo(12, 4);
        p.moveTo(5.5, 2);
        p.lineTo(10.5, 2);
        break;
    case Symbol::document:
        p.moveTo(9.5, 1.5);
        p.lineTo(3.5, 1.5);
        p.lineTo(3.5, 14.5);
        p.lineTo(12.5, 14.5);
        p.lineTo(12.5, 4.5);
        p.closeSubpath();
        p.moveTo(5.5, 8);
        p.lineTo(10.5, 8);
        p.moveTo(5.5, 11);
        p.lineTo(10.5, 11);
        break;
    case Symbol::filter:
        p.addEllipse(QPointF(8, 8), 6.5, 6.5);
        p.moveTo(4.5, 6);
        p.lineTo(11.5, 6);
        p.moveTo(5.5, 8.5);
        p.lineTo(10.5, 8.5);
        p.moveTo(7, 11);
        p.lineTo(9, 11);
        break;
    case Symbol::calendar:
        p.addRoundedRect(QRectF(2, 3, 12, 11.5), 1.5, 1.5);
        p.moveTo(2, 6.5);
        p.lineTo(14, 6.5);
        p.moveTo(5, 1.5);
        p.lineTo(5, 4);
        p.moveTo(11, 1.5);
        p.lineTo(11, 4);
        break;
    }
    return p;
}

// Paints at whatever size is asked, in the palette's text colour of the moment, so that the
// symbol follows a switch between light and dark.
class DrawnSymbolEngine final : public QIconEngine
{
public:
    explicit DrawnSymbolEngine(Symbol symbol)
        : m_symbol(symbol)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        QColor colour =
            palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active, QPalette::WindowText);
        if (mode == QIcon::Selected)
            colour = palette.color(QPalette::HighlightedText);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const qreal side = qMin(rect.width(), rect.height());
        painter->translate(rect.x() + (rect.width() - side) / 2.0, rect.y() + (rect.height() - side) / 2.0);
        painter->scale(side / 16.0, side / 16.0);
        QPen pen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        painter->setPen(pen);
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(symbolPath(m_symbol));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawnSymbolEngine(m_symbol); }
    QString key() const override { return QStringLiteral("TolvaneSymbol"); }

private:
    Symbol m_symbol;
};

} // namespace

QIcon drawnSymbolIcon(Symbol symbol)
{
    return QIcon(new DrawnSymbolEngine(symbol));
}

QIcon symbolIcon(Symbol symbol)
{
    return QIcon::fromTheme(QString::fromLatin1(themeName(symbol)), drawnSymbolIcon(symbol));
}

} // namespace tolvane
