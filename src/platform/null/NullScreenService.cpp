// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullScreenService.h"

namespace tolvane {

QList<ScreenInfo> NullScreenService::screens() const
{
    const QRectF frame(0, 0, 1440, 900);
    return {ScreenInfo{frame, frame, 1.0}};
}

} // namespace tolvane
