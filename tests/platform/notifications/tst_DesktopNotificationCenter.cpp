// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop notification centre against a scripted notification server: timing, the pending
// file across restarts, answers, and a server that is missing or cannot show buttons.
#include "fakes/FakeNotificationServer.h"
#include "fakes/FakeScheduler.h"
#include "platform/linux/notifications/DesktopNotificationCenter.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;

namespace {

class RecordingDelegate final : public NotificationCenterDelegate
{
public:
    QList<NotificationResponse> responses;
    QList<NotificationRequest> presented;
    void didReceive(const NotificationResponse& r) override { responses.append(r); }
    void willPresent(const NotificationRequest& r) override { presented.append(r); }
};

NotificationRequest reminder(const QString& identifier, double seconds, const QString& word = QStringLiteral("cat"))
{
    NotificationRequest r;
    r.identifier = identifier;
    r.title = word;
    r.body = word + QStringLiteral(" (translated)");
    r.sound = true;
    r.userInfo.insert(QStringLiteral("cardId"), QStringLiteral("4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08"));
    r.categoryIdentifier = QStringLiteral("FLASHCARD_REMINDER");
    r.timeIntervalSeconds = seconds;
    return r;
}

const NotificationCategory reminderCategory{
    QStringLiteral("FLASHCARD_REMINDER"),
    {{QStringLiteral("FLASHCARD_KNOW_IT"), QStringLiteral("I know this")},
     {QStringLiteral("FLASHCARD_REVIEW_AGAIN"), QStringLiteral("Review again")}}};

struct Rig
{
    explicit Rig(QString path, FakeClock& c)
        : clock(c)
        , scheduler(&c)
    {
        auto owned = std::make_unique<FakeNotificationServer>();
        server = owned.get();
        center = std::make_unique<DesktopNotificationCenter>(std::move(owned), path, scheduler, clock,
                                                             [this] { return active; });
        center->setDelegate(&delegate);
        center->setCategories({reminderCategory});
    }
    QStringList pendingIdentifiers()
    {
        QStringList ids;
        center->pendingRequests([&](QList<NotificationRequest> list) {
            for (const auto& r : list)
                ids.append(r.identifier);
        });
        return ids;
    }
    QList<DeliveredNotification> delivered()
    {
        QList<DeliveredNotification> result;
        center->deliveredNotifications([&](QList<DeliveredNotification> list) { result = list; });
        return result;
    }

    FakeClock& clock;
    FakeScheduler scheduler;
    FakeNotificationServer* server = nullptr;
    RecordingDelegate delegate;
    bool active = false;
    std::unique_ptr<DesktopNotificationCenter> center;
};

} // namespace

class TestDesktopNotificationCenter : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    QString path() const { return m_dir.filePath(QStringLiteral("data/pending_reminders.json")); }

