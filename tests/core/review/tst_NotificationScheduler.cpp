// SPDX-License-Identifier: GPL-3.0-or-later
// The reminder plan: which cards, in which order, when, and that a newer plan always wins.
#include "core/review/NotificationScheduler.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;

namespace {

ReviewCard card(const QString& word, CardStatus status = CardStatus::new_,
                std::optional<QDateTime> lastShown = std::nullopt)
{
    ReviewCard c;
    c.id = QUuid::createUuid();
    c.sourceText = word;
    c.translation = word + QStringLiteral("-translated");
    c.status = status;
    c.lastShownDate = lastShown;
    return c;
}

NotificationRequest requestNamed(const QString& identifier)
{
    NotificationRequest r;
    r.identifier = identifier;
    return r;
}

struct Rig
{
    MemoryPreferenceStore store;
    Preferences preferences{store};
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    FakeNotificationCenter center;
    QList<ReviewCard> deck;
    NotificationScheduler planner{center, preferences, scheduler, [this] { return deck; }};

    void plan()
    {
        planner.reschedule();
        scheduler.runPosted();
    }
};

} // namespace

class TestNotificationScheduler : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void deckWithoutEligibleCardsLeavesNothingPlanned()
    {
        for (bool onlyKnownCards : {false, true}) {
            Rig rig;
            rig.deck = {card(QStringLiteral("cat")), card(QStringLiteral("dog"))};
            rig.plan();
            QCOMPARE(rig.center.pending.size(), 60);
            rig.center.pending.append(requestNamed(QStringLiteral("calendar-event-7")));
            if (onlyKnownCards) {
                for (auto& c : rig.deck)
                    c.status = CardStatus::knowIt;
            } else {
                rig.deck.clear();
            }
            rig.plan();
            QCOMPARE(rig.center.pending.size(), 1);
            QCOMPARE(rig.center.pending.first().identifier, QStringLiteral("calendar-event-7"));
            QVERIFY(!rig.planner.hasRenewalTimer());
            QCOMPARE(rig.scheduler.activeTimerCount(), 0);
        }
    }

    void slotsStartWithCardsNeverShownThenLongestUnseen()
    {
        Rig rig;
        const ReviewCard a = card(QStringLiteral("A"), CardStatus::reviewAgain, rig.clock.now().addDays(-1));
        const ReviewCard b = card(QStringLiteral("B"));
        const ReviewCard c = card(QStringLiteral("C"));
        rig.deck = {a, b, card(QStringLiteral("K"), CardStatus::knowIt), c};
        rig.plan();

        QCOMPARE(rig.center.pending.size(), 60);
        const QList<ReviewCard> order{b, c, a};
        for (int slot = 0; slot < 60; ++slot) {
            const NotificationRequest& r = rig.center.pending.at(slot);
            const ReviewCard& expected = order.at(slot % 3);
            const QString idText = expected.id.toString(QUuid::WithoutBraces).toUpper();
            QCOMPARE(r.identifier, QStringLiteral("vantor-flashcard-slot-%1-%2").arg(slot).arg(idText));
            QCOMPARE(r.body, expected.translation);
            QCOMPARE(r.userInfo, (QVariantMap{{QStringLiteral("cardId"), idText}}));
            QCOMPARE(r.timeIntervalSeconds, 14400.0 * (slot + 1));
        }
        QCOMPARE(rig.center.pending.first().categoryIdentifier, QStringLiteral("FLASHCARD_REMINDER"));
    }

    void equalDatesKeepDeckOrderAndLargeDecksUseTheFirstSixty()
    {
        const QDateTime when(QDate(2026, 3, 1), QTime(8, 0), Qt::UTC);
        QList<ReviewCard> deck;
        for (int i = 0; i < 100; ++i)
            deck.append(card(QString::number(i), CardStatus::new_, when.addSecs(i % 2 ? 0 : 60)));
        const QList<ReviewCard> slots = NotificationScheduler::reminderCards(deck);
        QCOMPARE(slots.size(), 60);
        // Odd-numbered cards were shown earlier; among equals the deck order holds.
        QCOMPARE(slots.at(49).sourceText, QStringLiteral("99"));
        QCOMPARE(slots.at(50).sourceText, QStringLiteral("0"));
        QCOMPARE(NotificationScheduler::reminderCards({deck.first()}).size(), 60);
    }

    void intervalSetsSpacingRenewalAndTolerance_data()
    {
        QTest::addColumn<std::optional<double>>("hours");
        QTest::addColumn<double>("spacing");
        QTest::addColumn<double>("tolerance");
        QTest::newRow("half an hour") << std::optional<double>(0.5) << 1800.0 << 300.0;
        QTest::newRow("absent") << std::optional<double>() << 14400.0 << 300.0;
        // 30 days: longer than one event-loop timer can wait.
        QTest::newRow("once a day") << std::optional<double>(24.0) << 86400.0 << 300.0;
        // 5 % of 30 × 36 s is under the cap.
        QTest::newRow("a hundredth of an hour") << std::optional<double>(0.01) << 36.0 << 54.0;
    }
    void intervalSetsSpacingRenewalAndTolerance()
    {
        QFETCH(std::optional<double>, hours);
        QFETCH(double, spacing);
        QFETCH(double, tolerance);
        Rig rig;
        if (hours)
            rig.preferences.setDouble(PreferenceKey::notificationIntervalHours, *hours);
        rig.deck = {card(QStringLiteral("cat"))};
        rig.plan();

        QCOMPARE(rig.center.pending.first().timeIntervalSeconds, spacing);
        QCOMPARE(rig.center.pending.last().timeIntervalSeconds, spacing * 60);
        QCOMPARE(rig.planner.renewalDelaySeconds(), spacing * 30);
        QCOMPARE(rig.planner.renewalTimerToleranceSeconds(), tolerance);

        // The renewal plans anew exactly once, at interval × 30, and arms the next renewal.
        const quint64 generation = rig.planner.scheduleGeneration();
        rig.scheduler.advance(std::chrono::milliseconds(qint64(spacing * 30 * 1000)) - 1ms);
        QCOMPARE(rig.planner.scheduleGeneration(), generation);
        rig.scheduler.advance(1ms);
        QCOMPARE(rig.planner.scheduleGeneration(), generation + 1);
        QCOMPARE(rig.center.pending.size(), 60);
        QCOMPARE(rig.scheduler.activeTimerCount(), 1);
    }

    void theLatestPlanWins()
    {
        Rig rig;
        rig.center.answerLater = &rig.scheduler;
        rig.deck = {card(QStringLiteral("cat")), card(QStringLiteral("dog"))};
        rig.planner.reschedule();
        rig.deck.append(card(QStringLiteral("emu")));
        rig.plan();
        QCOMPARE(rig.center.pending.size(), 60);
        QCOMPARE(rig.center.pending.at(2).title, QStringLiteral("emu"));

        // A plan overtaken while it is still adding stops adding.
        rig.center.afterAdd = [&](int additions) {
            if (additions == 70) {
                rig.deck = {card(QStringLiteral("gnu"))};
                rig.planner.reschedule();
            }
        };
        rig.plan();
        QCOMPARE(rig.center.pending.size(), 60);
        QCOMPARE(rig.center.pending.last().title, QStringLiteral("gnu"));

        rig.planner.reschedule();
        rig.planner.cancelAll();
        rig.scheduler.runPosted();
        QCOMPARE(rig.center.pending.size(), 0);
        QCOMPARE(rig.scheduler.activeTimerCount(), 0);
    }

    void planningRemovesOnlyReminderRequests()
    {
        const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        const QStringList ours{QStringLiteral("vantor-flashcard-") + uuid,
                               QStringLiteral("vantor-flashcard-") + uuid.toLower(),
                               QStringLiteral("vantor-flashcard-slot-59-") + uuid};
        const QStringList others{QStringLiteral("vantor-flashcard-not-a-card-identifier-at-all-honest"),
                                 QStringLiteral("vantor-flashcard-{") + uuid + QLatin1Char('}'),
                                 QStringLiteral("vantor-flashcard-") + uuid + QStringLiteral("-extra"),
                                 QStringLiteral("vantor-streak-") + uuid, QStringLiteral("other")};
        Rig rig;
        for (const QString& id : ours + others)
            rig.center.pending.append(requestNamed(id));
        rig.deck = {card(QStringLiteral("cat"))};
        rig.plan();
        QCOMPARE(rig.center.removedPending, ours);
        QCOMPARE(rig.center.pending.size(), others.size() + 60);
    }

    void failedAdditionsArePrintedAndTheRestStillTried()
    {
        Rig rig;
        QStringList printed;
        rig.planner.setLinePrinter([&](const QString& line) { printed.append(line); });
        rig.center.addError = QStringLiteral("The notification server is gone.");
        rig.deck = {card(QStringLiteral("cat"))};
        rig.plan();
        QCOMPARE(printed.size(), 60);
        QCOMPARE(printed.last(), QStringLiteral("[NotificationScheduler] Failed to schedule slot 59: "
                                                "The notification server is gone."));
    }

    void deliveredRemindersOfARemovedCardGo()
    {
        Rig rig;
        const QUuid removed = QUuid::createUuid();
        const auto carrying = [](const QUuid& id) {
            return QVariantMap{{QStringLiteral("cardId"), NotificationScheduler::cardIdText(id)}};
        };
        rig.center.delivered = {{QStringLiteral("r1"), carrying(removed)},
                                {QStringLiteral("r2"), carrying(QUuid::createUuid())},
                                {QStringLiteral("r3"), carrying(removed)},
                                {QStringLiteral("r4"), {}}};
        rig.planner.removeDeliveredReminders(removed);
        rig.scheduler.runPosted();
        QCOMPARE(rig.center.removedDelivered, (QStringList{QStringLiteral("r1"), QStringLiteral("r3")}));
    }

    void authorizationIsLoggedAndStored()
    {
        Rig rig;
        QTest::ignoreMessage(QtInfoMsg, "authorization status: authorized (granted=1)");
        rig.planner.updateAuthorizationStatus(NotificationAuthorization::authorized);
        QVERIFY(!rig.preferences.notificationPermissionGranted()); // stored on the main loop
        rig.scheduler.runPosted();
        QVERIFY(rig.preferences.notificationPermissionGranted());
    }
};

QTEST_GUILESS_MAIN(TestNotificationScheduler)
#include "tst_NotificationScheduler.moc"
