// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/StatsCalendar.h"
#include "core/progress/UsageTally.h"
#include "core/records/ConfusionLogEntry.h"
#include "core/records/ReviewCard.h"

#include <QList>

#include <optional>

namespace tolvane {

struct FlashcardCounts
{
    qint64 newCards = 0;
    qint64 knowIt = 0;
    qint64 reviewAgain = 0;
    qint64 total = 0;

    static FlashcardCounts of(const QList<ReviewCard>& cards);
    friend bool operator==(const FlashcardCounts&, const FlashcardCounts&) = default;
};

// Everything the statistics show, at one moment.
struct ProgressSnapshot
{
    PeriodCounts lookups;
    qint64 activeDays = 0;
    PeriodCounts reviews;
    FlashcardCounts flashcards;
    qint64 successfulLookups = 0;
    std::optional<qint64> nextMilestone; // none past the last milestone
    qint64 streak = 0;
    std::optional<ConfusionLogEntry> mostLookedUp;

    // The figures that come from the usage events and from the look-up count.
    void countUsage(const UsageTally& tally, const CalendarDays& days);
    void countMilestones(qint64 successfulLookupCount);

    bool showsHighlights() const { return showsStreak() || mostLookedUp.has_value(); }
    bool showsStreak() const { return streak >= 2; }
    bool showsMostLookedUp() const { return mostLookedUp && mostLookedUp->seenCount > 1; }

    // The figures from plain lists, for readers without the stores (the command line).
    static ProgressSnapshot from(const QList<UsageEvent>& events, const QList<ReviewCard>& cards,
                                 const QList<ConfusionLogEntry>& confusionLog, qint64 successfulLookups,
                                 const QDateTime& now, const StatsCalendar& calendar);
};

// The entry looked up most often; of equal counts, the one logged first.
std::optional<ConfusionLogEntry> mostLookedUpEntry(const QList<ConfusionLogEntry>& entries);

} // namespace tolvane
