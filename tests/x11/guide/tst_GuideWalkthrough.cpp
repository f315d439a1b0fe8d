// SPDX-License-Identifier: GPL-3.0-or-later
// A new user goes through the first-run guide of the real program, finding every control by its
// accessible name on the accessibility bus, as a screen reader would, and pressing it there.
#include "x11/AccessibleTree.h"
#include "x11/TolvaneProcess.h"

#include <QElapsedTimer>

using namespace tolvane::testing;

class TestGuideWalkthrough final : public QObject
{
    Q_OBJECT

    TolvaneProcess m_tolvane{QStringLiteral("guide")};
    AccessiblePtr m_app;

    AccessiblePtr application()
    {
        AccessiblePtr desktop(atspi_get_desktop(0));
        const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
        for (int i = 0; i < count; ++i) {
            AccessiblePtr app(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
            if (app && qint64(atspi_accessible_get_process_id(app.get(), nullptr)) == m_tolvane.process().processId())
                return app;
        }
        return nullptr;
    }
    // The guide's window, waiting for it to come up.
    AccessiblePtr guideWindow(int timeoutMs = 15000)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < timeoutMs) {
            if (!m_app)
                m_app = application();
            if (m_app) {
                if (AccessiblePtr window =
                        findShowing(m_app.get(), QStringLiteral("Setup Guide"), ATSPI_ROLE_INVALID, 29))
                    return window;
            }
            QTest::qWait(100);
        }
        return nullptr;
    }
    AccessiblePtr waitFor(const QString& name, AtspiRole role = ATSPI_ROLE_INVALID, int timeoutMs = 15000)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < timeoutMs) {
            if (AccessiblePtr window = guideWindow(timeoutMs)) {
                if (AccessiblePtr found = findShowing(window.get(), name, role))
                    return found;
            }
            QTest::qWait(100);
        }
        return nullptr;
    }
    void pressButton(const QString& name)
    {
        AccessiblePtr button = waitFor(name);
        QVERIFY2(button, qPrintable(name + QStringLiteral(" is not on the screen")));
        QTRY_VERIFY(hasState(button.get(), ATSPI_STATE_ENABLED));
        QVERIFY2(press(button.get()), qPrintable(name + QStringLiteral(" could not be pressed")));
    }
    // "Change Hotkey…", then the keys on the real keyboard, in the guide's window.
    void captureHotkey(const QString& keys)
    {
        pressButton(QStringLiteral("Change Hotkey…"));
        QVERIFY(waitFor(QStringLiteral("Press a modifier combo…"), ATSPI_ROLE_PUSH_BUTTON));
        QVERIFY(waitFor(QStringLiteral("Cancel"), ATSPI_ROLE_PUSH_BUTTON));
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                                   {QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^Setup Guide$"),
                                    QStringLiteral("windowactivate"), QStringLiteral("--sync"), QStringLiteral("key"),
                                    keys}),
                 0);
        QVERIFY(waitFor(QStringLiteral("Change Hotkey…"), ATSPI_ROLE_PUSH_BUTTON));
    }
