// SPDX-License-Identifier: GPL-3.0-or-later
// A new user goes through the first-run guide of the real program, finding every control by its
// accessible name on the accessibility bus, as a screen reader would, and pressing it there.
#include "x11/AccessibleTree.h"

#include <atspi/atspi.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

using namespace tolvane::testing;

namespace {

// A real click in the middle of an element, where the bus says it is on the screen.
void click(AtspiAccessible* node)
{
    std::unique_ptr<AtspiComponent, GObjectUnref> component(atspi_accessible_get_component_iface(node));
    QVERIFY(component);
    std::unique_ptr<AtspiRect, decltype(&g_free)> r(
        atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr), &g_free);
    QVERIFY(r && r->width > 0);
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                               {QStringLiteral("mousemove"), QString::number(r->x + r->width / 2),
                                QString::number(r->y + r->height / 2), QStringLiteral("click"), QStringLiteral("1")}),
             0);
}

} // namespace

class TestGuideWalkthrough final : public QObject
{
    Q_OBJECT

    QTemporaryDir m_profile;
    QProcess m_tolvane;
    AccessiblePtr m_app;

    AccessiblePtr application()
    {
        AccessiblePtr desktop(atspi_get_desktop(0));
        const int count = atspi_accessible_get_child_count(desktop.get(), nullptr);
        for (int i = 0; i < count; ++i) {
            AccessiblePtr app(atspi_accessible_get_child_at_index(desktop.get(), i, nullptr));
            if (app && qint64(atspi_accessible_get_process_id(app.get(), nullptr)) == m_tolvane.processId())
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
    QJsonObject preferences() const
    {
        QFile file(m_profile.filePath(QStringLiteral("config/Tolvane/preferences.json")));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QJsonDocument::fromJson(file.readAll()).object();
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString compiled = QStringLiteral(TOLVANE_SOURCE_DIR "/data/dictionaries/en-fr.tdict");
        if (!QFile::exists(compiled))
            QSKIP("The English → French dictionary is not compiled here: run scripts/setup");
        // French as compiled, German damaged, the rest missing.
        const QString dictionaries = m_profile.filePath(QStringLiteral("dictionaries"));
        QVERIFY(QDir().mkpath(dictionaries));
        QVERIFY(QFile::link(compiled, dictionaries + QStringLiteral("/en-fr.tdict")));
        QFile damaged(dictionaries + QStringLiteral("/en-de.tdict"));
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write(QByteArray(4096, '\x5a'));
        damaged.close();
        if (QStandardPaths::findExecutable(QStringLiteral("xdotool")).isEmpty())
            QSKIP("xdotool is missing: run scripts/setup");
        atspi_init();

        // One card in the deck, so that finishing the guide has reminders to plan.
        QDir(m_profile.path()).mkpath(QStringLiteral("data/Tolvane"));
        QFile deck(m_profile.filePath(QStringLiteral("data/Tolvane/review_deck.json")));
        QVERIFY(deck.open(QIODevice::WriteOnly));
        deck.write(R"([{"id":"4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08","sourceText":"house","translation":"maison",)"
                   R"("targetLanguage":"fr","status":"new","dateAdded":757000000}])");
        deck.close();

        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_profile.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_profile.filePath(QStringLiteral("data")));
        environment.insert(QStringLiteral("TOLVANE_DICTIONARY_DIR"), dictionaries);
        environment.insert(QStringLiteral("TOLVANE_INSTANCE_NAME"),
                           QStringLiteral("tolvane-guide-test-%1").arg(QCoreApplication::applicationPid()));
        environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        environment.remove(QStringLiteral("TOLVANE_PLATFORM"));
        m_tolvane.setProcessEnvironment(environment);
        m_tolvane.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_tolvane.start(QStringLiteral(TOLVANE_PROGRAM), QStringList());
        QVERIFY(m_tolvane.waitForStarted());
    }

    void cleanupTestCase()
    {
        if (m_tolvane.state() != QProcess::NotRunning) {
            m_tolvane.terminate();
            if (!m_tolvane.waitForFinished(5000))
                m_tolvane.kill();
        }
    }

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
        QTRY_COMPARE(preferences().value(QStringLiteral("notificationIntervalHours")).toDouble(), 1.0);
        pressButton(QStringLiteral("Continue"));

        // The summary, with the new hotkey in its sentences, and the end.
        QVERIFY(waitFor(QStringLiteral("Step 5 of 5")));
        QVERIFY(waitFor(QStringLiteral("Hover over any word and press Ctrl+Shift+K to see its translation.")));
        pressButton(QStringLiteral("Start using Tolvane"));
        QTRY_VERIFY_WITH_TIMEOUT(!findShowing(m_app.get(), QStringLiteral("Setup Guide"), ATSPI_ROLE_INVALID, 29),
                                 5000);

        const QJsonObject stored = preferences();
        QCOMPARE(stored.value(QStringLiteral("targetLanguage")).toString(), QStringLiteral("fr"));
        QCOMPARE(stored.value(QStringLiteral("customHotkeyKeyCode")).toInteger(), 40);
        QCOMPARE(stored.value(QStringLiteral("customHotkeyModifiers")).toInteger(), 4096 | 512);
        QCOMPARE(stored.value(QStringLiteral("notificationIntervalHours")).toDouble(), 1.0);
        QCOMPARE(stored.value(QStringLiteral("onboardingComplete")).toBool(), true);
        // The desktop's notification server shows answer buttons: that is the permission.
        QCOMPARE(stored.value(QStringLiteral("notificationPermissionGranted")).toBool(), true);

        // The reminders of the one card are planned, an hour apart.
        const auto plan = [this] {
            QFile pending(m_profile.filePath(QStringLiteral("data/Tolvane/pending_reminders.json")));
            return pending.open(QIODevice::ReadOnly) ? pending.readAll() : QByteArray();
        };
        QTRY_COMPARE(plan().count("vantor-flashcard-slot-"), 60);
        QVERIFY(plan().contains(R"("timeInterval":3600)"));
    }
};

QTEST_GUILESS_MAIN(TestGuideWalkthrough)
#include "tst_GuideWalkthrough.moc"
