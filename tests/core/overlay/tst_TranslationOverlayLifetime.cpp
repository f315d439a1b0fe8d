// SPDX-License-Identifier: GPL-3.0-or-later
// When the passage card closes: its reading time, the hotkey's release, clicks and keys.
#include "core/overlay/TranslationOverlayLifetime.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;
Q_DECLARE_METATYPE(tolvane::PreferenceValue)

namespace {
struct Card
{
    FakePlatform platform;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    Preferences preferences{*platform.services.preferences};
    QList<Duration> closedAt; // virtual time of each close
    std::optional<TranslationOverlayLifetime> lifetime;

    Card() { reset(); }
    void reset()
    {
        lifetime.emplace(preferences, clock, scheduler, *platform.eventMonitor,
                         [this] { closedAt.append(scheduler.elapsed()); });
    }
    // Moves virtual time to t (from the start).
    void at(Duration t) { scheduler.advance(t - scheduler.elapsed()); }
};
} // namespace

class TestTranslationOverlayLifetime : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void closesAfterTheReadingTimeOrAtTheLaterOfReleaseAndIt_data()
    {
        QTest::addColumn<double>("duration"); // stored passageOverlayDurationSeconds; 0: none stored
        QTest::addColumn<int>("updateAt");    // seconds; -1: no update
        QTest::addColumn<int>("releaseAt");   // seconds; -1: no release
        QTest::addColumn<int>("closesAt");
        QTest::newRow("default, release at 1") << 0.0 << -1 << 1 << 3;
        QTest::newRow("default, release at 5 after the close") << 0.0 << -1 << 5 << 3;
        QTest::newRow("default, no release") << 0.0 << -1 << -1 << 3;
        QTest::newRow("10 s, update at 4") << 10.0 << 4 << -1 << 14;
        // The release counts from the show, not from the update.
        QTest::newRow("10 s, update at 4, release at 6") << 10.0 << 4 << 6 << 10;
        QTest::newRow("10 s, release at 12 after an update at 4") << 10.0 << 4 << 12 << 12;
    }
    void closesAfterTheReadingTimeOrAtTheLaterOfReleaseAndIt()
    {
        QFETCH(double, duration);
        QFETCH(int, updateAt);
        QFETCH(int, releaseAt);
        QFETCH(int, closesAt);
        Card card;
        if (duration > 0)
            card.preferences.setDouble(PreferenceKey::passageOverlayDurationSeconds, duration);
        card.lifetime->shown();
        QVERIFY(card.lifetime->isShown());
        for (int second = 1; second <= 20; ++second) {
            card.at(std::chrono::seconds(second));
            if (second == updateAt && card.lifetime->isShown())
                card.lifetime->updated();
            if (second == releaseAt)
                card.lifetime->requestDismiss();
        }
        QCOMPARE(card.closedAt.size() >= 1, true);
        QCOMPARE(card.closedAt.first(), Duration(std::chrono::seconds(closesAt)));
        QVERIFY(!card.lifetime->isShown());
        QCOMPARE(card.platform.eventMonitor->monitorCount(), 0);
        QCOMPARE(card.scheduler.activeTimerCount(), 0);
    }

    void storedNonsenseDurationsMeanThreeSeconds_data()
    {
        QTest::addColumn<PreferenceValue>("stored");
        QTest::newRow("NaN") << PreferenceValue(qQNaN());
        QTest::newRow("-1") << PreferenceValue(-1.0);
        QTest::newRow("1e300") << PreferenceValue(1e300);
        QTest::newRow("infinity") << PreferenceValue(qInf());
        QTest::newRow("text") << PreferenceValue(QStringLiteral("long"));
    }
    void storedNonsenseDurationsMeanThreeSeconds()
    {
        QFETCH(PreferenceValue, stored);
        Card card;
        card.platform.services.preferences->set(PreferenceKey::passageOverlayDurationSeconds, stored);
        QCOMPARE(card.lifetime->duration(), Duration(3000));
        card.lifetime->shown();
        card.at(3s);
        QCOMPARE(card.closedAt, QList<Duration>{Duration(3000)});
    }

    void clickOrKeyClosesAtOnceWithoutSwallowingIt()
    {
        Card card;
        card.lifetime->shown();
        QCOMPARE(card.platform.eventMonitor->clickMonitors.size(), 1);
        QCOMPARE(card.platform.eventMonitor->keyPressMonitors.size(), 1);
        // The monitors are not key monitors: they cannot swallow a key.
        QVERIFY(card.platform.eventMonitor->keyMonitors.isEmpty());
        card.at(1s);
        card.platform.eventMonitor->click();
        QCOMPARE(card.closedAt, QList<Duration>{Duration(1000)});
        QCOMPARE(card.platform.eventMonitor->monitorCount(), 0);

        card.lifetime->shown();
        card.at(2s);
        for (const auto& handler : std::as_const(card.platform.eventMonitor->keyPressMonitors))
            handler();
        QCOMPARE(card.closedAt.size(), 2);
        QCOMPARE(card.platform.eventMonitor->monitorCount(), 0);
        // The earlier reading time does not close the card again.
        card.at(10s);
        QCOMPARE(card.closedAt.size(), 2);
    }

    void releaseWithoutAShowClosesAtOnce()
    {
        Card card;
        card.lifetime->requestDismiss();
        QCOMPARE(card.closedAt, QList<Duration>{Duration(0)});
    }

    void aCardThatIsGoneIsNeverCalled()
    {
        Card card;
        card.lifetime->shown();
        card.lifetime.reset();
        QCOMPARE(card.platform.eventMonitor->monitorCount(), 0);
        card.at(5s);
        QVERIFY(card.closedAt.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTranslationOverlayLifetime)
#include "tst_TranslationOverlayLifetime.moc"
