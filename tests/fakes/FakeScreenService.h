// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ScreenService.h"

#include <QList>
#include <QPointF>
#include <QRectF>

namespace tolvane {

class FakeScreenService final : public ScreenService
{
public:
    QList<ScreenInfo> screenList{ScreenInfo{QRectF(0, 0, 1440, 900), QRectF(0, 0, 1440, 875), 2.0}};
    QPointF pointer{400, 300};

    QList<ScreenInfo> screens() const override { return screenList; }
    QPointF pointerLocation() const override { return pointer; }
};

} // namespace tolvane