private Q_SLOTS:
    void init() { QFile::remove(path()); }

    void dueRequestIsShownOnTimeWithItsButtons()
    {
        FakeClock clock;
        Rig rig(path(), clock);
        bool added = false;
        NotificationRequest request = reminder(QStringLiteral("slot-0"), 60, QStringLiteral("<b>x</b>"));
        request.body = QStringLiteral("<img src=\"file:///etc/passwd\"> & <b>bold</b>");
        rig.center->add(request, [&](const QString& error) { added = error.isEmpty(); });
        QVERIFY(added);
        QCOMPARE(rig.pendingIdentifiers(), QStringList{QStringLiteral("slot-0")});

        rig.scheduler.advance(60s - 1ms);
        QVERIFY(rig.server->shown.isEmpty());
        rig.scheduler.advance(1ms);
        QCOMPARE(rig.server->shown.size(), 1);
        const ServerNotification& shown = rig.server->shown.first();
        QCOMPARE(shown.summary, QStringLiteral("<b>x</b>"));
        QCOMPARE(shown.body,
                 QStringLiteral("&lt;img src=&quot;file:///etc/passwd&quot;&gt; &amp; &lt;b&gt;bold&lt;/b&gt;"));
        QCOMPARE(shown.actions,
                 (QStringList{QStringLiteral("default"), QStringLiteral("Open"), QStringLiteral("FLASHCARD_KNOW_IT"),
                              QStringLiteral("I know this"), QStringLiteral("FLASHCARD_REVIEW_AGAIN"),
                              QStringLiteral("Review again")}));
        QVERIFY(shown.sound);
        QVERIFY(rig.pendingIdentifiers().isEmpty());
        QCOMPARE(rig.delivered().size(), 1);
        QCOMPARE(rig.delivered().first().identifier, QStringLiteral("slot-0"));
        QCOMPARE(rig.delivered().first().userInfo, request.userInfo);
        QVERIFY(rig.delegate.presented.isEmpty());
        QCOMPARE(rig.scheduler.activeTimerCount(), 0);

        // While a Tolvane window is in front the delegate hears of it too.
        rig.active = true;
        rig.center->add(request, {});
        rig.scheduler.advance(60s);
        QCOMPARE(rig.delegate.presented.size(), 1);
        rig.active = false;

        // A server that shows plain text gets the text as it is.
        rig.server->capabilityList = QStringList{QStringLiteral("actions"), QStringLiteral("body")};
        rig.center->add(request, {});
        rig.scheduler.advance(60s);
        QCOMPARE(rig.server->shown.last().body, request.body);
        QCOMPARE(rig.delegate.presented.size(), 1);
    }

    void requestsSurviveARestartAndOnlyTheLatestOverdueOneIsShown()
    {
        FakeClock clock;
        {
            Rig first(path(), clock);
            first.center->add(reminder(QStringLiteral("slot-0"), 60), {});
            first.center->add(reminder(QStringLiteral("slot-1"), 120), {});
            first.center->add(reminder(QStringLiteral("slot-2"), 7200), {});
            first.center->add(reminder(QStringLiteral("slot-1"), 130, QStringLiteral("dog")), {}); // replaces
        }
        clock.advance(300s); // Tolvane was not running
        Rig second(path(), clock);
        QCOMPARE(second.pendingIdentifiers(),
                 (QStringList{QStringLiteral("slot-0"), QStringLiteral("slot-2"), QStringLiteral("slot-1")}));
        QTest::ignoreMessage(QtInfoMsg,
                             "Skipped 1 reminder that came due while it could not be shown; the latest one is shown");
        second.scheduler.advance(0ms);
        QCOMPARE(second.server->shown.size(), 1);
        QCOMPARE(second.server->shown.first().summary, QStringLiteral("dog"));
        QCOMPARE(second.pendingIdentifiers(), QStringList{QStringLiteral("slot-2")});
        // The buttons came from the file: the category was registered in the earlier run.
        QCOMPARE(second.server->shown.first().actions.size(), 6);

        Rig third(path(), clock);
        QCOMPARE(third.pendingIdentifiers(), QStringList{QStringLiteral("slot-2")});
        third.scheduler.advance(7200s - 300s - 1ms);
        QVERIFY(third.server->shown.isEmpty());
        third.scheduler.advance(1ms);
        QCOMPARE(third.server->shown.size(), 1);
    }

    void answersComeBackToTheDelegate()
    {
        FakeClock clock;
        Rig rig(path(), clock);
        rig.center->add(reminder(QStringLiteral("slot-0"), 1), {});
        rig.center->add(reminder(QStringLiteral("slot-1"), 2), {});
        rig.center->add(reminder(QStringLiteral("slot-2"), 3), {});
        rig.scheduler.advance(3s);
        QCOMPARE(rig.server->shown.size(), 3);

        rig.server->onAction(999, QStringLiteral("FLASHCARD_KNOW_IT")); // another application's
        QVERIFY(rig.delegate.responses.isEmpty());

        rig.server->onAction(41, QStringLiteral("FLASHCARD_KNOW_IT"));
        rig.server->onAction(42, QStringLiteral("default"));
        QCOMPARE(rig.delegate.responses.size(), 2);
        QCOMPARE(rig.delegate.responses.at(0).actionIdentifier, QStringLiteral("FLASHCARD_KNOW_IT"));
        QCOMPARE(rig.delegate.responses.at(0).requestIdentifier, QStringLiteral("slot-0"));
        QCOMPARE(rig.delegate.responses.at(0).userInfo.value(QStringLiteral("cardId")),
                 QVariant(QStringLiteral("4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08")));
        QCOMPARE(rig.delegate.responses.at(1).actionIdentifier, NotificationResponse::defaultActionIdentifier);
        // Answered notifications are closed, for servers that would leave them up.
        QCOMPARE(rig.server->closed, (QList<quint32>{41, 42}));

        // Closing is not an answer; the notification just leaves the delivered list.
        QCOMPARE(rig.delivered().size(), 1);
        rig.server->onClosed(43);
        QCOMPARE(rig.delegate.responses.size(), 2);
        QVERIFY(rig.delivered().isEmpty());
        rig.server->onAction(43, QStringLiteral("FLASHCARD_REVIEW_AGAIN"));
        QCOMPARE(rig.delegate.responses.size(), 2);

        // Planning takes pending requests back; removing a shown one closes it on screen.
        rig.center->add(reminder(QStringLiteral("slot-3"), 1), {});
        rig.center->add(reminder(QStringLiteral("slot-4"), 100), {});
        rig.scheduler.advance(1s);
        rig.center->removePendingRequests({QStringLiteral("slot-4")});
        rig.center->removeDeliveredNotifications({QStringLiteral("slot-3"), QStringLiteral("zzz")});
        QCOMPARE(rig.server->closed.last(), 44u);
        QVERIFY(rig.delivered().isEmpty());
        rig.scheduler.advance(1h);
        QCOMPARE(rig.server->shown.size(), 4);
    }

    void withoutAServerRemindersWaitAndAuthorisationIsRefused()
    {
        FakeClock clock;
        Rig rig(path(), clock);
        rig.server->capabilityList.reset();
        rig.center->add(reminder(QStringLiteral("slot-0"), 10), {});
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Reminder kept until the notification "
                                                                             "server answers: The name .*")));
        rig.scheduler.advance(10s);
        rig.scheduler.advance(10min); // retried quietly: one line only
        QVERIFY(rig.server->shown.isEmpty());
        QCOMPARE(rig.pendingIdentifiers(), QStringList{QStringLiteral("slot-0")});
        QVERIFY(QFile::exists(path()));

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^No notification server answers")));
        std::optional<NotificationAuthorization> status;
        rig.center->authorizationStatus([&](NotificationAuthorization s) { status = s; });
        QVERIFY(status == NotificationAuthorization::denied);

        rig.server->capabilityList = QStringList{QStringLiteral("body")};
        QTest::ignoreMessage(QtWarningMsg, "The desktop's notification server cannot show answer buttons");
        std::optional<bool> granted;
        QString reason;
        rig.center->requestAuthorization([&](bool g, const QString& e) {
            granted = g;
            reason = e;
        });
        QCOMPARE(granted, std::optional<bool>(false));
        QVERIFY(!reason.isEmpty());

        rig.server->capabilityList = QStringList{QStringLiteral("actions")};
        QTest::ignoreMessage(QtInfoMsg, "The notification server answers again; reminders are shown");
        rig.scheduler.advance(1min);
        QCOMPARE(rig.server->shown.size(), 1);
        rig.center->authorizationStatus([&](NotificationAuthorization s) { status = s; });
        QVERIFY(status == NotificationAuthorization::authorized);
    }

    void unreadableFileIsKeptAsideAndTheCentreStartsEmpty()
    {
        QDir().mkpath(QFileInfo(path()).absolutePath());
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"requests\": [ {\"identifier\": \"slot-0\", \"dueDate\": 8");
        file.close();
        FakeClock clock;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("is not a list of reminders")));
        Rig rig(path(), clock);
        QVERIFY(rig.pendingIdentifiers().isEmpty());
        QVERIFY(QFile::exists(path() + QStringLiteral(".unreadable")));
        rig.center->add(reminder(QStringLiteral("slot-0"), 1), {});
        rig.scheduler.runPosted(); // written on the next turn of the loop
        Rig again(path(), clock);
        QCOMPARE(again.pendingIdentifiers(), QStringList{QStringLiteral("slot-0")});
    }
};

QTEST_GUILESS_MAIN(TestDesktopNotificationCenter)
#include "tst_DesktopNotificationCenter.moc"
