// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/EnumNames.h"

#include <QString>

#include <optional>

namespace tolvane {

// Which way a look-up translates: English into the learning language, or back.
enum class DetectedDirection { englishToTarget, targetToEnglish };

inline constexpr EnumNames detectedDirectionNames{std::array{
    std::pair{DetectedDirection::englishToTarget, "englishToTarget"},
    std::pair{DetectedDirection::targetToEnglish, "targetToEnglish"},
}};

inline QString rawValue(DetectedDirection direction)
{
    return detectedDirectionNames.text(direction);
}

inline std::optional<DetectedDirection> detectedDirectionFromRawValue(const QString& raw)
{
    return detectedDirectionNames.value(raw);
}

} // namespace tolvane
