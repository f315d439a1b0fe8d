// SPDX-License-Identifier: GPL-3.0-or-later
// The settings window, the permission windows and the tray menu against fakes: what they show for
// stored and hand-edited values, what they write, and what they leave alone.
#include "core/hotkeys/HotkeyManager.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/review/NotificationScheduler.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"
#include "ui/AppearanceApplier.h"
#include "ui/TrayMenu.h"
#include "ui/setup/PermissionWindows.h"
#include "ui/setup/SettingsWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace tolvane;
using namespace std::chrono_literals;

namespace {

struct Rig
{
    FakePlatform platform;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    Preferences preferences{*platform.preferences};
    HotkeyManager hotkeys{preferences, *platform.hotkeys};
    AccessibilityPermissionManager accessibility{*platform.accessibility, scheduler};
    ScreenRecordingPermissionManager screenRecording{*platform.textRecognizer, scheduler};
    int reschedules = 0;
    std::function<void()> reschedule = [this] { ++reschedules; };
    QTemporaryDir home;
    QString autostartFolder = home.path() + QStringLiteral("/autostart");
    bool offersUpdateChecks = false;

    Rig() { preferences.registerStartupDefaults(); }

    std::unique_ptr<SettingsWindow> window()
    {
        return std::make_unique<SettingsWindow>(
            SettingsWindowServices{preferences, accessibility, screenRecording, hotkeys, *platform.eventMonitor,
                                   *platform.hotkeys, scheduler, [this] { reschedule(); }, [] { return QString(); },
                                   Autostart(autostartFolder, QStringLiteral("/usr/bin/tolvane")), offersUpdateChecks});
    }
    QMap<QString, PreferenceValue> stored() const { return platform.preferences->storedValues(); }
};

template <typename T> T* named(QWidget* window, const QString& name)
{
    for (T* widget : window->findChildren<T*>()) {
        if (widget->accessibleName() == name || widget->property("text").toString() == name)
            return widget;
    }
    qWarning() << "No control named" << name;
    return nullptr;
}

QAction* item(QMenu* menu, const QString& text)
{
    for (QAction* action : menu->actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

} // namespace

class TestSettingsWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void handEditedValuesShowInRangeAndStayInTheFileUntilChanged()
    {
        Rig rig;
        auto& store = *rig.platform.preferences;
        store.set(PreferenceKey::wordOverlayDurationSeconds, 2.5);
        store.set(PreferenceKey::passageOverlayDurationSeconds, QStringLiteral("slow"));
        store.set(PreferenceKey::notificationIntervalHours, 3.0);
        store.set(PreferenceKey::appearanceMode, qint64(42));
        store.set(PreferenceKey::passageAutoSaveEnabled, QList<qint64>{1});
        const auto before = rig.stored();
        auto window = rig.window();
        auto* word = named<QSpinBox>(window.get(), QStringLiteral("Word lookup"));
        auto* passage = named<QSpinBox>(window.get(), QStringLiteral("Passage translation"));
        auto* frequency = named<QComboBox>(window.get(), QStringLiteral("Reminder Frequency"));
        QCOMPARE(word->text(), QStringLiteral("2 sec"));
        QCOMPARE(passage->value(), 3); // the reader's default for a text
        QCOMPARE(frequency->currentText(), QStringLiteral("Every 3 hours"));
        QVERIFY(named<QAbstractButton>(window.get(), QStringLiteral("System"))->isChecked());
        QVERIFY(
            !named<QCheckBox>(window.get(), QStringLiteral("Auto-Save Passage Lookups to Review Deck"))->isChecked());

        // Edited again while open: absurd values show clamped, and nothing is written back.
        store.set(PreferenceKey::wordOverlayDurationSeconds, 1e300);
        store.set(PreferenceKey::passageOverlayDurationSeconds, std::numeric_limits<double>::infinity());
        store.set(PreferenceKey::notificationIntervalHours, 0.25);
        QCOMPARE(word->value(), 10);
        QCOMPARE(passage->value(), 3);
        QCOMPARE(frequency->currentText(), QStringLiteral("Every 15 minutes"));
        QCOMPARE(frequency->count(), 7); // the hand-edited entry is gone again
        QCOMPARE(store.storedValues().value(PreferenceKey::wordOverlayDurationSeconds), PreferenceValue(1e300));
        QCOMPARE(store.storedValues().size(), before.size());
        QCOMPARE(rig.reschedules, 0);

        // The steppers stop at their limits; a step from 2.5 lands on a whole number.
        word->stepUp();
        QCOMPARE(store.storedValues().value(PreferenceKey::wordOverlayDurationSeconds), PreferenceValue(1e300));
        store.set(PreferenceKey::wordOverlayDurationSeconds, 2.5);
        word->stepUp();
        QCOMPARE(rig.preferences.wordOverlayDurationSeconds(), 3.0);
        for (int i = 0; i < 5; ++i)
            word->stepDown();
        QCOMPARE(word->text(), QStringLiteral("1 sec"));
        QCOMPARE(rig.preferences.wordOverlayDurationSeconds(), 1.0);
    }

    void hotkeyCaptureRefusesABareKeyAndTheConflictAnswerDecides_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<quint32>("modifiersAfter");
        QTest::newRow("Use Anyway") << "Use Anyway" << 256u;
        QTest::newRow("Choose Different") << "Choose Different" << 6144u;
    }
    void hotkeyCaptureRefusesABareKeyAndTheConflictAnswerDecides()
    {
        QFETCH(QString, answer);
        QFETCH(quint32, modifiersAfter);
        Rig rig;
        QVERIFY(rig.hotkeys.updateHotkey(49, 6144));
        auto window = rig.window();
        window->show();
        QVERIFY(named<QWidget>(window.get(), QStringLiteral("Ctrl+Alt+Space")));
        auto* change = named<QPushButton>(window.get(), QStringLiteral("Change…"));
        QTest::mouseClick(change, Qt::LeftButton);
        QCOMPARE(change->text(), QStringLiteral("Press combo…"));
        // A bare key is refused with the message, in this desktop's key names.
        rig.platform.eventMonitor->sendKey(KeyEvent{KeyEvent::Type::keyDown, 0, 0, QStringLiteral("a"), false});
        QVERIFY(
            named<QLabel>(window.get(), QStringLiteral("“A” by itself would stop that key from typing normally. Use "
                                                       "a modifier combo like Alt+A, Ctrl+A, or the default "
                                                       "Ctrl+Alt+Space.")));
        // Super+Space is a well-known shortcut: the user is asked.
        QCOMPARE(change->text(), QStringLiteral("Change…"));
        QTest::mouseClick(change, Qt::LeftButton);
        rig.platform.eventMonitor->sendKey(KeyEvent{KeyEvent::Type::keyDown, 49, 256, QStringLiteral(" "), false});
        QMessageBox* dialog = window->findChild<QMessageBox*>();
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Possible Hotkey Conflict"));
        QVERIFY(dialog->text().contains(QLatin1String("Switch input source (Super+Space)")));
        QAbstractButton* chosen = nullptr;
        for (QAbstractButton* button : dialog->buttons()) {
            if (button->text() == answer)
                chosen = button;
        }
        QVERIFY(chosen);
        chosen->click();
        QTRY_VERIFY(!window->findChild<QMessageBox*>());
        QCOMPARE(rig.hotkeys.currentCombination(), (HotkeyCombination{49, modifiersAfter}));
    }

