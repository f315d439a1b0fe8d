// SPDX-License-Identifier: GPL-3.0-or-later
// The fake scheduler drives every timing test, so its ordering must be exactly the real loop's.
#include "fakes/FakeScheduler.h"

#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;

class TestFakeScheduler : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void timersFireInDueOrderThenCreationOrder()
    {
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        const QDateTime start = clock.now();
        QStringList log;
        scheduler.singleShot(300ms, [&] { log << QStringLiteral("c@%1").arg(start.msecsTo(clock.now())); });
        scheduler.singleShot(100ms, [&] { log << QStringLiteral("a@%1").arg(start.msecsTo(clock.now())); });
        scheduler.singleShot(100ms, [&] { log << QStringLiteral("b@%1").arg(start.msecsTo(clock.now())); });
        scheduler.advance(99ms);
        QVERIFY(log.isEmpty());
        scheduler.advance(1s);
        QCOMPARE(log, (QStringList{"a@100", "b@100", "c@300"}));
        QCOMPARE(start.msecsTo(clock.now()), 1099);
    }

    void postedTasksRunAfterTheTimerThatPostedThemAndBeforeLaterTimers()
    {
        FakeScheduler scheduler;
        QStringList log;
        scheduler.singleShot(10ms, [&] {
            log << "timer1";
            scheduler.post([&] { log << "posted-by-timer1"; });
        });
        scheduler.singleShot(10ms, [&] { log << "timer2"; });
        scheduler.post([&] { log << "posted-first"; });
        scheduler.advance(10ms);
        QCOMPARE(log, (QStringList{"posted-first", "timer1", "posted-by-timer1", "timer2"}));
    }

    void timerAddedByATaskCanFireWithinTheSameAdvance()
    {
        FakeScheduler scheduler;
        QStringList log;
        scheduler.singleShot(1s, [&] {
            log << "release";
            scheduler.singleShot(4s, [&] { log << "close"; });
        });
        scheduler.advance(5s);
        QCOMPARE(log, (QStringList{"release", "close"}));
        QCOMPARE(scheduler.activeTimerCount(), 0);
    }

    void cancelledTimersNeverFireAndRepeatingTimersKeepTheirPeriod()
    {
        FakeScheduler scheduler;
        int oneShot = 0;
        int ticks = 0;
        TimerHandle handle = scheduler.singleShot(1s, [&] { ++oneShot; });
        TimerHandle repeat = scheduler.repeating(250ms, [&] { ++ticks; });
        handle.cancel();
        handle.cancel();
        QVERIFY(!handle.isActive());
        scheduler.advance(1s);
        QCOMPARE(oneShot, 0);
        QCOMPARE(ticks, 4);
        repeat.cancel();
        scheduler.advance(1s);
        QCOMPARE(ticks, 4);
        QCOMPARE(scheduler.activeTimerCount(), 0);
        // A one-shot is inactive once it has fired.
        TimerHandle fired = scheduler.singleShot(0ms, [] {});
        scheduler.advance(0ms);
        QVERIFY(!fired.isActive());
    }
};

QTEST_GUILESS_MAIN(TestFakeScheduler)
#include "tst_FakeScheduler.moc"
