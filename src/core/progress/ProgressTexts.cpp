// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/ProgressTexts.h"

#include "core/support/PlatformWording.h"

#include <QLocale>

namespace tolvane::progress_texts {

QString number(qint64 value)
{
    return QLocale().toString(value);
}

QString untilNextMilestone(qint64 remaining)
{
    return number(remaining) + QStringLiteral(" until your next milestone");
}

QString streak(qint64 days)
{
    return number(days) + QStringLiteral("-day lookup streak");
}

QString mostLookedUp(const ConfusionLogEntry& entry)
{
    return QStringLiteral("Most looked up: \"%1\" (%2×)").arg(entry.word, number(entry.seenCount));
}

QString milestoneHeadline(qint64 count)
{
    return number(count) + QStringLiteral(" lookups!");
}

QString celebrationSentence()
{
    return onThisPlatform(QStringLiteral("You’re turning everyday Mac use into language practice."));
}

} // namespace tolvane::progress_texts