    void ocrToggleIsLockedWithoutScreenCaptureWhateverItsValue()
    {
        Rig rig;
        rig.platform.textRecognizer->granted = false;
        ScreenRecordingPermissionManager screenRecording(*rig.platform.textRecognizer, rig.scheduler);
        auto window = std::make_unique<SettingsWindow>(SettingsWindowServices{rig.preferences,
                                                                              rig.accessibility,
                                                                              screenRecording,
                                                                              rig.hotkeys,
                                                                              *rig.platform.eventMonitor,
                                                                              *rig.platform.hotkeys,
                                                                              rig.scheduler,
                                                                              {},
                                                                              {}});
        window->show();
        auto* ocr = named<QCheckBox>(window.get(), QStringLiteral("OCR Fallback for Word Lookup"));
        auto* note =
            named<QLabel>(window.get(), QStringLiteral("Grant Screen Recording access to enable this toggle."));
        QVERIFY(ocr->isChecked()); // the registered default
        QVERIFY(!ocr->isEnabled());
        QVERIFY(note->isVisible());
        QTest::mouseClick(ocr, Qt::LeftButton);
        QVERIFY(rig.stored().isEmpty());

        // Granted elsewhere: the window follows within one poll.
        rig.platform.textRecognizer->granted = true;
        rig.scheduler.advance(ScreenRecordingPermissionManager::pollPeriod);
        QVERIFY(ocr->isEnabled());
        QVERIFY(!note->isVisible());
        QTest::mouseClick(ocr, Qt::LeftButton);
        QCOMPARE(rig.stored().value(PreferenceKey::ocrFallbackEnabled), PreferenceValue(false));
    }

