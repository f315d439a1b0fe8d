// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace tolvane {

// Which way a look-up translates: English into the learning language, or back.
enum class DetectedDirection { englishToTarget, targetToEnglish };

inline QString rawValue(DetectedDirection direction)
{
    return direction == DetectedDirection::englishToTarget ? QStringLiteral("englishToTarget")
                                                           : QStringLiteral("targetToEnglish");
}

inline std::optional<DetectedDirection> detectedDirectionFromRawValue(const QString& raw)
{
    if (raw == QLatin1String("englishToTarget"))
        return DetectedDirection::englishToTarget;
    if (raw == QLatin1String("targetToEnglish"))
        return DetectedDirection::targetToEnglish;
    return std::nullopt;
}

} // namespace tolvane
