// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/SettingsChoices.h"

#include <algorithm>
#include <cmath>

namespace tolvane {

const QList<ReminderFrequencyChoice>& reminderFrequencyChoices()
{
    static const QList<ReminderFrequencyChoice> choices{
        {QStringLiteral("Every 15 minutes"), 0.25},
        {QStringLiteral("Every 30 minutes"), 0.5},
        {QStringLiteral("Every 1 hour"), 1},
        {QStringLiteral("Every 2 hours"), 2},
        {QStringLiteral("Every 4 hours (default)"), 4},
        {QStringLiteral("Every 8 hours"), 8},
        {QStringLiteral("Once a day"), 24},
    };
    return choices;
}

int reminderFrequencyIndex(double hours)
{
    const QList<ReminderFrequencyChoice>& choices = reminderFrequencyChoices();
    for (qsizetype i = 0; i < choices.size(); ++i) {
        // Stored values went through JSON text; compare loosely enough for that round trip.
        if (std::abs(choices.at(i).hours - hours) < 1e-9)
            return int(i);
    }
    return -1;
}

QString otherReminderFrequencyTitle(double hours)
{
    const double minutes = hours * 60.0;
    if (minutes < 60.0)
        return QStringLiteral("Every %1 minutes").arg(QString::number(minutes, 'g', 4));
    return QStringLiteral("Every %1 hours").arg(QString::number(hours, 'g', 4));
}

const QList<AppearanceChoice>& appearanceChoices()
{
    static const QList<AppearanceChoice> choices{
        {QStringLiteral("System"), AppearanceMode::system},
        {QStringLiteral("Light"), AppearanceMode::light},
        {QStringLiteral("Dark"), AppearanceMode::dark},
    };
    return choices;
}

int OverlayDurationStepper::displayedSeconds(double seconds)
{
    if (std::isnan(seconds))
        return minimumSeconds;
    // Clamp before converting: a double beyond the integer range has no integer value at all.
    const double clamped = std::clamp(std::floor(seconds), double(minimumSeconds), double(maximumSeconds));
    return int(clamped);
}

} // namespace tolvane
