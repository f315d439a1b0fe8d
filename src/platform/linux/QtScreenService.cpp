// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/QtScreenService.h"

#include "platform/linux/ScreenCoordinates.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace tolvane {

QList<ScreenInfo> QtScreenService::screens() const
{
    QList<ScreenInfo> result;
    for (const QScreen* s : QGuiApplication::screens())
        result.append(ScreenInfo{screen::fromQt(QRectF(s->geometry())), screen::fromQt(QRectF(s->availableGeometry())),
                                 s->devicePixelRatio()});
    return result;
}

QPointF QtScreenService::pointerLocation() const
{
    return screen::fromQt(QPointF(QCursor::pos()));
}

} // namespace tolvane
