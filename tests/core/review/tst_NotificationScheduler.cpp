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

NotificationRequest foreignRequest(const QString& identifier)
{
    NotificationRequest r;
    r.identifier = identifier;
    return r;
}

QStringList identifiers(const QList<NotificationRequest>& requests)
{
    QStringList ids;
    for (const auto& r : requests)
        ids.append(r.identifier);
    return ids;
}

// The centre answers later, on the main loop, as a real one does.
class LateAnsweringCenter final : public NotificationCenter
{
public:
    explicit LateAnsweringCenter(Scheduler& scheduler)
        : m_scheduler(scheduler)
    {}
    FakeNotificationCenter inner;
    std::function<void(int added)> afterAdd;
    int addCount = 0;

    void setDelegate(NotificationCenterDelegate* d) override { inner.setDelegate(d); }
    void setCategories(const QList<NotificationCategory>& c) override { inner.setCategories(c); }
    void add(const NotificationRequest& request, Completion completion) override
    {
        m_scheduler.post([this, request, completion] {
            inner.add(request, completion);
            if (afterAdd)
                afterAdd(++addCount);
        });
    }
    void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) override
    {
        m_scheduler.post([this, completion] { inner.pendingRequests(completion); });
    }
    void removePendingRequests(const QStringList& ids) override { inner.removePendingRequests(ids); }
    void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) override
    {
        inner.deliveredNotifications(completion);
    }
    void removeDeliveredNotifications(const QStringList& ids) override { inner.removeDeliveredNotifications(ids); }
    void authorizationStatus(std::function<void(NotificationAuthorization)> completion) override
    {
        inner.authorizationStatus(completion);
    }
    void requestAuthorization(std::function<void(bool, const QString&)> completion) override
    {
        inner.requestAuthorization(completion);
    }

private:
    Scheduler& m_scheduler;
};

struct Rig
{
    MemoryPreferenceStore store;
    Preferences preferences{store};
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    FakeNotificationCenter center;
    QList<ReviewCard> deck;
    NotificationScheduler planner{center, preferences, scheduler, [this] { return deck; }};
};

} // namespace

