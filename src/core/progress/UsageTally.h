// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/progress/StatsCalendar.h"
#include "core/records/LocalDays.h"
#include "core/records/UsageEvent.h"

#include <map>

namespace tolvane {

// Events counted in one period: today, the current week and month, and for all time. Each period
// runs from its first local midnight on, so events dated in the future count in all of them.
struct PeriodCounts
{
    qint64 today = 0;
    qint64 thisWeek = 0;
    qint64 thisMonth = 0;
    qint64 allTime = 0;

    friend bool operator==(const PeriodCounts&, const PeriodCounts&) = default;
};

// Usage events counted per local calendar day, so the figures for today, a week, a month, the
// number of days with a look-up and the streak come from a few hundred days rather than from
// every event, and a new event costs one addition. The days belong to one zone; a new zone
// needs a new tally.
class UsageTally final
{
public:
    explicit UsageTally(const QTimeZone& zone);

    const QTimeZone& zone() const { return m_zone; }
    // How many events have been added; the store's list beyond this is still to be counted.
    qsizetype eventCount() const { return m_eventCount; }

    void add(const UsageEvent& event);

    PeriodCounts counts(UsageEventType type, const CalendarDays& days) const;
    // Distinct days with at least one look-up.
    qint64 lookupDayCount() const { return m_lookupDayCount; }
    // Consecutive days with a look-up up to and including today; 0 without one today.
    qint64 streak(qint64 today) const;

private:
    struct DayCounts
    {
        qint64 lookups = 0;
        qint64 reviews = 0;
    };

    QTimeZone m_zone;
    LocalDays m_localDays;
    std::map<qint64, DayCounts> m_days;
    std::map<qint64, DayCounts>::iterator m_lastDay;
    qsizetype m_eventCount = 0;
    qint64 m_lookupTotal = 0;
    qint64 m_reviewTotal = 0;
    qint64 m_lookupDayCount = 0;
};

} // namespace tolvane
