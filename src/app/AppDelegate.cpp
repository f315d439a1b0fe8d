// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppDelegate.h"
#include "app/ReviewWiring.h"

#include "app/GuideWiring.h"
#include "app/LookupWiring.h"
#include "app/ProgressWiring.h"
#include "app/SettingsWiring.h"
#include "app/UpdateWiring.h"
#include "core/hotkeys/HotkeyManager.h"
#include "core/progress/LookupMilestoneManager.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/review/NotificationScheduler.h"
#include "core/review/ReminderResponder.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/support/Scheduler.h"
#include "platform/PlatformServices.h"
#include "ui/AppearanceApplier.h"
#include "ui/TrayMenu.h"

#include <QApplication>
#include <QPointer>
#include <QSystemTrayIcon>

TOLVANE_DEFINE_LOG(lcAppDelegate, "AppDelegate")

namespace tolvane {

AppDelegate::AppDelegate(PlatformServices& services, Preferences& preferences, const Clock& clock, Scheduler& scheduler,
                         QString recordsDirectory, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_preferences(preferences)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_recordsDirectory(std::move(recordsDirectory))
    , m_hotkeys(std::make_unique<HotkeyManager>(m_preferences, *m_services.hotkeys))
    , m_accessibilityPermission(
          std::make_unique<AccessibilityPermissionManager>(*m_services.accessibility, m_scheduler))
    , m_screenRecordingPermission(
          std::make_unique<ScreenRecordingPermissionManager>(*m_services.textRecognizer, m_scheduler))
{
    // Built here, so that every accessor answers from the start; nothing is registered with the
    // desktop before launching has finished.
    createRecordsAndReminders();
    wireHotkey();
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    // No taskbar entry and no main window: Tolvane lives in the tray, and closing its last
    // window must not end it.
    QApplication::setQuitOnLastWindowClosed(false);

    m_preferences.registerStartupDefaults();
    m_preferences.reportMistypedValues();

    m_appearance = std::make_unique<AppearanceApplier>();
    m_appearance->applyFrom(m_preferences);
    connect(&m_preferences, &Preferences::changed, this, [this](const QString& key) {
        if (key == PreferenceKey::appearanceMode)
            m_appearance->applyFrom(m_preferences);
    });

    // Reminders: answers come back through the responder; the category gives them their buttons.
    m_services.notifications->setDelegate(m_responder.get());
    m_reminders->registerCategories();

    // A refusal here is not fatal: the manager keeps the message for the settings screen.
    m_hotkeys->updateHotkey(m_hotkeys->currentKeyCode(), m_hotkeys->currentModifiers());
    wireReview(*this, m_services, m_preferences, m_clock);
    m_lookup = std::make_unique<LookupWiring>(*this, m_services, m_preferences, m_clock, m_scheduler);
    m_lookup->start();

    m_trayMenu = std::make_unique<TrayMenu>(m_preferences);
    connect(m_trayMenu.get(), &TrayMenu::quitRequested, qApp, &QApplication::quit, Qt::QueuedConnection);
    m_settings = std::make_unique<SettingsWiring>(m_services, m_preferences, m_scheduler, *m_hotkeys, *m_reminders,
                                                  *m_accessibilityPermission, *m_screenRecordingPermission, m_commands,
                                                  *m_trayMenu, *this);
    m_updates = std::make_unique<UpdateWiring>(m_services, m_preferences, m_clock, m_scheduler, m_commands, *m_trayMenu,
                                               QCoreApplication::applicationFilePath());
    showTrayWhenAvailable();
    m_guide = std::make_unique<GuideWiring>(*this);

    const bool onboardingComplete = m_preferences.onboardingComplete();
    QPointer<AppDelegate> self(this);
    m_services.notifications->authorizationStatus([self](NotificationAuthorization status) {
        if (self)
            self->m_reminders->updateAuthorizationStatus(status);
    });
    // Before the guide is finished there is nothing to remind of; the guide plans when it ends.
    if (onboardingComplete) {
        m_scheduler.post([self] {
            if (self)
                self->m_reminders->reschedule();
        });
    }
}

void AppDelegate::createRecordsAndReminders()
{
    m_usageEvents = std::make_unique<UsageEventStore>(m_clock, m_recordsDirectory);
    m_confusionLog = std::make_unique<ConfusionLogStore>(m_clock, m_recordsDirectory);
    m_reviewDeck = std::make_unique<ReviewDeckStore>(m_clock, m_scheduler, m_preferences, *m_usageEvents, nullptr,
                                                     m_recordsDirectory);
    ReviewDeckStore* deck = m_reviewDeck.get();
    m_reminders = std::make_unique<NotificationScheduler>(*m_services.notifications, m_preferences, m_scheduler,
                                                          [deck] { return deck->cards(); });
    m_reviewDeck->setReminderPlanner(m_reminders.get());
    m_responder = std::make_unique<ReminderResponder>(*m_reviewDeck, *m_reminders, m_preferences, m_scheduler,
                                                      [this] { showReviewWindow(*this); });
    m_milestones = std::make_unique<LookupMilestoneManager>(
        m_preferences, [this](const LookupMilestone& milestone) { m_progress->celebrate(milestone); });
    m_progress = std::make_unique<ProgressWiring>(
        ProgressSources{m_clock, *m_usageEvents, *m_reviewDeck, *m_confusionLog, *m_milestones}, m_commands, *this);
}

void AppDelegate::wireHotkey()
{
    // The callbacks come from inside the desktop's event handling; the look-up itself runs later,
    // in the order of the events, once that handler has returned.
    QPointer<AppDelegate> self(this);
    m_hotkeys->onHotkeyPressed = [self] {
        if (self)
            self->m_scheduler.post([self] {
                if (self)
                    Q_EMIT self->hotkeyPressed();
            });
    };
    m_hotkeys->onHotkeyReleased = [self] {
        if (self)
            self->m_scheduler.post([self] {
                if (self)
                    Q_EMIT self->hotkeyReleased();
            });
    };
}

void AppDelegate::showTrayWhenAvailable()
{
    if (QSystemTrayIcon::isSystemTrayAvailable()) {
        m_trayMenu->show();
        qCInfo(lcAppDelegate) << "Tray icon shown";
        return;
    }
    // Panels often start after the applications of a session; keep looking, quietly.
    static bool told = false;
    if (!told) {
        qCInfo(lcAppDelegate) << "No system tray yet; the icon appears when one starts. Until then, "
                                 "`tolvane open settings` opens the settings";
        told = true;
    }
    QPointer<AppDelegate> self(this);
    m_scheduler.singleShot(std::chrono::milliseconds(500), [self] {
        if (self)
            self->showTrayWhenAvailable();
    });
}

void AppDelegate::applicationWillTerminate()
{
    // Nothing of ours may keep a grab on the keyboard after the process is gone.
    m_hotkeys->unregisterHotkey();
    if (m_lookup)
        m_lookup->stop();
    // Answers that arrive while the process winds down have no deck to go to.
    m_services.notifications->setDelegate(nullptr);
}

} // namespace tolvane
