// SPDX-License-Identifier: GPL-3.0-or-later
// Answers to reminders: what reaches the deck, the plan and the review window, and what does not.
#include "core/review/NotificationScheduler.h"
#include "core/review/ReminderResponder.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QTest>

using namespace tolvane;

namespace {

// A deck that keeps its cards in memory and plans again after an answer, as the real one does.
class MemoryDeck final : public ReminderDeck
{
public:
    QList<ReviewCard> cards;
    ReminderPlanner* planner = nullptr;
    Clock* clock = nullptr;
    QList<QPair<QUuid, CardStatus>> statusCalls;
    QList<QPair<QUuid, double>> shownCalls;

    void setStatus(const QUuid& id, CardStatus status) override
    {
        statusCalls.append({id, status});
        for (auto& card : cards) {
            if (card.id == id) {
                card.status = status;
                if (planner)
                    planner->reschedule();
            }
        }
    }
    void markShown(const QUuid& id, double interval) override
    {
        shownCalls.append({id, interval});
        for (auto& card : cards) {
            if (card.id == id && clock) {
                card.lastShownDate = clock->now();
                card.nextNotificationDate = clock->now().addSecs(qint64(interval));
            }
        }
    }
};

class CountingPlanner final : public ReminderPlanner
{
public:
    int plans = 0;
    void reschedule() override { ++plans; }
    void removeDeliveredReminders(const QUuid&) override {}
};

NotificationResponse response(const QString& action, const QVariant& cardId)
{
    NotificationResponse r;
    r.actionIdentifier = action;
    r.requestIdentifier = QStringLiteral("vantor-flashcard-slot-0-x");
    if (cardId.isValid())
        r.userInfo.insert(QStringLiteral("cardId"), cardId);
    return r;
}

struct Rig
{
    MemoryPreferenceStore store;
    Preferences preferences{store};
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    MemoryDeck deck;
    CountingPlanner planner;
    int windowsShown = 0;
    ReminderResponder responder{deck, planner, preferences, scheduler, [this] { ++windowsShown; }};
    const QUuid id = QUuid::createUuid();
    const QString idText = id.toString(QUuid::WithoutBraces).toUpper();
};

} // namespace

