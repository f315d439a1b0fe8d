// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/AppearanceMode.h"

#include <QList>
#include <QString>

namespace tolvane {

// One entry of the reminder-frequency pickers of the settings window and the first-run guide.
struct ReminderFrequencyChoice
{
    QString title;
    double hours;
};

const QList<ReminderFrequencyChoice>& reminderFrequencyChoices();
// The choice that shows an interval; -1 when a hand edit stored one no choice offers.
int reminderFrequencyIndex(double hours);
// The title of an interval no choice offers, so the picker can show what is in effect.
QString otherReminderFrequencyTitle(double hours);

struct AppearanceChoice
{
    QString title;
    AppearanceMode mode;
};

const QList<AppearanceChoice>& appearanceChoices();

// The overlay reading-time steppers: whole seconds from 1 to 10.
namespace OverlayDurationStepper {

inline constexpr int minimumSeconds = 1;
inline constexpr int maximumSeconds = 10;
inline const QString suffix = QStringLiteral(" sec");

// The whole number a stepper shows for the reading time in effect: 2.5 shows as 2, anything a
// hand edit put outside the range (or that is not a number at all) is brought into 1…10 first.
int displayedSeconds(double seconds);

} // namespace OverlayDurationStepper

} // namespace tolvane
