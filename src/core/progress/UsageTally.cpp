// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/UsageTally.h"

#include <algorithm>

namespace tolvane {

UsageTally::UsageTally(const QTimeZone& zone)
    : m_zone(zone)
    , m_localDays(zone)
    , m_lastDay(m_days.end())
{}

void UsageTally::add(const UsageEvent& event)
{
    ++m_eventCount;
    const qint64 dayNumber = m_localDays.dayOf(event.date);
    // Events come mostly in time order, so most belong to the day of the one before.
    if (m_lastDay == m_days.end() || m_lastDay->first != dayNumber)
        m_lastDay = m_days.try_emplace(dayNumber).first;
    DayCounts& day = m_lastDay->second;
    if (event.type == UsageEventType::lookup) {
        if (day.lookups++ == 0)
            ++m_lookupDayCount;
        ++m_lookupTotal;
    } else {
        ++day.reviews;
        ++m_reviewTotal;
    }
}

PeriodCounts UsageTally::counts(UsageEventType type, const CalendarDays& days) const
{
    const bool lookups = type == UsageEventType::lookup;
    PeriodCounts result;
    result.allTime = lookups ? m_lookupTotal : m_reviewTotal;
    const qint64 earliest = std::min(days.weekStart, days.monthStart);
    for (auto it = m_days.lower_bound(earliest); it != m_days.end(); ++it) {
        const qint64 n = lookups ? it->second.lookups : it->second.reviews;
        if (it->first >= days.today)
            result.today += n;
        if (it->first >= days.weekStart)
            result.thisWeek += n;
        if (it->first >= days.monthStart)
            result.thisMonth += n;
    }
    return result;
}

qint64 UsageTally::streak(qint64 today) const
{
    qint64 streak = 0;
    for (auto it = m_days.find(today); it != m_days.end() && it->first == today - streak && it->second.lookups > 0;) {
        ++streak;
        if (it == m_days.begin())
            break;
        --it;
    }
    return streak;
}

} // namespace tolvane
