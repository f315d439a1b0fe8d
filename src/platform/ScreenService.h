// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Geometry.h"

#include <QList>

namespace tolvane {

// Screens and the pointer.
class ScreenService
{
public:
    virtual ~ScreenService() = default;

    virtual QList<ScreenInfo> screens() const = 0;
    virtual QPointF pointerLocation() const = 0;
};

} // namespace tolvane