private Q_SLOTS:
    void initTestCase()
    {
        const QString compiled = QStringLiteral(TOLVANE_SOURCE_DIR "/data/dictionaries/en-fr.tdict");
        if (!QFile::exists(compiled))
            QSKIP("The English → French dictionary is not compiled here: run scripts/setup");
        // French as compiled, German damaged, the rest missing.
        const QString dictionaries = m_tolvane.path(QStringLiteral("dictionaries"));
        QVERIFY(m_tolvane.write(QStringLiteral("dictionaries/en-de.tdict"), QByteArray(4096, '\x5a')));
        QVERIFY(QFile::link(compiled, dictionaries + QStringLiteral("/en-fr.tdict")));
        if (const char* missing = missingDesktop())
            QSKIP(missing);
        atspi_init();

        // One card in the deck, so that finishing the guide has reminders to plan.
        QVERIFY(m_tolvane.write(
            QStringLiteral("data/Tolvane/review_deck.json"),
            R"([{"id":"4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08","sourceText":"house","translation":"maison",)"
            R"("targetLanguage":"fr","status":"new","dateAdded":757000000}])"));
        m_tolvane.environment().insert(QStringLiteral("TOLVANE_DICTIONARY_DIR"), dictionaries);
        QVERIFY(m_tolvane.start());
    }

    void cleanupTestCase() { m_tolvane.stop(); }

    void aNewUserRetriesPastADamagedDictionaryFinishesTheGuideAndItsChoicesAreKept()
    {
        // The guide comes up by itself while it has never been finished.
        QVERIFY2(guideWindow(), "The setup guide did not open at the first start");
        QVERIFY(waitFor(QStringLiteral("Step 1 of 5")));
        pressButton(QStringLiteral("Get Started"));
        QVERIFY(waitFor(QStringLiteral("Step 2 of 5")));

        // Continue waits for the language's model.
        AccessiblePtr next = waitFor(QStringLiteral("Continue"), ATSPI_ROLE_PUSH_BUTTON);
        QVERIFY(next && !hasState(next.get(), ATSPI_STATE_ENABLED));
        pressButton(QStringLiteral("German"));
        QVERIFY2(waitFor(QStringLiteral("Download failed")), "A damaged dictionary did not fail the preparation");
        QVERIFY(waitFor(QStringLiteral("The dictionary file …")));
        QVERIFY(!hasState(next.get(), ATSPI_STATE_ENABLED));
        pressButton(QStringLiteral("French"));
        QVERIFY2(waitFor(QStringLiteral("Language model ready"), ATSPI_ROLE_INVALID, 30000),
                 "The French model never became ready");
        pressButton(QStringLiteral("Continue"));

        // A new hotkey, pressed on the real keyboard while the guide captures.
        QVERIFY(waitFor(QStringLiteral("Step 3 of 5")));
        QVERIFY(waitFor(QStringLiteral("Ctrl+Alt+Space")));
        captureHotkey(QStringLiteral("ctrl+shift+k"));
        QVERIFY2(waitFor(QStringLiteral("Ctrl+Shift+K")), "The keycaps do not show the captured combination");
        pressButton(QStringLiteral("Continue"));

        // The reminder frequency, picked from the opened list.
        QVERIFY(waitFor(QStringLiteral("Step 4 of 5")));
        AccessiblePtr picker = waitFor(QString(), ATSPI_ROLE_COMBO_BOX);
        QVERIFY(picker);
        click(picker.get());
        AccessiblePtr choice;
        QTRY_VERIFY((choice = findShowing(m_app.get(), QStringLiteral("Every 1 hour"))) != nullptr);
        click(choice.get());
        QTRY_COMPARE(m_tolvane.preferences().value(QStringLiteral("notificationIntervalHours")).toDouble(), 1.0);
        pressButton(QStringLiteral("Continue"));

        // The summary, with the new hotkey in its sentences, and the end.
        QVERIFY(waitFor(QStringLiteral("Step 5 of 5")));
        QVERIFY(waitFor(QStringLiteral("Hover over any word and press Ctrl+Shift+K to see its translation.")));
        pressButton(QStringLiteral("Start using Tolvane"));
        QTRY_VERIFY_WITH_TIMEOUT(!findShowing(m_app.get(), QStringLiteral("Setup Guide"), ATSPI_ROLE_INVALID, 29),
                                 5000);

        const QJsonObject stored = m_tolvane.preferences();
        QCOMPARE(stored.value(QStringLiteral("targetLanguage")).toString(), QStringLiteral("fr"));
        QCOMPARE(stored.value(QStringLiteral("customHotkeyKeyCode")).toInteger(), 40);
        QCOMPARE(stored.value(QStringLiteral("customHotkeyModifiers")).toInteger(), 4096 | 512);
        QCOMPARE(stored.value(QStringLiteral("notificationIntervalHours")).toDouble(), 1.0);
        QCOMPARE(stored.value(QStringLiteral("onboardingComplete")).toBool(), true);
        // The desktop's notification server shows answer buttons: that is the permission.
        QCOMPARE(stored.value(QStringLiteral("notificationPermissionGranted")).toBool(), true);

        // The reminders of the one card are planned, an hour apart.
        const auto plan = [this] {
            QFile pending(m_tolvane.recordsDirectory() + QStringLiteral("/pending_reminders.json"));
            return pending.open(QIODevice::ReadOnly) ? pending.readAll() : QByteArray();
        };
        QTRY_COMPARE(plan().count("vantor-flashcard-slot-"), 60);
        QVERIFY(plan().contains(R"("timeInterval":3600)"));
    }
};

QTEST_GUILESS_MAIN(TestGuideWalkthrough)
#include "tst_GuideWalkthrough.moc"
