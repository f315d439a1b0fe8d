// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsWiring.h"

#include "app/InstanceCommands.h"
#include "core/review/NotificationScheduler.h"
#include "core/setup/DesktopSettingsCommand.h"
#include "core/setup/PermissionManager.h"
#include "core/setup/Preferences.h"
#include "core/support/Logging.h"
#include "core/support/Scheduler.h"
#include "platform/PlatformServices.h"
#include "ui/TrayMenu.h"
#include "ui/components/WindowActivation.h"
#include "ui/setup/PermissionWindows.h"
#include "ui/setup/SettingsWindow.h"
#include "ui/share/SharePayload.h"
#include "ui/share/SharePresenter.h"

#include <QProcess>
#include <QStandardPaths>

TOLVANE_DEFINE_LOG(lcSettingsWiring, "SettingsWiring")

namespace tolvane {

namespace {
const QString settingsName = QStringLiteral("settings");
const QString accessibilityName = QStringLiteral("accessibility-permission");
const QString screenRecordingName = QStringLiteral("screen-recording-permission");
const QString guideName = QStringLiteral("guide");
} // namespace

SettingsWiring::SettingsWiring(PlatformServices& services, Preferences& preferences, Scheduler& scheduler,
                               HotkeyManager& hotkeys, NotificationScheduler& reminders,
                               AccessibilityPermissionManager& accessibility,
                               ScreenRecordingPermissionManager& screenRecording, InstanceCommands& commands,
                               TrayMenu& tray, QObject& shareOwner, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_preferences(preferences)
    , m_scheduler(scheduler)
    , m_hotkeys(hotkeys)
    , m_reminders(reminders)
    , m_commands(commands)
    , m_accessibility(accessibility)
    , m_screenRecording(screenRecording)
{
    commands.addWindow(settingsName, [this] { openSettings(); });
    commands.addWindow(accessibilityName, [this] { openAccessibilityPermission(); });
    commands.addWindow(screenRecordingName, [this] { openScreenRecordingPermission(); });

    InstanceCommands* registry = &commands;
    tray.setActions({
        [registry](const QString& name) { return registry->hasWindow(name); },
        [registry](const QString& name) {
            const QString refused = registry->handle({QStringLiteral("open"), name});
            if (!refused.isEmpty())
                qCWarning(lcSettingsWiring).noquote() << refused;
        },
        {},
        [owner = &shareOwner] { SharePresenter::sharedBy(*owner).present(appSharePayload()); },
    });

    // The first-run guide comes up at start until it has been finished, once every feature has
    // registered its window.
    QPointer<SettingsWiring> self(this);
    scheduler.post([self] {
        if (self && !self->m_preferences.onboardingComplete() && self->m_commands.hasWindow(guideName))
            self->m_commands.handle({QStringLiteral("open"), guideName});
    });
}

SettingsWiring::~SettingsWiring()
{
    // The windows observe the monitors; they go first.
    delete m_settingsWindow.data();
    delete m_accessibilityWindow.data();
    delete m_screenRecordingWindow.data();
}

void SettingsWiring::openSettings()
{
    if (!m_settingsWindow) {
        NotificationScheduler* reminders = &m_reminders;
        m_settingsWindow = new SettingsWindow({
            m_preferences,
            m_accessibility,
            m_screenRecording,
            m_hotkeys,
            *m_services.eventMonitor,
            *m_services.hotkeys,
            m_scheduler,
            [reminders] { reminders->reschedule(); },
            &SettingsWiring::openNotificationSettings,
            std::nullopt,
            m_services.updates->canCheckForUpdates(),
        });
    }
    bringToFront(m_settingsWindow);
}

void SettingsWiring::openAccessibilityPermission()
{
    if (!m_accessibilityWindow)
        m_accessibilityWindow = new AccessibilityPermissionWindow(m_accessibility);
    // What the window shows is current the moment it opens, not a poll later.
    m_accessibility.refresh();
    bringToFront(m_accessibilityWindow);
}

void SettingsWiring::openScreenRecordingPermission()
{
    if (!m_screenRecordingWindow)
        m_screenRecordingWindow = new ScreenRecordingPermissionWindow(m_screenRecording);
    m_screenRecording.refresh();
    bringToFront(m_screenRecordingWindow);
}

QString SettingsWiring::openNotificationSettings()
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    const Result<DesktopCommand> command = notificationSettingsCommand(
        desktops, [](const QString& program) { return !QStandardPaths::findExecutable(program).isEmpty(); });
    if (!command)
        return command.error().message;
    const QString program = QStandardPaths::findExecutable(command.value().program);
    if (!QProcess::startDetached(program, command.value().arguments)) {
        const QString message = QStringLiteral("Could not start %1.").arg(command.value().program);
        qCWarning(lcSettingsWiring).noquote() << message;
        return message;
    }
    qCInfo(lcSettingsWiring).noquote() << "Opened the notification settings with" << command.value().program;
    return {};
}

} // namespace tolvane
