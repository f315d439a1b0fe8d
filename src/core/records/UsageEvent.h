// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

namespace tolvane {

enum class UsageEventType {
    lookup, // a look-up went to translation
    review  // a flashcard was answered
};

inline QString rawValue(UsageEventType type)
{
    return type == UsageEventType::lookup ? QStringLiteral("lookup") : QStringLiteral("review");
}

inline std::optional<UsageEventType> usageEventTypeFromRawValue(const QString& raw)
{
    if (raw == QLatin1String("lookup"))
        return UsageEventType::lookup;
    if (raw == QLatin1String("review"))
        return UsageEventType::review;
    return std::nullopt;
}

struct UsageEvent
{
    UsageEventType type = UsageEventType::lookup;
    QDateTime date;

    friend bool operator==(const UsageEvent&, const UsageEvent&) = default;
};

} // namespace tolvane
