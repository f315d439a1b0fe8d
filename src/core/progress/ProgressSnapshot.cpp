// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/ProgressSnapshot.h"

#include "core/progress/LookupMilestoneManager.h"

#include <algorithm>

namespace tolvane {

FlashcardCounts FlashcardCounts::of(const QList<ReviewCard>& cards)
{
    FlashcardCounts counts;
    for (const ReviewCard& card : cards) {
        switch (card.status) {
        case CardStatus::new_:
            ++counts.newCards;
            break;
        case CardStatus::knowIt:
            ++counts.knowIt;
            break;
        case CardStatus::reviewAgain:
            ++counts.reviewAgain;
            break;
        }
    }
    counts.total = cards.size();
    return counts;
}

std::optional<ConfusionLogEntry> mostLookedUpEntry(const QList<ConfusionLogEntry>& entries)
{
    const ConfusionLogEntry* top = nullptr;
    for (const ConfusionLogEntry& entry : entries) {
        if (!top || entry.seenCount > top->seenCount)
            top = &entry;
    }
    if (!top)
        return std::nullopt;
    return *top;
}

ProgressSnapshot ProgressSnapshot::from(const QList<UsageEvent>& events, const QList<ReviewCard>& cards,
                                        const QList<ConfusionLogEntry>& confusionLog, qint64 successfulLookups,
                                        const QDateTime& now, const StatsCalendar& calendar)
{
    UsageTally tally(calendar.zone);
    for (const UsageEvent& event : events)
        tally.add(event);
    ProgressSnapshot snapshot;
    snapshot.countUsage(tally, CalendarDays::containing(now, calendar));
    snapshot.countMilestones(successfulLookups);
    snapshot.flashcards = FlashcardCounts::of(cards);
    snapshot.mostLookedUp = mostLookedUpEntry(confusionLog);
    return snapshot;
}

void ProgressSnapshot::countUsage(const UsageTally& tally, const CalendarDays& days)
{
    lookups = tally.counts(UsageEventType::lookup, days);
    activeDays = tally.lookupDayCount();
    reviews = tally.counts(UsageEventType::review, days);
    streak = tally.streak(days.today);
}

void ProgressSnapshot::countMilestones(qint64 successfulLookupCount)
{
    successfulLookups = successfulLookupCount;
    nextMilestone = LookupMilestoneManager::milestoneAfter(successfulLookupCount);
}

} // namespace tolvane