class TestReminderResponder : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void answersSetStatusMarkShownAndPlanAgain_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<std::optional<double>>("hours");
        QTest::addColumn<std::optional<CardStatus>>("status");
        QTest::addColumn<double>("interval");
        QTest::addColumn<int>("windows");
        QTest::newRow("I know this, interval absent") << QStringLiteral("FLASHCARD_KNOW_IT") << std::optional<double>()
                                                      << std::optional(CardStatus::knowIt) << 14400.0 << 0;
        QTest::newRow("Review again, two hours")
            << QStringLiteral("FLASHCARD_REVIEW_AGAIN") << std::optional<double>(2.0)
            << std::optional(CardStatus::reviewAgain) << 7200.0 << 0;
        QTest::newRow("click on the reminder, interval zero")
            << NotificationResponse::defaultActionIdentifier << std::optional<double>(0.0)
            << std::optional<CardStatus>() << 14400.0 << 1;
    }
    void answersSetStatusMarkShownAndPlanAgain()
    {
        QFETCH(QString, action);
        QFETCH(std::optional<double>, hours);
        QFETCH(std::optional<CardStatus>, status);
        QFETCH(double, interval);
        QFETCH(int, windows);
        Rig rig;
        if (hours)
            rig.preferences.setDouble(PreferenceKey::notificationIntervalHours, *hours);
        rig.responder.didReceive(response(action, rig.idText));
        QVERIFY(rig.deck.shownCalls.isEmpty()); // on the main loop, after the desktop's call returns
        rig.scheduler.runPosted();

        if (status) {
            QCOMPARE(rig.deck.statusCalls.size(), 1);
            QCOMPARE(rig.deck.statusCalls.first().first, rig.id);
            QVERIFY(rig.deck.statusCalls.first().second == *status);
        } else {
            QVERIFY(rig.deck.statusCalls.isEmpty());
        }
        QCOMPARE(rig.deck.shownCalls, (QList<QPair<QUuid, double>>{{rig.id, interval}}));
        QCOMPARE(rig.planner.plans, 1);
        QCOMPARE(rig.windowsShown, windows);
    }

    void responseWithoutUsableCardChangesNothing_data()
    {
        QTest::addColumn<QVariant>("cardId");
        QTest::newRow("missing") << QVariant();
        QTest::newRow("not an identifier") << QVariant(QStringLiteral("not-a-uuid"));
        QTest::newRow("braced") << QVariant(QUuid::createUuid().toString());
        QTest::newRow("a number") << QVariant(42);
        QTest::newRow("empty") << QVariant(QString());
    }
    void responseWithoutUsableCardChangesNothing()
    {
        QFETCH(QVariant, cardId);
        Rig rig;
        rig.responder.didReceive(response(NotificationResponse::defaultActionIdentifier, cardId));
        rig.responder.didReceive(response(QStringLiteral("FLASHCARD_KNOW_IT"), cardId));
        NotificationRequest request;
        request.userInfo.insert(QStringLiteral("cardId"), cardId);
        rig.responder.willPresent(request);
        rig.scheduler.runPosted();
        QVERIFY(rig.deck.statusCalls.isEmpty());
        QVERIFY(rig.deck.shownCalls.isEmpty());
        QCOMPARE(rig.planner.plans, 0);
        QCOMPARE(rig.windowsShown, 0);
    }

    void reminderWhileInFrontPushesTheCardOutWithoutAnswering()
    {
        Rig rig;
        rig.preferences.setDouble(PreferenceKey::notificationIntervalHours, 0.5);
        NotificationRequest request;
        request.userInfo.insert(QStringLiteral("cardId"), rig.idText);
        rig.responder.willPresent(request);
        rig.scheduler.runPosted();
        QVERIFY(rig.deck.statusCalls.isEmpty());
        QCOMPARE(rig.deck.shownCalls, (QList<QPair<QUuid, double>>{{rig.id, 1800.0}}));
        QCOMPARE(rig.planner.plans, 1);
        QCOMPARE(rig.windowsShown, 0);
    }

    void knownCardLeavesThePlanAndTheNextReminderComesOneIntervalLater()
    {
        MemoryPreferenceStore store;
        Preferences preferences(store);
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        FakeNotificationCenter center;
        MemoryDeck deck;
        deck.clock = &clock;
        ReviewCard a;
        a.id = QUuid::createUuid();
        a.sourceText = QStringLiteral("apple");
        ReviewCard b = a;
        b.id = QUuid::createUuid();
        b.sourceText = QStringLiteral("bread");
        deck.cards = {a, b};
        NotificationScheduler planner(center, preferences, scheduler, [&] { return deck.cards; });
        deck.planner = &planner;
        ReminderResponder responder(deck, planner, preferences, scheduler, [] {});
        planner.reschedule();
        scheduler.runPosted();
        QCOMPARE(center.pending.size(), 60);

        clock.advance(std::chrono::hours(3));
        responder.didReceive(response(QStringLiteral("FLASHCARD_KNOW_IT"), NotificationScheduler::cardIdText(a.id)));
        scheduler.runPosted();
        QCOMPARE(center.pending.size(), 60);
        for (const NotificationRequest& r : center.pending)
            QCOMPARE(r.title, QStringLiteral("bread"));
        QCOMPARE(center.pending.first().timeIntervalSeconds, 14400.0);
        QCOMPARE(deck.cards.first().nextNotificationDate, clock.now().addSecs(14400));
    }
};

QTEST_GUILESS_MAIN(TestReminderResponder)
#include "tst_ReminderResponder.moc"
