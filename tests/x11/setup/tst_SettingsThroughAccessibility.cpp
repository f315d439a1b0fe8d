// SPDX-License-Identifier: GPL-3.0-or-later
// Tolvane as a user meets it on a fresh profile: the default hotkey registers, `tolvane open
// settings` brings the settings window to the front with the keyboard focus, and a toggle pressed
// through the accessibility bus ends up in the preference file.
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "x11/AccessibleTree.h"

#include <atspi/atspi.h>

#include <memory>

using namespace tolvane::testing;

namespace {

QJsonObject preferenceFile(const QString& configHome)
{
    QFile file(configHome + QStringLiteral("/Tolvane/preferences.json"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QJsonDocument::fromJson(file.readAll()).object();
}

QString activeWindowName()
{
    QProcess xdotool;
    xdotool.start(QStringLiteral("xdotool"), {QStringLiteral("getactivewindow"), QStringLiteral("getwindowname")});
    xdotool.waitForFinished(3000);
    return QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
}

} // namespace

class TestSettingsThroughAccessibility : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY") || qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
            QSKIP("No desktop: run inside scripts/virtual-desktop");
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty() ||
            QStandardPaths::findExecutable(QStringLiteral("xmessage")).isEmpty())
            QSKIP("xdotool or xmessage (x11-utils) is missing: run scripts/setup");
        atspi_init();
    }

    void freshProfileRegistersTheDefaultAndSettingsOpenInFrontAndWriteThroughTheBus()
    {
        QTemporaryDir profile;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString configHome = profile.filePath(QStringLiteral("config"));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
        environment.insert(QStringLiteral("XDG_DATA_HOME"), profile.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("TOLVANE_INSTANCE_NAME"),
                           QStringLiteral("tolvane-settings-test-%1").arg(QCoreApplication::applicationPid()));
        environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.remove(QStringLiteral("TOLVANE_PLATFORM"));

        QProcess tolvane;
        tolvane.setProcessEnvironment(environment);
        tolvane.setProcessChannelMode(QProcess::MergedChannels);
        tolvane.start(QStringLiteral(TOLVANE_EXECUTABLE), {});
        QVERIFY(tolvane.waitForStarted());
        auto stop = qScopeGuard([&] {
            tolvane.terminate();
            if (!tolvane.waitForFinished(5000))
                tolvane.kill();
        });

        // On a fresh profile the default combination is accepted and stored at start.
        QTRY_COMPARE_WITH_TIMEOUT(preferenceFile(configHome).value(QStringLiteral("customHotkeyModifiers")).toInt(),
                                  6144, 10000);
        QCOMPARE(preferenceFile(configHome).value(QStringLiteral("customHotkeyKeyCode")).toInt(), 49);

        auto open = [&] {
            QProcess command;
            command.setProcessEnvironment(environment);
            command.start(QStringLiteral(TOLVANE_EXECUTABLE), {QStringLiteral("open"), QStringLiteral("settings")});
            command.waitForFinished(10000);
            return command.exitCode();
        };
        QCOMPARE(open(), 0);
        // In front, with the keyboard focus, though Tolvane has no other window.
        QTRY_VERIFY_WITH_TIMEOUT(activeWindowName().startsWith(QLatin1String("Settings")), 10000);

        const QString toggleName = QStringLiteral("Auto-Save Passage Lookups to Review Deck");
        AccessiblePtr toggle;
        QTRY_VERIFY_WITH_TIMEOUT((toggle = tolvaneControl(ATSPI_ROLE_CHECK_BOX, toggleName)) != nullptr, 15000);
        QVERIFY(press(toggle.get()));
        QTRY_VERIFY_WITH_TIMEOUT(preferenceFile(configHome).value(QStringLiteral("passageAutoSaveEnabled")).toBool(),
                                 10000);

        // Another application takes the focus; opening the settings again brings the same window
        // back in front of it.
        QProcess other;
        other.start(QStringLiteral("xmessage"), {QStringLiteral("-title"), QStringLiteral("Another application"),
                                                 QStringLiteral("Another application has the focus")});
        auto stopOther = qScopeGuard([&] {
            other.kill();
            other.waitForFinished();
        });
        // A new window is not always given the focus at once (focus-stealing prevention): ask for
        // it the way a user's click would, until it has it.
        const auto focusOther = [] {
            QProcess::execute(QStringLiteral("xdotool"),
                              {QStringLiteral("search"), QStringLiteral("--name"),
                               QStringLiteral("^Another application$"), QStringLiteral("windowactivate")});
            return activeWindowName();
        };
        QTRY_COMPARE_WITH_TIMEOUT(focusOther(), QStringLiteral("Another application"), 10000);
        QCOMPARE(open(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(activeWindowName().startsWith(QLatin1String("Settings")), 10000);
        const QByteArray log = tolvane.readAll();
        QVERIFY2(!log.contains("Could not register"), log.constData());
    }
};

QTEST_GUILESS_MAIN(TestSettingsThroughAccessibility)
#include "tst_SettingsThroughAccessibility.moc"
