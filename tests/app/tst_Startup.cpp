// SPDX-License-Identifier: GPL-3.0-or-later
// The executable as a user meets it: the command line without a display, one instance per user,
// and the start-up steps that must run before anything reads a preference.
#include "app/AppDelegate.h"
#include "app/InstanceCommands.h"
#include "app/SingleInstance.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QApplication>
#include <QFuture>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent/QtConcurrentRun>

using namespace tolvane;

namespace {

const QString binary = QStringLiteral(TOLVANE_BINARY_DIR "/src/tolvane");

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    // Commands for a running Tolvane must find none, whatever else runs on this machine.
    env.insert(QStringLiteral("TOLVANE_INSTANCE_NAME"),
               QStringLiteral("tolvane-nobody-%1").arg(QCoreApplication::applicationPid()));
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    return env;
}

// The composition root on fakes, launched.
struct Launched
{
    QTemporaryDir records;
    FakePlatform platform;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    Preferences preferences{*platform.services.preferences};
    AppDelegate delegate{platform.services, preferences, clock, scheduler, records.path()};

    Launched() { delegate.applicationDidFinishLaunching(); }
};

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void theCommandLineNeedsNoDisplay_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("version") << QStringList{"--version"} << 0 << QByteArray("Tolvane ");
        QTest::newRow("unknown, refused clearly")
            << QStringList{"--frobnicate"} << 2 << QByteArray("unknown option --frobnicate");
        QTest::newRow("open: an unknown window is a usage error")
            << QStringList{"open", "nowhere"} << 2 << QByteArray("usage: tolvane open settings|");
        QTest::newRow("open: no Tolvane running")
            << QStringList{"open", "settings"} << 1 << QByteArray("Tolvane is not running");
        QTest::newRow("lookup: no Tolvane running")
            << QStringList{"lookup"} << 1 << QByteArray("Tolvane is not running");
    }
    void theCommandLineNeedsNoDisplay()
    {
        QFETCH(QStringList, arguments);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, said);
        QProcess process;
        process.setProcessEnvironment(withoutDisplay());
        process.start(binary, arguments);
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), exitCode);
        // Answers go to standard output, refusals to standard error.
        const QByteArray out = exitCode == 0 ? process.readAllStandardOutput() : process.readAllStandardError();
        QVERIFY2(out.contains(said), out.constData());
    }

    void aSecondInstanceTellsTheFirstAndLeaves()
    {
        const QString name = QStringLiteral("tolvane-test-%1").arg(QCoreApplication::applicationPid());
        SingleInstance first(name);
        QVERIFY(first.claim());
        int activations = 0;
        connect(&first, &SingleInstance::activationRequested, this, [&] { ++activations; });
        SingleInstance second(name);
        QVERIFY(!second.claim());
        QTRY_COMPARE(activations, 1);
    }

    void commandsReachTheRunningInstanceAndEveryOneIsAnswered()
    {
        const QString name = QStringLiteral("tolvane-commands-%1").arg(QCoreApplication::applicationPid());
        SingleInstance running(name);
        QVERIFY(running.claim());
        InstanceCommands commands;
        int settingsOpened = 0;
        commands.addWindow(QStringLiteral("settings"), [&] { ++settingsOpened; });
        running.setCommandHandler([&](const QStringList& words) { return commands.handle(words); });
        // The sender blocks on its socket, so it runs on a thread of its own while this one answers.
        const auto sent = [&](const QStringList& words) {
            QFuture<Result<void>> future = QtConcurrent::run([&] { return SingleInstance::send(name, words); });
            while (!future.isFinished())
                QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            return future.result();
        };
        QVERIFY(sent({QStringLiteral("open"), QStringLiteral("settings")}).ok());
        QCOMPARE(settingsOpened, 1);
        // A known name this instance has not wired, a look-up nobody answers, words that mean nothing.
        QCOMPARE(sent({QStringLiteral("open"), QStringLiteral("stats")}).error().message,
                 QStringLiteral("Tolvane has no window called \"stats\"."));
        QCOMPARE(sent({QStringLiteral("lookup")}).error().message, QStringLiteral("Look-ups are not available."));
        QVERIFY(!sent({QStringLiteral("frobnicate")}).ok());
        QVERIFY(SingleInstance::send(name + QStringLiteral("-elsewhere"), {QStringLiteral("lookup")})
                    .error()
                    .message.startsWith(QStringLiteral("Tolvane is not running")));
    }

    void aNameLeftByAnEarlierInstanceCanBeClaimedAgain()
    {
        const QString name = QStringLiteral("tolvane-stale-%1").arg(QCoreApplication::applicationPid());
        QVERIFY(SingleInstance(name).claim());
        QVERIFY(SingleInstance(name).claim());
    }

    void launchingRegistersTheTwoDefaultsAndNothingElse()
    {
        Launched app;
        QVERIFY(app.preferences.axWordLookupEnabled());
        QVERIFY(app.preferences.ocrFallbackEnabled());
        QVERIFY(!app.preferences.onboardingComplete());
        // The permission seen at start is remembered. Besides it, only the accepted hotkey is written;
        // the registered defaults never are.
        app.scheduler.runPosted();
        QVERIFY(app.preferences.notificationPermissionGranted());
        QCOMPARE(
            app.platform.preferences->storedValues().keys(),
            (QStringList{QString(PreferenceKey::customHotkeyKeyCode), QString(PreferenceKey::customHotkeyModifiers),
                         QString(PreferenceKey::notificationPermissionGranted)}));
    }

    void launchingLeavesATrayMenuAndNoWindowThatCouldEndTheProcess()
    {
        Launched app;
        QVERIFY(app.delegate.trayMenu() != nullptr);
        QVERIFY(!QApplication::quitOnLastWindowClosed());
    }

    void remindersGetTheirButtonsAndAnswersADelegateUntilTermination()
    {
        Launched app;
        QCOMPARE(app.platform.notifications->categories.size(), 1);
        QCOMPARE(app.platform.notifications->categories.first().identifier, QStringLiteral("FLASHCARD_REMINDER"));
        QVERIFY(app.platform.notifications->delegate != nullptr);
        // Before the guide is done, nothing is planned at start.
        app.scheduler.advance(std::chrono::seconds(1));
        QVERIFY(app.platform.notifications->pending.isEmpty());
        app.delegate.applicationWillTerminate();
        QVERIFY(app.platform.notifications->delegate == nullptr);
    }

    void theStoredHotkeyIsRegisteredItsEventsArriveAsTasksAndTerminationLetsItGo()
    {
        Launched app;
        QCOMPARE(app.platform.hotkeys->registered.size(), 1);
        const auto registration = app.platform.hotkeys->registered.first();
        // A fresh profile gets the default, Ctrl+Alt+Space.
        QCOMPARE(registration.keyCode, 49u);
        QCOMPARE(registration.modifiers, 6144u);
        QStringList events;
        connect(&app.delegate, &AppDelegate::hotkeyPressed, this, [&] { events << QStringLiteral("pressed"); });
        connect(&app.delegate, &AppDelegate::hotkeyReleased, this, [&] { events << QStringLiteral("released"); });
        app.platform.hotkeys->press(registration.identifier);
        app.platform.hotkeys->release(registration.identifier);
        QVERIFY(events.isEmpty());
        app.scheduler.runPosted();
        QCOMPARE(events, (QStringList{QStringLiteral("pressed"), QStringLiteral("released")}));
        app.delegate.applicationWillTerminate();
        QVERIFY(app.platform.hotkeys->registered.isEmpty());
    }

    void aCompletedGuidePlansTheRemindersAtStart()
    {
        QTemporaryDir records;
        FakePlatform platform;
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        Preferences preferences(*platform.services.preferences);
        preferences.setBool(PreferenceKey::onboardingComplete, true);
        {
            // A deck left by an earlier run.
            FakeScheduler earlier(&clock);
            UsageEventStore usage(clock, records.path());
            ReviewDeckStore deck(clock, earlier, preferences, usage, nullptr, records.path());
            deck.addCard(QStringLiteral("Haus"), QStringLiteral("house"), true, QStringLiteral("de"),
                         DetectedDirection::targetToEnglish);
        }
        AppDelegate delegate(platform.services, preferences, clock, scheduler, records.path());
        delegate.applicationDidFinishLaunching();
        QVERIFY(platform.notifications->pending.isEmpty());
        scheduler.runPosted();
        QCOMPARE(platform.notifications->pending.size(), 60);
        QCOMPARE(platform.notifications->pending.first().title, QStringLiteral("Haus"));
    }
};

QTEST_MAIN(TestStartup)
#include "tst_Startup.moc"
