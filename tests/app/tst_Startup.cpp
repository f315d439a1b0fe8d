// SPDX-License-Identifier: GPL-3.0-or-later
// The executable as a user meets it: the command line without a display, one instance per user,
// and the start-up steps that must run before anything reads a preference.
#include "app/AppDelegate.h"
#include "app/SingleInstance.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

const QString binary = QStringLiteral(TOLVANE_BINARY_DIR "/src/tolvane");

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.remove(QStringLiteral("QT_QPA_PLATFORM"));
    return env;
}

} // namespace

class TestStartup : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void theCommandLineNeedsNoDisplay_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("version") << "--version" << 0 << QByteArray("Tolvane ");
        QTest::newRow("unknown, refused clearly") << "--frobnicate" << 2 << QByteArray("unknown option --frobnicate");
    }
    void theCommandLineNeedsNoDisplay()
    {
        QFETCH(QString, argument);
        QFETCH(int, exitCode);
        QFETCH(QByteArray, said);
        QProcess process;
        process.setProcessEnvironment(withoutDisplay());
        process.start(binary, {argument});
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

    void aNameLeftByAnEarlierInstanceCanBeClaimedAgain()
    {
        const QString name = QStringLiteral("tolvane-stale-%1").arg(QCoreApplication::applicationPid());
        QVERIFY(SingleInstance(name).claim());
        QVERIFY(SingleInstance(name).claim());
    }

    void launchingRegistersTheTwoDefaultsAndNothingElse()
    {
        QTemporaryDir records;
        FakePlatform platform;
        FakeClock clock;
        FakeScheduler scheduler(&clock);
        Preferences preferences(*platform.services.preferences);
        AppDelegate delegate(platform.services, preferences, clock, scheduler, records.path());
        delegate.applicationDidFinishLaunching();
        QVERIFY(preferences.axWordLookupEnabled());
        QVERIFY(preferences.ocrFallbackEnabled());
        QVERIFY(!preferences.onboardingComplete());
        QVERIFY(delegate.trayMenu() != nullptr);
        QVERIFY(!QApplication::quitOnLastWindowClosed());
        // The reminder buttons are installed and answers have somewhere to go.
        QCOMPARE(platform.notifications->categories.size(), 1);
        QCOMPARE(platform.notifications->categories.first().identifier, QStringLiteral("FLASHCARD_REMINDER"));
        QVERIFY(platform.notifications->delegate != nullptr);
        // The permission seen at start is remembered. Besides it, only the accepted hotkey is written;
        // the registered defaults never are.
        scheduler.runPosted();
        QVERIFY(preferences.notificationPermissionGranted());
        QCOMPARE(
            platform.preferences->storedValues().keys(),
            (QStringList{QString(PreferenceKey::customHotkeyKeyCode), QString(PreferenceKey::customHotkeyModifiers),
                         QString(PreferenceKey::notificationPermissionGranted)}));
        // Before the guide is done, nothing is planned even when the deck has cards.
        delegate.reviewDeck().addCard(QStringLiteral("Haus"), QStringLiteral("house"), true, QStringLiteral("de"),
                                      DetectedDirection::targetToEnglish);
        scheduler.advance(std::chrono::seconds(1));
        // The stored (default) hotkey is registered at start, its events arrive as tasks, and it
        // is let go at the end.
        QCOMPARE(platform.hotkeys->registered.size(), 1);
        QCOMPARE(platform.hotkeys->registered.first().keyCode, 49u);
        QCOMPARE(platform.hotkeys->registered.first().modifiers, 2048u);
        QStringList events;
        connect(&delegate, &AppDelegate::hotkeyPressed, this, [&] { events << QStringLiteral("pressed"); });
        connect(&delegate, &AppDelegate::hotkeyReleased, this, [&] { events << QStringLiteral("released"); });
        platform.hotkeys->press(platform.hotkeys->registered.first().identifier);
        platform.hotkeys->release(platform.hotkeys->registered.first().identifier);
        QVERIFY(events.isEmpty());
        scheduler.runPosted();
        QCOMPARE(events, (QStringList{QStringLiteral("pressed"), QStringLiteral("released")}));
        delegate.applicationWillTerminate();
        QVERIFY(platform.hotkeys->registered.isEmpty());
        QVERIFY(platform.notifications->delegate == nullptr);
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