    void everyFifteenMinutesReplansAtThatSpacingAtOnce()
    {
        Rig rig;
        QTemporaryDir dir;
        UsageEventStore usage(rig.clock, dir.path());
        ReviewDeckStore deck(rig.clock, rig.scheduler, rig.preferences, usage, nullptr, dir.path());
        deck.addCard(QStringLiteral("house"), QStringLiteral("дом"), true, QStringLiteral("ru"),
                     DetectedDirection::englishToTarget);
        NotificationScheduler reminders(*rig.platform.notifications, rig.preferences, rig.scheduler,
                                        [&] { return deck.cards(); });
        rig.reschedule = [&] { reminders.reschedule(); };
        auto window = rig.window();
        auto* frequency = named<QComboBox>(window.get(), QStringLiteral("Reminder Frequency"));
        Q_EMIT frequency->activated(0);
        QCOMPARE(rig.preferences.notificationIntervalHours(), 0.25);
        rig.scheduler.runPosted();
        const QList<NotificationRequest>& pending = rig.platform.notifications->pending;
        QCOMPARE(pending.size(), NotificationScheduler::slotsPerPlan);
        QCOMPARE(pending.at(0).timeIntervalSeconds, 900.0);
        QCOMPARE(pending.at(1).timeIntervalSeconds, 1800.0);
    }

    void darkAndLightSwitchEveryOpenWindowAndSystemReturnsToTheDesktopsLook()
    {
        Rig rig;
        AppearanceApplier applier;
        connect(&rig.preferences, &Preferences::changed, this, [&](const QString& key) {
            if (key == PreferenceKey::appearanceMode)
                applier.applyFrom(rig.preferences);
        });
        const QColor desktopWindow = QApplication::palette().color(QPalette::Window);
        auto settings = rig.window();
        AccessibilityPermissionWindow accessibility(rig.accessibility);
        ScreenRecordingPermissionWindow screen(rig.screenRecording);
        settings->show();
        accessibility.show();
        screen.show();
        const auto allWindowsShow = [&](const QColor& color) {
            for (QWidget* window : std::initializer_list<QWidget*>{settings.get(), &accessibility, &screen})
                QTRY_COMPARE(window->palette().color(QPalette::Window), color); // on the next turn of the loop
        };
        QTest::mouseClick(named<QAbstractButton>(settings.get(), QStringLiteral("Dark")), Qt::LeftButton);
        QCOMPARE(rig.stored().value(PreferenceKey::appearanceMode), PreferenceValue(QStringLiteral("dark")));
        allWindowsShow(AppearanceApplier::darkPalette().color(QPalette::Window));
        QVERIFY(AppearanceApplier::darkPalette().color(QPalette::Window).lightness() < 80);
        QTest::mouseClick(named<QAbstractButton>(settings.get(), QStringLiteral("Light")), Qt::LeftButton);
        allWindowsShow(AppearanceApplier::lightPalette().color(QPalette::Window));
        QVERIFY(AppearanceApplier::lightPalette().color(QPalette::Window).lightness() > 200);
        QTest::mouseClick(named<QAbstractButton>(settings.get(), QStringLiteral("System")), Qt::LeftButton);
        allWindowsShow(desktopWindow);
    }

    void startAtLoginWritesItsEntryOrTurnsBackAndSaysWhy()
    {
        Rig rig;
        auto window = rig.window();
        auto* toggle = named<QCheckBox>(window.get(), QStringLiteral("Start Tolvane when you log in"));
        QVERIFY(toggle && !toggle->isChecked());
        toggle->click();
        QVERIFY(QFile::exists(rig.autostartFolder + QStringLiteral("/tolvane.desktop")));
        toggle->click();
        QVERIFY(!QFile::exists(rig.autostartFolder + QStringLiteral("/tolvane.desktop")));
        // A file where the folder should be: the switch turns back and the window says why.
        QVERIFY(QDir(rig.autostartFolder).removeRecursively());
        QFile blocker(rig.autostartFolder);
        QVERIFY(blocker.open(QIODevice::WriteOnly));
        blocker.close();
        toggle->click();
        QVERIFY(!toggle->isChecked());
        auto* message = named<QLabel>(window.get(), QStringLiteral("Start at login message"));
        QVERIFY(message && !message->isHidden());
        QVERIFY2(message->text().contains(rig.autostartFolder), qPrintable(message->text()));
    }

