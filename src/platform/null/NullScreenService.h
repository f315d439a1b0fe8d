// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ScreenService.h"

namespace tolvane {

class NullScreenService final : public ScreenService
{
public:
    QList<ScreenInfo> screens() const override;
    QPointF pointerLocation() const override { return {}; }
};

} // namespace tolvane
