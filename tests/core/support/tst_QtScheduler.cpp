// SPDX-License-Identifier: GPL-3.0-or-later
// The real scheduler's handles must say what the fake's do: the timing tests rely on the same rules.
#include "core/support/QtScheduler.h"

#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;

class TestQtScheduler : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void aOneShotFiresOnceAndIsThenNoLongerActive()
    {
        QtScheduler scheduler;
        int fired = 0;
        TimerHandle once = scheduler.singleShot(1ms, [&] { ++fired; });
        QVERIFY(once.isActive());
        QTRY_COMPARE(fired, 1);
        QVERIFY(!once.isActive());
        QTest::qWait(20);
        QCOMPARE(fired, 1);
        once.cancel(); // after firing: harmless
    }

    void aRepeatingTimerRunsUntilCancelledEvenFromItsOwnTask()
    {
        QtScheduler scheduler;
        int fired = 0;
        TimerHandle repeating;
        repeating = scheduler.repeating(1ms, [&] {
            if (++fired == 3)
                repeating.cancel();
        });
        QTRY_COMPARE(fired, 3);
        QVERIFY(!repeating.isActive());
        QTest::qWait(20);
        QCOMPARE(fired, 3);
    }

    void aCancelledOneShotNeverRuns()
    {
        QtScheduler scheduler;
        bool ran = false;
        TimerHandle once = scheduler.singleShot(1ms, [&] { ran = true; });
        once.cancel();
        QVERIFY(!once.isActive());
        QTest::qWait(20);
        QVERIFY(!ran);
    }
};

QTEST_GUILESS_MAIN(TestQtScheduler)
#include "tst_QtScheduler.moc"
