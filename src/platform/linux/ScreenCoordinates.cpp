// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/ScreenCoordinates.h"

#include <QGuiApplication>
#include <QScreen>

namespace tolvane::screen {

double primaryHeight()
{
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary ? primary->geometry().height() : 0.0;
}

QPointF fromQt(QPointF logical)
{
    return {logical.x(), primaryHeight() - logical.y()};
}

QRectF fromQt(const QRectF& logical)
{
    return {logical.x(), primaryHeight() - logical.bottom(), logical.width(), logical.height()};
}

QPointF toQt(QPointF point)
{
    return {point.x(), primaryHeight() - point.y()};
}

QRectF toQt(const QRectF& rect)
{
    return {rect.x(), primaryHeight() - rect.y() - rect.height(), rect.width(), rect.height()};
}

double scaleAt(QPointF logical)
{
    const QScreen* screen = QGuiApplication::screenAt(logical.toPoint());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->devicePixelRatio() : 1.0;
}

} // namespace tolvane::screen
