// SPDX-License-Identifier: GPL-3.0-or-later
// The executable as a user meets it: the command line without a display, one instance per user,
// and the start-up steps that must run before anything reads a preference.
#include "app/AppDelegate.h"
#include "app/SingleInstance.h"
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
    void versionAndHelpNeedNoDisplay()
    {
        for (const QString& argument : {QStringLiteral("--version"), QStringLiteral("--help")}) {
            QProcess process;
            process.setProcessEnvironment(withoutDisplay());
            process.start(binary, {argument});
            QVERIFY2(process.waitForFinished(10000), qPrintable(argument));
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QCOMPARE(process.exitCode(), 0);
            const QString out = QString::fromUtf8(process.readAllStandardOutput());
            QVERIFY2(out.contains(argument == QLatin1String("--version") ? QStringLiteral("Tolvane ")
                                                                         : QStringLiteral("Usage: tolvane")),
                     qPrintable(out));
        }
    }

    void unknownArgumentsAreRefusedClearly()
    {
        QProcess process;
        process.setProcessEnvironment(withoutDisplay());
        process.start(binary, {QStringLiteral("--frobnicate")});
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitCode(), 2);
        QVERIFY(process.readAllStandardError().contains("unknown option --frobnicate"));
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
        {
            SingleInstance crashed(name);
            QVERIFY(crashed.claim());
        }
        SingleInstance next(name);
        QVERIFY(next.claim());
    }

    void launchingRegistersTheTwoDefaultsAndNothingElse()
    {
        FakePlatform platform;
        FakeScheduler scheduler;
        Preferences preferences(*platform.services.preferences);
        AppDelegate delegate(platform.services, preferences, scheduler);
        delegate.applicationDidFinishLaunching();
        QVERIFY(preferences.axWordLookupEnabled());
        QVERIFY(preferences.ocrFallbackEnabled());
        QVERIFY(!preferences.onboardingComplete());
        QVERIFY(platform.preferences->storedValues().isEmpty());
        QVERIFY(!QApplication::quitOnLastWindowClosed());
        QVERIFY(delegate.trayMenu() != nullptr);
        delegate.applicationWillTerminate();
    }
};

QTEST_MAIN(TestStartup)
#include "tst_Startup.moc"
