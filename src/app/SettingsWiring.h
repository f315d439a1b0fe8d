// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>

namespace tolvane {

class AccessibilityPermissionManager;
class AccessibilityPermissionWindow;
class HotkeyManager;
class InstanceCommands;
class NotificationScheduler;
class Preferences;
class Scheduler;
class ScreenRecordingPermissionManager;
class ScreenRecordingPermissionWindow;
class SettingsWindow;
class TrayMenu;
struct PlatformServices;

// The settings window, the two permission windows and the tray menu's actions: opens each window by its name (creating
// it or bringing it to the front), registers the names for `tolvane open`, and offers the guide while it is not
// finished.
class SettingsWiring final : public QObject
{
    Q_OBJECT
public:
    // shareOwner keeps the application's one share menu.
    SettingsWiring(PlatformServices& services, Preferences& preferences, Scheduler& scheduler, HotkeyManager& hotkeys,
                   NotificationScheduler& reminders, AccessibilityPermissionManager& accessibility,
                   ScreenRecordingPermissionManager& screenRecording, InstanceCommands& commands, TrayMenu& tray,
                   QObject& shareOwner, QObject* parent = nullptr);
    ~SettingsWiring() override;

    AccessibilityPermissionManager& accessibility() const { return m_accessibility; }
    ScreenRecordingPermissionManager& screenRecording() const { return m_screenRecording; }

    void openSettings();
    void openAccessibilityPermission();
    void openScreenRecordingPermission();

    // The desktop's notification settings; an empty answer when they opened, else what to do.
    static QString openNotificationSettings();

private:
    PlatformServices& m_services;
    Preferences& m_preferences;
    Scheduler& m_scheduler;
    HotkeyManager& m_hotkeys;
    NotificationScheduler& m_reminders;
    InstanceCommands& m_commands;
    AccessibilityPermissionManager& m_accessibility;
    ScreenRecordingPermissionManager& m_screenRecording;
    QPointer<SettingsWindow> m_settingsWindow;
    QPointer<AccessibilityPermissionWindow> m_accessibilityWindow;
    QPointer<ScreenRecordingPermissionWindow> m_screenRecordingWindow;
};

} // namespace tolvane
