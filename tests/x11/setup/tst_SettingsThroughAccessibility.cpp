// SPDX-License-Identifier: GPL-3.0-or-later
// Tolvane as a user meets it on a fresh profile: the default hotkey registers, `tolvane open
// settings` brings the settings window to the front with the keyboard focus, and a toggle pressed
// through the accessibility bus ends up in the preference file.
#include "x11/AccessibleTree.h"
#include "x11/TolvaneProcess.h"

using namespace tolvane::testing;

class TestSettingsThroughAccessibility : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (const char* missing = missingDesktop({QStringLiteral("xdotool"), QStringLiteral("xmessage")}))
            QSKIP(missing);
        atspi_init();
    }

    void freshProfileRegistersTheDefaultAndSettingsOpenInFrontAndWriteThroughTheBus()
    {
        TolvaneProcess tolvane(QStringLiteral("settings"));
        tolvane.process().setProcessChannelMode(QProcess::MergedChannels);
        QVERIFY(tolvane.start());

        // On a fresh profile the default combination is accepted and stored at start.
        QTRY_COMPARE_WITH_TIMEOUT(tolvane.preferences().value(QStringLiteral("customHotkeyModifiers")).toInt(), 6144,
                                  10000);
        QCOMPARE(tolvane.preferences().value(QStringLiteral("customHotkeyKeyCode")).toInt(), 49);

        const QStringList openSettings{QStringLiteral("open"), QStringLiteral("settings")};
        QVERIFY(tolvane.command(openSettings));
        // In front, with the keyboard focus, though Tolvane has no other window.
        QTRY_VERIFY_WITH_TIMEOUT(activeWindowName().startsWith(QLatin1String("Settings")), 10000);

        const QString toggleName = QStringLiteral("Auto-Save Passage Lookups to Review Deck");
        AccessiblePtr toggle;
        QTRY_VERIFY_WITH_TIMEOUT((toggle = tolvaneControl(ATSPI_ROLE_CHECK_BOX, toggleName)) != nullptr, 15000);
        QVERIFY(press(toggle.get()));
        QTRY_VERIFY_WITH_TIMEOUT(tolvane.preferences().value(QStringLiteral("passageAutoSaveEnabled")).toBool(), 10000);

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
        QVERIFY(tolvane.command(openSettings));
        QTRY_VERIFY_WITH_TIMEOUT(activeWindowName().startsWith(QLatin1String("Settings")), 10000);
        const QByteArray log = tolvane.process().readAll();
        QVERIFY2(!log.contains("Could not register"), log.constData());
    }
};

QTEST_GUILESS_MAIN(TestSettingsThroughAccessibility)
#include "tst_SettingsThroughAccessibility.moc"
