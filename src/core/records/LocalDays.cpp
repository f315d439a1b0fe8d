// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/LocalDays.h"

#include <limits>

namespace tolvane {

namespace {

constexpr qint64 msecsPerDay = 86400000;
const qint64 epochJulianDay = QDate(1970, 1, 1).toJulianDay();

qint64 floorDivide(qint64 a, qint64 b)
{
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

} // namespace

LocalDays::LocalDays(std::optional<QTimeZone> zone)
    : m_zone(zone ? *zone : QTimeZone::systemTimeZone())
{}

qint64 LocalDays::dayOf(const QDateTime& moment)
{
    if (!m_zone.isValid())
        return moment.toLocalTime().date().toJulianDay();
    const qint64 msecs = moment.toMSecsSinceEpoch();
    if (msecs < m_spanStart || msecs >= m_spanEnd)
        learnOffsetAround(msecs);
    return epochJulianDay + floorDivide(msecs + m_offsetMSecs, msecsPerDay);
}

void LocalDays::learnOffsetAround(qint64 msecs)
{
    const QDateTime at = QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
    m_offsetMSecs = qint64(m_zone.offsetFromUtc(at)) * 1000;
    m_spanStart = std::numeric_limits<qint64>::min();
    m_spanEnd = std::numeric_limits<qint64>::max();
    if (!m_zone.hasTransitions())
        return;
    // A transition exactly at this moment belongs to the stretch it starts.
    const auto previous = m_zone.previousTransition(at.addMSecs(1));
    if (previous.atUtc.isValid())
        m_spanStart = previous.atUtc.toMSecsSinceEpoch();
    const auto next = m_zone.nextTransition(at);
    if (next.atUtc.isValid())
        m_spanEnd = next.atUtc.toMSecsSinceEpoch();
    if (m_spanStart > msecs || m_spanEnd <= msecs) {
        // The zone's table disagrees with itself; cache this one moment only.
        m_spanStart = msecs;
        m_spanEnd = msecs + 1;
    }
}

} // namespace tolvane