    void automaticUpdateChecksAreOfferedOnlyWithAFeedAndSwitchTheirKey()
    {
        Rig rig;
        const QString title = QStringLiteral("Check for updates automatically");
        QVERIFY(!named<QCheckBox>(rig.window().get(), title));
        rig.offersUpdateChecks = true;
        auto window = rig.window();
        auto* toggle = named<QCheckBox>(window.get(), title);
        QVERIFY(toggle && !toggle->isChecked());
        toggle->click();
        QCOMPARE(rig.stored().value(PreferenceKey::automaticallyCheckForUpdates), PreferenceValue(true));
    }

    void permissionWindowFollowsAGrantWithinOnePoll()
    {
        Rig rig;
        rig.platform.accessibility->trusted = false;
        AccessibilityPermissionManager manager(*rig.platform.accessibility, rig.scheduler);
        AccessibilityPermissionWindow window(manager);
        QVERIFY(named<QLabel>(&window, QStringLiteral("Accessibility access not granted yet")));
        rig.platform.accessibility->trusted = true;
        rig.scheduler.advance(AccessibilityPermissionManager::pollPeriod);
        QVERIFY(named<QLabel>(&window, QStringLiteral("Accessibility access granted")));
    }

    void trayMenuSwitchesLookupsAndLanguageAndShowsOnlyWiredWindows()
    {
        Rig rig;
        QTemporaryDir dir;
        UsageEventStore usage(rig.clock, dir.path());
        ReviewDeckStore deck(rig.clock, rig.scheduler, rig.preferences, usage, nullptr, dir.path());
        deck.addCard(QStringLiteral("house"), QStringLiteral("дом"), true, std::nullopt,
                     DetectedDirection::englishToTarget);
        rig.preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("ru"));
        deck.addCard(QStringLiteral("bread"), QStringLiteral("хлеб"), true, std::nullopt,
                     DetectedDirection::englishToTarget);

        TrayMenu tray(rig.preferences);
        QStringList wired{QStringLiteral("settings")};
        QStringList opened;
        tray.setActions({[&](const QString& name) { return wired.contains(name); },
                         [&](const QString& name) { opened.append(name); },
                         {},
                         {}});
        QMenu* menu = tray.menu();
        QVERIFY(item(menu, QStringLiteral("Settings…"))->isVisible());
        for (const char* hidden :
             {"Open Review Deck", "Usage Stats", "Setup Guide", "Check for Updates…", "Share Tolvane…"})
            QVERIFY2(!item(menu, QString::fromUtf8(hidden))->isVisible(), hidden);
        QCOMPARE(item(menu, QStringLiteral("Quit"))->shortcut(), QKeySequence(QKeySequence::Quit));

        // Off: the stored switch is a Boolean false, and the item says so.
        item(menu, QStringLiteral("Tolvane Enabled"))->trigger();
        QVERIFY(!rig.preferences.translationHelperEnabled());
        QCOMPARE(rig.stored().value(PreferenceKey::translationHelperEnabled), PreferenceValue(false));
        QVERIFY(item(menu, QStringLiteral("Tolvane Disabled")));
        // Switched on again by a hand edit: the menu shows it the next time it opens.
        rig.platform.preferences->remove(PreferenceKey::translationHelperEnabled);
        Q_EMIT menu->aboutToShow();
        QVERIFY(item(menu, QStringLiteral("Tolvane Enabled"))->isChecked());
        QVERIFY(rig.preferences.translationHelperEnabled());

        // The language applies to new cards only.
        QMenu* languages = item(menu, QStringLiteral("Target Language"))->menu();
        QVERIFY(item(languages, QStringLiteral("Russian"))->isChecked());
        item(languages, QStringLiteral("German"))->trigger();
        QCOMPARE(rig.preferences.targetLanguage(), QStringLiteral("de"));
        deck.addCard(QStringLiteral("water"), QStringLiteral("Wasser"), true, std::nullopt,
                     DetectedDirection::englishToTarget);
        QVERIFY(!deck.cards().at(0).targetLanguage.has_value());
        QCOMPARE(deck.cards().at(1).targetLanguage.value_or(QString()), QStringLiteral("ru"));
        QCOMPARE(deck.cards().at(2).targetLanguage.value_or(QString()), QStringLiteral("de"));

        // Until the guide is finished, opening the menu brings it up, once it is wired.
        Q_EMIT menu->aboutToShow();
        QVERIFY(opened.isEmpty());
        wired.append(QStringLiteral("guide"));
        Q_EMIT menu->aboutToShow();
        QCOMPARE(opened, QStringList{QStringLiteral("guide")});
        rig.preferences.setBool(PreferenceKey::onboardingComplete, true);
        Q_EMIT menu->aboutToShow();
        QCOMPARE(opened.size(), 1);
    }
};

QTEST_MAIN(TestSettingsWindow)
#include "tst_SettingsWindow.moc"
