// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <functional>

namespace tolvane {

// The calendar the statistics count in: the user's time zone and the weekday their weeks start
// on. Days are Julian day numbers in that zone, the numbering LocalDays uses.
struct StatsCalendar
{
    QTimeZone zone;
    Qt::DayOfWeek firstDayOfWeek = Qt::Monday;

    // The system's zone as it is now and the first weekday of the user's locale.
    static StatsCalendar current();
};

// Where the calendar comes from; read again at every change, so a new zone is followed.
using StatsCalendarSource = std::function<StatsCalendar()>;

// The first days of the periods that contain a moment.
struct CalendarDays
{
    qint64 today = 0;
    qint64 weekStart = 0;
    qint64 monthStart = 0;

    static CalendarDays containing(const QDateTime& moment, const StatsCalendar& calendar);
};

} // namespace tolvane
