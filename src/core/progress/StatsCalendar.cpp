// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/progress/StatsCalendar.h"

#include <QLocale>

namespace tolvane {

StatsCalendar StatsCalendar::current()
{
    return StatsCalendar{QTimeZone::systemTimeZone(), QLocale::system().firstDayOfWeek()};
}

CalendarDays CalendarDays::containing(const QDateTime& moment, const StatsCalendar& calendar)
{
    const QDate date = calendar.zone.isValid() ? moment.toTimeZone(calendar.zone).date() : moment.toLocalTime().date();
    const int intoWeek = (date.dayOfWeek() - int(calendar.firstDayOfWeek) + 7) % 7;
    return CalendarDays{date.toJulianDay(), date.addDays(-intoWeek).toJulianDay(),
                        QDate(date.year(), date.month(), 1).toJulianDay()};
}

} // namespace tolvane
