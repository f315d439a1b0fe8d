// SPDX-License-Identifier: GPL-3.0-or-later
// Start-up of the reminders: answers are routed, the buttons exist, the permission is recorded,
// and nothing is planned before the first-run guide is finished.
#include "core/review/NotificationScheduler.h"
#include "core/review/ReminderResponder.h"
#include "core/review/ReminderStartup.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QTest>

using namespace tolvane;

namespace {

class NoDeck final : public ReminderDeck
{
public:
    void setStatus(const QUuid&, CardStatus) override {}
    void markShown(const QUuid&, double) override {}
};

} // namespace

class TestReminderStartup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void startUp_data()
    {
        QTest::addColumn<bool>("onboardingComplete");
        QTest::addColumn<bool>("authorized");
        QTest::newRow("first launch") << false << false;
        QTest::newRow("guide finished") << true << true;
    }
    void startUp()
    {
        QFETCH(bool, onboardingComplete);
        QFETCH(bool, authorized);
        MemoryPreferenceStore store;
        Preferences preferences(store);
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        FakeNotificationCenter center;
        center.authorization =
            authorized ? NotificationAuthorization::authorized : NotificationAuthorization::notDetermined;
        ReviewCard card;
        card.id = QUuid::createUuid();
        NotificationScheduler planner(center, preferences, scheduler, [&] { return QList<ReviewCard>{card}; });
        NoDeck deck;
        ReminderResponder responder(deck, planner, preferences, scheduler, {});

        connectReminders(center, responder, planner);
        QCOMPARE(center.delegate, &responder);
        QCOMPARE(center.categories.size(), 1);

        QTest::ignoreMessage(QtInfoMsg, authorized ? "authorization status: authorized (granted=1)"
                                                   : "authorization status: notDetermined (granted=0)");
        resumeReminders(center, planner, scheduler, onboardingComplete);
        QVERIFY(center.pending.isEmpty()); // planned on the main loop, after start-up
        scheduler.runPosted();
        QCOMPARE(preferences.notificationPermissionGranted(), authorized);
        QCOMPARE(center.pending.size(), onboardingComplete ? 60 : 0);
        QCOMPARE(planner.hasRenewalTimer(), onboardingComplete);
    }
};

QTEST_GUILESS_MAIN(TestReminderStartup)
#include "tst_ReminderStartup.moc"
