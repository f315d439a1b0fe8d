// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/InstanceCommands.h"

#include <QObject>
#include <QString>

#include <memory>

namespace tolvane {

class AppearanceApplier;
class GuideWiring;
class Clock;
class AccessibilityPermissionManager;
class HotkeyManager;
class ScreenRecordingPermissionManager;
class ConfusionLogStore;
class LookupMilestoneManager;
class LookupWiring;
class NotificationScheduler;
class ProgressWiring;
class Preferences;
class ReminderResponder;
class ReviewDeckStore;
class Scheduler;
class SettingsWiring;
class TrayMenu;
class UpdateWiring;
class UsageEventStore;
struct PlatformServices;

// The start-up sequence, the wiring between components and the routing of answers from the
// desktop. It owns no logic of its own beyond the order of these steps.
class AppDelegate final : public QObject
{
    Q_OBJECT
public:
    // recordsDirectory: where the learning records live (the data directory unless a test says
    // otherwise).
    AppDelegate(PlatformServices& services, Preferences& preferences, const Clock& clock, Scheduler& scheduler,
                QString recordsDirectory, QObject* parent = nullptr);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    TrayMenu* trayMenu() const { return m_trayMenu.get(); }
    SettingsWiring* settings() const { return m_settings.get(); }
    ReviewDeckStore& reviewDeck() const { return *m_reviewDeck; }
    NotificationScheduler& reminders() const { return *m_reminders; }
    UsageEventStore& usageEvents() const { return *m_usageEvents; }
    ConfusionLogStore& confusionLog() const { return *m_confusionLog; }
    LookupMilestoneManager& milestones() const { return *m_milestones; }
    HotkeyManager& hotkeys() const { return *m_hotkeys; }
    // One monitor per permission, for the look-up, the settings and the guide alike.
    AccessibilityPermissionManager& accessibilityPermission() const { return *m_accessibilityPermission; }
    ScreenRecordingPermissionManager& screenRecordingPermission() const { return *m_screenRecordingPermission; }
    ProgressWiring& progress() const { return *m_progress; }
    // What `tolvane open NAME` and `tolvane lookup` reach; each feature adds its entries.
    InstanceCommands& commands() { return m_commands; }
    PlatformServices& services() const { return m_services; }
    Preferences& preferences() const { return m_preferences; }
    Scheduler& scheduler() const { return m_scheduler; }
    GuideWiring* guide() const { return m_guide.get(); }
    LookupWiring* lookup() const { return m_lookup.get(); }
    UpdateWiring* updates() const { return m_updates.get(); }

Q_SIGNALS:
    // The look-up hotkey went down or up; delivered as main-loop tasks, in the order of the events.
    void hotkeyPressed();
    void hotkeyReleased();

private:
    void createRecordsAndReminders();
    void wireHotkey();
    void showTrayWhenAvailable();

    PlatformServices& m_services;
    Preferences& m_preferences;
    const Clock& m_clock;
    Scheduler& m_scheduler;
    QString m_recordsDirectory;
    std::unique_ptr<UsageEventStore> m_usageEvents;
    std::unique_ptr<ConfusionLogStore> m_confusionLog;
    std::unique_ptr<ReviewDeckStore> m_reviewDeck;
    std::unique_ptr<NotificationScheduler> m_reminders;
    std::unique_ptr<ReminderResponder> m_responder;
    std::unique_ptr<LookupMilestoneManager> m_milestones;
    std::unique_ptr<ProgressWiring> m_progress;
    std::unique_ptr<HotkeyManager> m_hotkeys;
    std::unique_ptr<AccessibilityPermissionManager> m_accessibilityPermission;
    std::unique_ptr<ScreenRecordingPermissionManager> m_screenRecordingPermission;
    std::unique_ptr<AppearanceApplier> m_appearance;
    std::unique_ptr<TrayMenu> m_trayMenu;
    std::unique_ptr<SettingsWiring> m_settings;
    std::unique_ptr<LookupWiring> m_lookup;
    InstanceCommands m_commands;
    std::unique_ptr<GuideWiring> m_guide;
    std::unique_ptr<UpdateWiring> m_updates;
};

} // namespace tolvane
