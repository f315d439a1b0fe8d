// SPDX-License-Identifier: GPL-3.0-or-later
// Look-up days and streaks are calendar days of the local zone, across daylight-saving changes.
#include "RecordTestSupport.h"
#include "core/records/LocalDays.h"
#include "core/records/UsageEventStore.h"
#include "fakes/FakeScheduler.h"

#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

const QTimeZone berlin("Europe/Berlin");

QDateTime inBerlin(int year, int month, int day, int hour, int minute)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute), berlin);
}

struct Fixture
{
    QTemporaryDir dir;
    FakeClock clock;
    UsageEventStore events{clock, dir.path(), berlin};

    void lookupAt(const QDateTime& when, UsageEventType type = UsageEventType::lookup)
    {
        clock.setNow(when);
        events.record(type);
    }
};

} // namespace

class TestUsageEventStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QVERIFY(berlin.isValid()); }

    void oneMinuteBeforeAndAfterLocalMidnightAreTwoDays()
    {
        Fixture f;
        // 22:59 and 23:01 in UTC: the same day there, two days in Berlin.
        f.lookupAt(inBerlin(2026, 1, 14, 23, 59));
        f.lookupAt(inBerlin(2026, 1, 15, 0, 1));
        QCOMPARE(f.events.lookupDayCount(), 2);
        QCOMPARE(f.events.currentStreak(), 2);
    }

    void aStreakNeedsALookUpToday()
    {
        Fixture f;
        QCOMPARE(f.events.currentStreak(), 0);
        f.lookupAt(inBerlin(2026, 1, 13, 12, 0));
        f.lookupAt(inBerlin(2026, 1, 14, 12, 0));
        f.lookupAt(inBerlin(2026, 1, 15, 8, 0), UsageEventType::review);
        QCOMPARE(f.events.currentStreak(), 0);
        QCOMPARE(f.events.lookupDayCount(), 2); // reviews never count
        for (int i = 0; i < 5; ++i)
            f.lookupAt(inBerlin(2026, 1, 15, 9, i));
        QCOMPARE(f.events.currentStreak(), 3);
        QCOMPARE(f.events.lookupDayCount(), 3);
    }

    void streaksSpanTheDaysOfTwentyThreeAndTwentyFiveHours_data()
    {
        QTest::addColumn<QDate>("firstDay");
        QTest::addColumn<QTime>("timeOfDay");
        QTest::addColumn<QTime>("nowTimeOfDay");
        // Clocks go forward on 29 March 2026 and back on 25 October 2026.
        QTest::newRow("spring, just after midnight") << QDate(2026, 3, 26) << QTime(0, 30) << QTime(0, 45);
        QTest::newRow("spring, late evening") << QDate(2026, 3, 26) << QTime(23, 30) << QTime(23, 40);
        QTest::newRow("autumn, just after midnight") << QDate(2026, 10, 22) << QTime(0, 30) << QTime(0, 45);
        QTest::newRow("autumn, late evening") << QDate(2026, 10, 22) << QTime(23, 30) << QTime(23, 40);
    }

    void streaksSpanTheDaysOfTwentyThreeAndTwentyFiveHours()
    {
        QFETCH(QDate, firstDay);
        QFETCH(QTime, timeOfDay);
        QFETCH(QTime, nowTimeOfDay);
        Fixture f;
        for (int day = 0; day < 6; ++day)
            f.lookupAt(QDateTime(firstDay.addDays(day), timeOfDay, berlin));
        f.clock.setNow(QDateTime(firstDay.addDays(5), nowTimeOfDay, berlin));
        QCOMPARE(f.events.lookupDayCount(), 6);
        QCOMPARE(f.events.currentStreak(), 6);
    }

    void eventsOutOfTimeOrderStillCount()
    {
        // The system clock may be set back between two look-ups.
        Fixture f;
        f.lookupAt(inBerlin(2026, 5, 3, 10, 0));
        f.lookupAt(inBerlin(2026, 5, 1, 10, 0));
        f.lookupAt(inBerlin(2026, 5, 3, 11, 0));
        f.lookupAt(inBerlin(2026, 5, 2, 10, 0));
        f.clock.setNow(inBerlin(2026, 5, 3, 12, 0));
        QCOMPARE(f.events.lookupDayCount(), 3);
        QCOMPARE(f.events.currentStreak(), 3);
    }

    void localDaysAgreeWithTheCalendarInEveryKindOfZone()
    {
        QRandomGenerator random(20260322);
        const qint64 start = QDateTime(QDate(2025, 1, 1), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch();
        const qint64 span = qint64(3 * 366) * 86400000;
        for (const char* id : {"Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Kathmandu",
                               "Pacific/Chatham", "America/Santiago", "UTC"}) {
            const QTimeZone zone(id);
            QVERIFY2(zone.isValid(), id);
            LocalDays days(zone);
            for (int i = 0; i < 20000; ++i) {
                const auto moment =
                    QDateTime::fromMSecsSinceEpoch(start + qint64(random.bounded(double(span))), Qt::UTC);
                QCOMPARE(days.dayOf(moment), moment.toTimeZone(zone).date().toJulianDay());
            }
            // Moments on either side of every change of offset.
            for (const auto& transition : zone.transitions(QDateTime::fromMSecsSinceEpoch(start, Qt::UTC),
                                                           QDateTime::fromMSecsSinceEpoch(start + span, Qt::UTC))) {
                for (const qint64 delta : {-1, 0, 1}) {
                    const QDateTime moment = transition.atUtc.addMSecs(delta);
                    QCOMPARE(days.dayOf(moment), moment.toTimeZone(zone).date().toJulianDay());
                }
            }
        }
    }

    void theSystemZoneIsUsedWhenNoneIsGiven()
    {
        const QByteArray previous = qgetenv("TZ");
        qputenv("TZ", "Europe/Berlin");
        QTemporaryDir dir;
        FakeClock clock(inBerlin(2026, 1, 14, 23, 59));
        UsageEventStore events(clock, dir.path());
        events.record(UsageEventType::lookup);
        clock.setNow(inBerlin(2026, 1, 15, 0, 1));
        events.record(UsageEventType::lookup);
        const qint64 dayCount = events.lookupDayCount();
        if (previous.isNull())
            qunsetenv("TZ");
        else
            qputenv("TZ", previous);
        QCOMPARE(dayCount, 2);
    }
};

QTEST_GUILESS_MAIN(TestUsageEventStore)
#include "tst_UsageEventStore.moc"
