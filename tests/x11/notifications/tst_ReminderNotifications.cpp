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

#include <atspi/atspi.h>

using namespace tolvane;

namespace {

struct GObjectDeleter
{
    void operator()(gpointer object) const { g_object_unref(object); }
};
using AccessiblePtr = std::unique_ptr<AtspiAccessible, GObjectDeleter>;

struct Found
{
    QString name;
    AtspiRole role;
    QRect extents;
};

QString takeString(gchar* text)
{
    const QString result = QString::fromUtf8(text ? text : "");
    g_free(text);
    return result;
}

QRect extentsOf(AtspiAccessible* accessible)
{
    std::unique_ptr<AtspiComponent, GObjectDeleter> component(atspi_accessible_get_component_iface(accessible));
    if (!component)
        return {};
    AtspiRect* rect = atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr);
    if (!rect)
        return {};
    const QRect result(rect->x, rect->y, rect->width, rect->height);
    g_free(rect);
    return result;
}

void collect(AtspiAccessible* accessible, int depth, QList<Found>& found)
{
    if (depth > 12)
        return;
    const int count = atspi_accessible_get_child_count(accessible, nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr child(atspi_accessible_get_child_at_index(accessible, i, nullptr));
        if (!child)
            continue;
        const AtspiRole role = atspi_accessible_get_role(child.get(), nullptr);
        found.append({takeString(atspi_accessible_get_name(child.get(), nullptr)), role, extentsOf(child.get())});
        collect(child.get(), depth + 1, found);
    }
}

// Everything the notification server shows, read through the accessibility bus.
QList<Found> notificationServerContents()
{
    QList<Found> found;
    AccessiblePtr desktop(atspi_get_desktop(0));
    atspi_accessible_clear_cache(desktop.get());
    const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
    for (int i = 0; i < count; ++i) {
        AccessiblePtr application(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
        if (application &&
            takeString(atspi_accessible_get_name(application.get(), nullptr)).contains(QLatin1String("notification")))
            collect(application.get(), 0, found);
    }
    return found;
}

// A visible element of this role and name.
std::optional<Found> shown(const QList<Found>& contents, AtspiRole role, const QString& name)
{
    for (const Found& f : contents) {
        if (f.role == role && f.name == name && !f.extents.isEmpty())
            return f;
    }
    return std::nullopt;
}

std::optional<Found> button(const QList<Found>& contents, const QString& label)
{
    return shown(contents, ATSPI_ROLE_PUSH_BUTTON, label);
}

bool hasLabel(const QList<Found>& contents, const QString& text)
{
    return std::any_of(contents.begin(), contents.end(), [&](const Found& f) { return f.name == text; });
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

        QList<Found> contents;
        QTRY_VERIFY_WITH_TIMEOUT(
            (contents = notificationServerContents(), button(contents, QStringLiteral("I know this"))), 15000);
        QVERIFY(button(contents, QStringLiteral("Review again")));
        QVERIFY2(hasLabel(contents, card.sourceText), "the word is shown as typed");
        QVERIFY2(hasLabel(contents, card.translation), "the translation is shown as typed, not as markup");

        click(button(contents, QStringLiteral("I know this"))->extents.center());
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
        std::optional<Found> word;
        QTRY_VERIFY_WITH_TIMEOUT(
            (word = shown(notificationServerContents(), ATSPI_ROLE_LABEL, bread.sourceText)).has_value(), 15000);
        QVERIFY(!deck.cards().last().lastShownDate.has_value());
        click(word->extents.center());
        QTRY_COMPARE_WITH_TIMEOUT(reviewWindows, 1, 10000);
        QCOMPARE(deck.cards().last().status, CardStatus::new_);
        QTRY_VERIFY(deck.cards().last().lastShownDate.has_value());

        planner.cancelAll();
        QTRY_COMPARE(pendingCount(center), 0);
        QVERIFY(!planner.hasRenewalTimer());
    }

private:
    static void click(QPoint at)
    {
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                                   {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y()),
                                    QStringLiteral("click"), QStringLiteral("1")}),
                 0);
    }
};

QTEST_MAIN(TestReminderNotifications)
#include "tst_ReminderNotifications.moc"
