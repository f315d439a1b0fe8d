// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/ProgressStatistics.h"

#include "core/progress/LookupMilestoneManager.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"

TOLVANE_DEFINE_LOG(lcProgressStatistics, "ProgressStatistics")

namespace tolvane {

ProgressStatistics::ProgressStatistics(const ProgressSources& sources, StatsCalendarSource calendar, QObject* parent)
    : QObject(parent)
    , m_clock(sources.clock)
    , m_usageEvents(sources.usageEvents)
    , m_reviewDeck(sources.reviewDeck)
    , m_confusionLog(sources.confusionLog)
    , m_milestones(sources.milestones)
    , m_calendarSource(std::move(calendar))
{
    m_calendar = m_calendarSource();
    m_tally = std::make_unique<UsageTally>(m_calendar.zone);
    m_snapshot.flashcards = FlashcardCounts::of(m_reviewDeck.cards());
    m_snapshot.mostLookedUp = mostLookedUpEntry(m_confusionLog.entries());
    countNewEvents();
    refresh();

    connect(&m_usageEvents, &UsageEventStore::eventsChanged, this, [this] {
        countNewEvents();
        refresh();
        Q_EMIT changed();
    });
    connect(&m_reviewDeck, &ReviewDeckStore::cardsChanged, this, [this] {
        m_snapshot.flashcards = FlashcardCounts::of(m_reviewDeck.cards());
        refresh();
        Q_EMIT changed();
    });
    connect(&m_confusionLog, &ConfusionLogStore::entriesChanged, this, [this] {
        m_snapshot.mostLookedUp = mostLookedUpEntry(m_confusionLog.entries());
        refresh();
        Q_EMIT changed();
    });
    connect(&m_milestones, &LookupMilestoneManager::successfulLookupCountChanged, this, [this] {
        refresh();
        Q_EMIT changed();
    });
}

ProgressStatistics::~ProgressStatistics() = default;

void ProgressStatistics::countNewEvents()
{
    const QList<UsageEvent>& events = m_usageEvents.events();
    // The store only ever appends; a shorter list means it was replaced, so count afresh.
    if (events.size() < m_tally->eventCount())
        m_tally = std::make_unique<UsageTally>(m_calendar.zone);
    for (qsizetype i = m_tally->eventCount(); i < events.size(); ++i)
        m_tally->add(events.at(i));
}

void ProgressStatistics::refresh()
{
    const StatsCalendar calendar = m_calendarSource();
    m_calendar.firstDayOfWeek = calendar.firstDayOfWeek;
    if (calendar.zone != m_calendar.zone) {
        qCInfo(lcProgressStatistics).noquote() << QStringLiteral("The time zone is now %1; counting the days again")
                                                      .arg(QString::fromUtf8(calendar.zone.id()));
        m_calendar.zone = calendar.zone;
        m_tally = std::make_unique<UsageTally>(m_calendar.zone);
        countNewEvents();
    }
    m_snapshot.countUsage(*m_tally, CalendarDays::containing(m_clock.now(), m_calendar));
    m_snapshot.countMilestones(m_milestones.successfulLookupCount());
}

} // namespace tolvane
