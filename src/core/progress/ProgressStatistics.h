// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/ProgressSnapshot.h"

#include <QObject>

#include <memory>

namespace tolvane {

class Clock;
class ConfusionLogStore;
class LookupMilestoneManager;
class ReviewDeckStore;
class UsageEventStore;

// Where the statistics come from; all of them outlive the statistics.
struct ProgressSources
{
    const Clock& clock;
    const UsageEventStore& usageEvents;
    const ReviewDeckStore& reviewDeck;
    const ConfusionLogStore& confusionLog;
    const LookupMilestoneManager& milestones;
};

// The statistics of the four record sources, kept current as they change: the usage events are
// counted once, then only the new ones, so an open statistics window costs nothing per paint and
// little per look-up. Reads only.
class ProgressStatistics final : public QObject
{
    Q_OBJECT
public:
    explicit ProgressStatistics(const ProgressSources& sources, StatsCalendarSource calendar = &StatsCalendar::current,
                                QObject* parent = nullptr);
    ~ProgressStatistics() override;

    const ProgressSnapshot& snapshot() const { return m_snapshot; }

Q_SIGNALS:
    // The snapshot has been brought up to date after a change of one of the sources.
    void changed();

private:
    void countNewEvents();
    void refresh();

    const Clock& m_clock;
    const UsageEventStore& m_usageEvents;
    const ReviewDeckStore& m_reviewDeck;
    const ConfusionLogStore& m_confusionLog;
    const LookupMilestoneManager& m_milestones;
    StatsCalendarSource m_calendarSource;
    StatsCalendar m_calendar;
    std::unique_ptr<UsageTally> m_tally;
    ProgressSnapshot m_snapshot;
};

} // namespace tolvane
