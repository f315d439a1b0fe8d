// SPDX-License-Identifier: GPL-3.0-or-later
// Answers to reminders: what reaches the deck, the plan and the review window, and what does not.
#include "core/review/ReminderResponder.h"
#include "core/setup/Preferences.h"
#include "fakes/FakeReminderPlanner.h"
#include "fakes/FakeScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QTest>

using namespace tolvane;

namespace {

// Records what the answers ask of the deck.
class RecordingDeck final : public ReminderDeck
{
public:
    QList<QPair<QUuid, CardStatus>> statusCalls;
    QList<QPair<QUuid, double>> shownCalls;
    void setStatus(const QUuid& id, CardStatus status) override { statusCalls.append({id, status}); }
    void markShown(const QUuid& id, double interval) override { shownCalls.append({id, interval}); }
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
    RecordingDeck deck;
    FakeReminderPlanner planner;
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
        using Hours = std::optional<double>;
        using Status = std::optional<CardStatus>;
        QTest::newRow("I know this, interval absent")
            << QStringLiteral("FLASHCARD_KNOW_IT") << Hours() << Status(CardStatus::knowIt) << 14400.0 << 0;
        QTest::newRow("Review again, two hours")
            << QStringLiteral("FLASHCARD_REVIEW_AGAIN") << Hours(2.0) << Status(CardStatus::reviewAgain) << 7200.0 << 0;
        QTest::newRow("click on the reminder, interval zero")
            << NotificationResponse::defaultActionIdentifier << Hours(0.0) << Status() << 14400.0 << 1;
        // Empty action: the reminder came while Tolvane was in front; the card only moves on.
        QTest::newRow("presented in front, half an hour") << QString() << Hours(0.5) << Status() << 1800.0 << 0;
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
        if (action.isEmpty()) {
            NotificationRequest request;
            request.userInfo.insert(QStringLiteral("cardId"), rig.idText);
            rig.responder.willPresent(request);
        } else {
            rig.responder.didReceive(response(action, rig.idText));
        }
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
        QCOMPARE(rig.planner.reschedules, 1);
        QCOMPARE(rig.windowsShown, windows);
    }

    void responseWithoutUsableCardChangesNothing_data()
    {
        QTest::addColumn<QVariant>("cardId");
        QTest::newRow("missing") << QVariant();
        QTest::newRow("not an identifier") << QVariant(QStringLiteral("not-a-uuid"));
        QTest::newRow("a number") << QVariant(42);
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
        QCOMPARE(rig.planner.reschedules, 0);
        QCOMPARE(rig.windowsShown, 0);
    }
};

QTEST_GUILESS_MAIN(TestReminderResponder)
#include "tst_ReminderResponder.moc"
