// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/translation/DetectedDirection.h"

#include <QString>

namespace tolvane {

// A number of successful word look-ups worth celebrating, with the look-up that reached it.
struct LookupMilestone
{
    qint64 count = 0;
    QString source;
    QString translation;
    QString targetLanguageCode;
    DetectedDirection direction = DetectedDirection::englishToTarget;

    friend bool operator==(const LookupMilestone&, const LookupMilestone&) = default;
};

} // namespace tolvane