class TestNotificationScheduler : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void categoryCarriesBothAnswersInOrder()
    {
        Rig rig;
        rig.planner.registerCategories();
        QCOMPARE(rig.center.categories.size(), 1);
        const NotificationCategory& category = rig.center.categories.first();
        QCOMPARE(category.identifier, QStringLiteral("FLASHCARD_REMINDER"));
        QCOMPARE(category.actions.size(), 2);
        QCOMPARE(category.actions.at(0).identifier, QStringLiteral("FLASHCARD_KNOW_IT"));
        QCOMPARE(category.actions.at(0).title, QStringLiteral("I know this"));
        QCOMPARE(category.actions.at(1).identifier, QStringLiteral("FLASHCARD_REVIEW_AGAIN"));
        QCOMPARE(category.actions.at(1).title, QStringLiteral("Review again"));
    }

    void deckWithoutEligibleCardsLeavesNothingPlanned_data()
    {
        QTest::addColumn<bool>("onlyKnownCards");
        QTest::newRow("empty deck") << false;
        QTest::newRow("every card known") << true;
    }
    void deckWithoutEligibleCardsLeavesNothingPlanned()
    {
        QFETCH(bool, onlyKnownCards);
        Rig rig;
        rig.deck = {card(QStringLiteral("cat")), card(QStringLiteral("dog"))};
        rig.planner.reschedule();
        rig.scheduler.runPosted();
        QCOMPARE(rig.center.pending.size(), 60);
        QVERIFY(rig.planner.hasRenewalTimer());

        rig.center.pending.append(foreignRequest(QStringLiteral("calendar-event-7")));
        if (onlyKnownCards) {
            for (auto& c : rig.deck)
                c.status = CardStatus::knowIt;
        } else {
            rig.deck.clear();
        }
        rig.planner.reschedule();
        rig.scheduler.runPosted();
        QCOMPARE(identifiers(rig.center.pending), QStringList{QStringLiteral("calendar-event-7")});
        QVERIFY(!rig.planner.hasRenewalTimer());
        QCOMPARE(rig.scheduler.activeTimerCount(), 0);
    }

    void slotsStartWithCardsNeverShownThenLongestUnseen()
    {
        Rig rig;
        const QDateTime yesterday = rig.clock.now().addDays(-1);
        const ReviewCard a = card(QStringLiteral("A"), CardStatus::reviewAgain, yesterday);
        const ReviewCard b = card(QStringLiteral("B"));
        const ReviewCard known = card(QStringLiteral("K"), CardStatus::knowIt);
        const ReviewCard c = card(QStringLiteral("C"));
        rig.deck = {a, b, known, c};
        rig.planner.reschedule();
        rig.scheduler.runPosted();

        const QList<NotificationRequest>& pending = rig.center.pending;
        QCOMPARE(pending.size(), 60);
        const QList<ReviewCard> order{b, c, a};
        for (int slot = 0; slot < 60; ++slot) {
            const NotificationRequest& r = pending.at(slot);
            const ReviewCard& expected = order.at(slot % 3);
            const QString idText = expected.id.toString(QUuid::WithoutBraces).toUpper();
            QCOMPARE(r.identifier, QStringLiteral("vantor-flashcard-slot-%1-%2").arg(slot).arg(idText));
            QCOMPARE(r.title, expected.sourceText);
            QCOMPARE(r.body, expected.translation);
            QCOMPARE(r.userInfo, (QVariantMap{{QStringLiteral("cardId"), idText}}));
            QCOMPARE(r.categoryIdentifier, QStringLiteral("FLASHCARD_REMINDER"));
            QVERIFY(r.sound);
            QCOMPARE(r.timeIntervalSeconds, 14400.0 * (slot + 1));
        }
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
        QCOMPARE(slots.at(0).sourceText, QStringLiteral("1"));
        QCOMPARE(slots.at(1).sourceText, QStringLiteral("3"));
        QCOMPARE(slots.at(49).sourceText, QStringLiteral("99"));
        QCOMPARE(slots.at(50).sourceText, QStringLiteral("0"));
        QCOMPARE(slots.at(59).sourceText, QStringLiteral("18"));

        const QList<ReviewCard> single = NotificationScheduler::reminderCards({card(QStringLiteral("only"))});
        QCOMPARE(single.size(), 60);
        QCOMPARE(single.last().sourceText, QStringLiteral("only"));
    }

    void intervalSetsSpacingRenewalAndTolerance_data()
    {
        QTest::addColumn<std::optional<double>>("hours");
        QTest::addColumn<double>("spacing");
        QTest::addColumn<double>("tolerance");
        QTest::newRow("half an hour") << std::optional<double>(0.5) << 1800.0 << 300.0;
        QTest::newRow("absent") << std::optional<double>() << 14400.0 << 300.0;
        QTest::newRow("zero") << std::optional<double>(0.0) << 14400.0 << 300.0;
        QTest::newRow("negative") << std::optional<double>(-3.0) << 14400.0 << 300.0;
        // 30 slots of 36 s: 5 % of 1 080 s is under the cap.
        QTest::newRow("once a day") << std::optional<double>(24.0) << 86400.0 << 300.0;
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
        rig.planner.reschedule();
        rig.scheduler.runPosted();

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

    void quickSuccessivePlansLeaveOnePlan()
    {
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        MemoryPreferenceStore store;
        Preferences preferences(store);
        LateAnsweringCenter center(scheduler);
        QList<ReviewCard> deck{card(QStringLiteral("cat")), card(QStringLiteral("dog"))};
        NotificationScheduler planner(center, preferences, scheduler, [&] { return deck; });

        planner.reschedule();
        deck.append(card(QStringLiteral("emu")));
        planner.reschedule();
        scheduler.runPosted();
        QCOMPARE(center.inner.pending.size(), 60);
        QCOMPARE(center.inner.pending.at(2).title, QStringLiteral("emu"));

        // A plan overtaken while it is still adding stops adding.
        center.afterAdd = [&](int added) {
            if (added == 10) {
                deck = {card(QStringLiteral("gnu"))};
                planner.reschedule();
            }
        };
        planner.reschedule();
        scheduler.runPosted();
        QCOMPARE(center.inner.pending.size(), 60);
        QCOMPARE(center.inner.pending.last().title, QStringLiteral("gnu"));

        planner.reschedule();
        planner.cancelAll();
        scheduler.runPosted();
        QCOMPARE(center.inner.pending.size(), 0);
        QCOMPARE(scheduler.activeTimerCount(), 0);
    }

    void planningRemovesOnlyReminderRequests()
    {
        const QString uuid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        Rig rig;
        rig.center.pending = {
            foreignRequest(QStringLiteral("vantor-flashcard-") + uuid),
            foreignRequest(QStringLiteral("vantor-flashcard-") + uuid.toLower()),
            foreignRequest(QStringLiteral("vantor-flashcard-slot-59-") + uuid),
            foreignRequest(QStringLiteral("vantor-flashcard-not-a-card-identifier-at-all-honest")),
            foreignRequest(QStringLiteral("vantor-flashcard-{") + uuid + QLatin1Char('}')),
            foreignRequest(QStringLiteral("vantor-flashcard-") + uuid + QStringLiteral("-extra")),
            foreignRequest(QStringLiteral("vantor-streak-") + uuid),
            foreignRequest(QStringLiteral("other")),
        };
        rig.deck = {card(QStringLiteral("cat"))};
        rig.planner.reschedule();
        rig.scheduler.runPosted();

        QCOMPARE(rig.center.removedPending, (QStringList{QStringLiteral("vantor-flashcard-") + uuid,
                                                         QStringLiteral("vantor-flashcard-") + uuid.toLower(),
                                                         QStringLiteral("vantor-flashcard-slot-59-") + uuid}));
        QCOMPARE(rig.center.pending.size(), 5 + 60);
    }

    void failedAdditionsArePrintedAndTheRestStillAdded()
    {
        Rig rig;
        QStringList printed;
        rig.planner.setLinePrinter([&](const QString& line) { printed.append(line); });
        rig.center.addError = QStringLiteral("The notification server is gone.");
        rig.deck = {card(QStringLiteral("cat"))};
        rig.planner.reschedule();
        rig.scheduler.runPosted();
        QCOMPARE(printed.size(), 60);
        QCOMPARE(printed.first(), QStringLiteral("[NotificationScheduler] Failed to schedule slot 0: "
                                                 "The notification server is gone."));
        QCOMPARE(printed.last(), QStringLiteral("[NotificationScheduler] Failed to schedule slot 59: "
                                                "The notification server is gone."));
    }

    void aSchedulerGoneBeforeItsTasksRunLeavesTheCentreAlone()
    {
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        MemoryPreferenceStore store;
        Preferences preferences(store);
        FakeNotificationCenter center;
        center.pending.append(foreignRequest(QStringLiteral("vantor-flashcard-slot-0-x")));
        {
            NotificationScheduler planner(center, preferences, scheduler,
                                          [] { return QList<ReviewCard>{card(QStringLiteral("a"))}; });
            planner.reschedule();
            planner.removeDeliveredReminders(QUuid::createUuid());
            planner.handleAuthorizationResult(true);
        }
        scheduler.runPosted();
        scheduler.advance(std::chrono::hours(200));
        QCOMPARE(center.pending.size(), 1);
        QVERIFY(center.removedDelivered.isEmpty());
        QVERIFY(!preferences.notificationPermissionGranted());
    }

    void deliveredRemindersOfARemovedCardGo()
    {
        Rig rig;
        const QUuid removed = QUuid::createUuid();
        const QUuid kept = QUuid::createUuid();
        rig.center.delivered = {
            {QStringLiteral("r1"), {{QStringLiteral("cardId"), NotificationScheduler::cardIdText(removed)}}},
            {QStringLiteral("r2"), {{QStringLiteral("cardId"), NotificationScheduler::cardIdText(kept)}}},
            {QStringLiteral("r3"), {{QStringLiteral("cardId"), NotificationScheduler::cardIdText(removed)}}},
            {QStringLiteral("r4"), {}},
        };
        rig.planner.removeDeliveredReminders(removed);
        QVERIFY(rig.center.removedDelivered.isEmpty()); // later, on the main loop
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

        QTest::ignoreMessage(QtInfoMsg, "authorization status: notDetermined (granted=0)");
        rig.planner.updateAuthorizationStatus(NotificationAuthorization::notDetermined);
        rig.scheduler.runPosted();
        QVERIFY(!rig.preferences.notificationPermissionGranted());
        QVERIFY(rig.store.storedValues().value(PreferenceKey::notificationPermissionGranted) == PreferenceValue(false));

        rig.planner.handleAuthorizationResult(true);
        rig.scheduler.runPosted();
        QVERIFY(rig.preferences.notificationPermissionGranted());
    }
};

QTEST_GUILESS_MAIN(TestNotificationScheduler)
#include "tst_NotificationScheduler.moc"
