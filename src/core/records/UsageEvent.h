// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/EnumNames.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace tolvane {

enum class UsageEventType {
    lookup, // a look-up went to translation
    review  // a flashcard was answered
};

inline constexpr EnumNames usageEventTypeNames{std::array{
    std::pair{UsageEventType::lookup, "lookup"},
    std::pair{UsageEventType::review, "review"},
}};

inline QString rawValue(UsageEventType type)
{
    return usageEventTypeNames.text(type);
}

inline std::optional<UsageEventType> usageEventTypeFromRawValue(const QString& raw)
{
    return usageEventTypeNames.value(raw);
}

struct UsageEvent
{
    UsageEventType type = UsageEventType::lookup;
    QDateTime date;

    friend bool operator==(const UsageEvent&, const UsageEvent&) = default;
};

} // namespace tolvane
