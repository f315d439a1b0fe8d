// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The four record sources of the statistics in a private directory, with a clock that stands
// still in Berlin and weeks that start on Monday unless a test says otherwise.

#include "core/progress/LookupMilestoneManager.h"
#include "core/progress/ProgressStatistics.h"
#include "core/progress/StatsCalendar.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "fakes/FakeScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QTemporaryDir>

#include <memory>

namespace tolvane {

inline const QTimeZone& berlin()
{
    static const QTimeZone zone("Europe/Berlin");
    return zone;
}

inline QDateTime inBerlin(QDate date, QTime time = QTime(12, 0))
{
    return QDateTime(date, time, berlin());
}

struct ProgressFixture
{
    QTemporaryDir dir;
    FakeClock clock{inBerlin(QDate(2026, 3, 18), QTime(15, 0))}; // a Wednesday
    FakeScheduler scheduler{&clock};
    MemoryPreferenceStore preferenceStore;
    Preferences preferences{preferenceStore};
    StatsCalendar calendar{berlin(), Qt::Monday};
    std::unique_ptr<UsageEventStore> usageEvents;
    std::unique_ptr<ConfusionLogStore> confusionLog;
    std::unique_ptr<ReviewDeckStore> reviewDeck;
    std::unique_ptr<LookupMilestoneManager> milestones;
    QList<LookupMilestone> celebrated;

    ProgressFixture() { open(); }

    // (Re)reads the record files, as a start of Tolvane would.
    void open()
    {
        milestones.reset();
        reviewDeck.reset();
        confusionLog.reset();
        usageEvents.reset();
        usageEvents = std::make_unique<UsageEventStore>(clock, dir.path(), berlin());
        confusionLog = std::make_unique<ConfusionLogStore>(clock, dir.path());
        reviewDeck =
            std::make_unique<ReviewDeckStore>(clock, scheduler, preferences, *usageEvents, nullptr, dir.path());
        milestones = std::make_unique<LookupMilestoneManager>(
            preferences, [this](const LookupMilestone& milestone) { celebrated.append(milestone); });
    }

    ProgressSources sources() const
    {
        return ProgressSources{clock, *usageEvents, *reviewDeck, *confusionLog, *milestones};
    }

    StatsCalendarSource calendarSource()
    {
        return [this] { return calendar; };
    }

    void eventAt(const QDateTime& when, UsageEventType type = UsageEventType::lookup)
    {
        const QDateTime now = clock.now();
        clock.setNow(when);
        usageEvents->record(type);
        clock.setNow(now);
    }

    // A whole successful word look-up, as the look-up flow records it.
    void lookUp(const QString& word, const QString& translation = QStringLiteral("t"))
    {
        usageEvents->record(UsageEventType::lookup);
        confusionLog->recordLookup(word, translation, std::nullopt);
        reviewDeck->addCard(word, translation, true, QStringLiteral("de"), DetectedDirection::targetToEnglish);
        milestones->recordSuccessfulLookup(word, translation, QStringLiteral("de"), DetectedDirection::targetToEnglish);
    }
};

} // namespace tolvane
