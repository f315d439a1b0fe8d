// SPDX-License-Identifier: GPL-3.0-or-later
// A flashcard reminder on a real desktop: the session's notification server shows it with both
// answer buttons and the card's words as typed, and a click on "I know this" reaches the deck.
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/review/NotificationScheduler.h"
#include "core/review/ReminderResponder.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/QtScheduler.h"
#include "fakes/FakeScheduler.h"
#include "platform/linux/notifications/DbusNotificationServer.h"
#include "platform/linux/notifications/DesktopNotificationCenter.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QDBusConnectionInterface>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "x11/AccessibleTree.h"

using namespace tolvane;
using namespace tolvane::testing;

namespace {

// Everything the notification server shows, read through the accessibility bus.
QList<Element> notificationServerContents()
{
    QList<Element> found;
    forEachApplication([&](AtspiAccessible* application) {
        if (nameOf(application).contains(QLatin1String("notification")))
            collect(application, found);
    });
    return found;
}

bool hasLabel(const QList<Element>& contents, const QString& text)
{
    return std::any_of(contents.begin(), contents.end(), [&](const Element& e) { return e.name == text; });
}

// The card as the deck's file holds it now: what survives a restart.
ReviewCard storedCard(const QString& directory, const QUuid& id)
{
    FakeScheduler unused;
    SystemClock clock;
    MemoryPreferenceStore store;
    Preferences preferences(store);
    UsageEventStore usage(clock, directory);
    ReviewDeckStore reread(clock, unused, preferences, usage, nullptr, directory);
    for (const ReviewCard& card : reread.cards()) {
        if (card.id == id)
            return card;
    }
    return {};
}

int pendingCount(NotificationCenter& center)
{
    int count = -1;
    center.pendingRequests([&](QList<NotificationRequest> list) { count = int(list.size()); });
    return count;
}

} // namespace

class TestReminderNotifications : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        if (!bus.isConnected() ||
            !bus.interface()->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications")))
            QSKIP("No notification server on the session bus: run inside scripts/virtual-desktop");
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is missing: run scripts/setup");
        atspi_init();
    }

    void reminderShowsBothAnswersAndTheAnswerReachesTheDeck()
    {
        QTemporaryDir dir;
        MemoryPreferenceStore store;
        Preferences preferences(store);
        preferences.setDouble(PreferenceKey::notificationIntervalHours, 3.0 / 3600.0);
        QtScheduler scheduler;
        SystemClock clock;
        DesktopNotificationCenter center(std::make_unique<DbusNotificationServer>(),
                                         dir.filePath(QStringLiteral("pending_reminders.json")), scheduler, clock,
                                         [] { return false; });
        UsageEventStore usage(clock, dir.path());
        ReviewDeckStore deck(clock, scheduler, preferences, usage, nullptr, dir.path());
        // Valid markup in both fields: a server that parsed it would show bold and italics.
        deck.addCard(QStringLiteral("<b>hostile</b>"), QStringLiteral("<i>x</i> <b>y</b>"), true, QStringLiteral("ru"),
                     DetectedDirection::englishToTarget);
        deck.addCard(QStringLiteral("bread"), QStringLiteral("хлеб"), true, QStringLiteral("ru"),
                     DetectedDirection::englishToTarget);
        QCOMPARE(deck.cards().size(), 2);
        const ReviewCard card = deck.cards().first();
        const ReviewCard bread = deck.cards().last();
        NotificationScheduler planner(center, preferences, scheduler, [&] { return deck.cards(); });
        deck.setReminderPlanner(&planner);
        int reviewWindows = 0;
        ReminderResponder responder(deck, planner, preferences, scheduler, [&] { ++reviewWindows; });
        center.setDelegate(&responder);
        planner.registerCategories();

        std::optional<NotificationAuthorization> status;
        center.authorizationStatus([&](NotificationAuthorization s) { status = s; });
        QTRY_VERIFY(status.has_value());
        QVERIFY(*status == NotificationAuthorization::authorized);

        planner.reschedule();
        QTRY_COMPARE(pendingCount(center), 60);

        QList<Element> contents;
        QTRY_VERIFY_WITH_TIMEOUT((contents = notificationServerContents(),
                                  drawn(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("I know this"))),
                                 15000);
        QVERIFY(drawn(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Review again")));
        QVERIFY2(hasLabel(contents, card.sourceText), "the word is shown as typed");
        QVERIFY2(hasLabel(contents, card.translation), "the translation is shown as typed, not as markup");

        clickAt(drawn(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("I know this"))->extents.center());
        QTRY_VERIFY_WITH_TIMEOUT(deck.cards().first().status == CardStatus::knowIt, 10000);
        // The answer is in review_deck.json, not only in memory.
        const ReviewCard answered = storedCard(dir.path(), card.id);
        QCOMPARE(answered.status, CardStatus::knowIt);
        QVERIFY(answered.lastShownDate.has_value());
        QCOMPARE(reviewWindows, 0);
        // Only the other card is left in the plan.
        QTRY_COMPARE(pendingCount(center), 60);
        center.pendingRequests([&](QList<NotificationRequest> list) {
            for (const NotificationRequest& r : list)
                QCOMPARE(r.title, bread.sourceText);
        });

        // A click on the reminder itself opens the review window and answers nothing.
        std::optional<Element> word;
        QTRY_VERIFY_WITH_TIMEOUT(
            (word = drawn(notificationServerContents(), ATSPI_ROLE_LABEL, bread.sourceText)).has_value(), 15000);
        QVERIFY(!deck.cards().last().lastShownDate.has_value());
        clickAt(word->extents.center());
        QTRY_COMPARE_WITH_TIMEOUT(reviewWindows, 1, 10000);
        QCOMPARE(deck.cards().last().status, CardStatus::new_);
        QTRY_VERIFY(deck.cards().last().lastShownDate.has_value());

        planner.cancelAll();
        QTRY_COMPARE(pendingCount(center), 0);
        QVERIFY(!planner.hasRenewalTimer());
    }
};

QTEST_MAIN(TestReminderNotifications)
#include "tst_ReminderNotifications.moc"
