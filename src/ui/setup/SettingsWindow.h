// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/Autostart.h"

#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QMessageBox;
class QPushButton;
class QSpinBox;

namespace tolvane {

class AccessibilityPermissionManager;
class EventMonitor;
class GlobalHotkeyService;
class HotkeyCaptureCoordinator;
class HotkeyKeycaps;
class HotkeyManager;
class PermissionRow;
class Preferences;
class Scheduler;
class ScreenRecordingPermissionManager;
class StatusBadge;

// What the settings window works with. The callbacks are the composition root's: plan the
// reminders again; open the desktop's notification settings (an empty answer on success, else
// what the user can do instead).
struct SettingsWindowServices
{
    Preferences& preferences;
    AccessibilityPermissionManager& accessibility;
    ScreenRecordingPermissionManager& screenRecording;
    HotkeyManager& hotkeys;
    EventMonitor& eventMonitor;
    GlobalHotkeyService& hotkeyService;
    Scheduler& scheduler;
    std::function<void()> rescheduleReminders;
    std::function<QString()> openNotificationSettings;
    // The login entry this window switches; the user's own when nothing else is given.
    std::optional<Autostart> autostart = std::nullopt;
    // Whether this build has a release feed; without one there is nothing to check automatically.
    bool offersUpdateChecks = false;
};

// The one place to change the preferences after the first-run guide. Every control shows the
// value in effect and writes its key only when the user changes it, so a hand edit of the
// preference file (even a wrong-typed or absurd one) is shown, clamped, and left in the file.
class SettingsWindow final : public QWidget
{
    Q_OBJECT
public:
    static constexpr int contentWidth = 480;
    static constexpr QSize defaultSize{480, 520};

    explicit SettingsWindow(SettingsWindowServices services, QWidget* parent = nullptr);
    ~SettingsWindow() override;

    HotkeyCaptureCoordinator& captureCoordinator() const { return *m_capture; }

protected:
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QWidget* buildHotkeySection();
    QWidget* buildAppearanceSection();
    QWidget* buildPassageSection();
    QWidget* buildAccessibilitySection();
    QWidget* buildOcrSection();
    QWidget* buildDurationSection();
    QWidget* buildNotificationSection();
    QWidget* buildUpdatesSection();
    QWidget* buildStartAtLoginSection();
    QSpinBox* durationStepper(const QString& name, const QString& key);

    void refresh(const QString& key);
    void refreshAll();
    void refreshHotkey();
    void refreshOcrLock();
    void refreshReminderFrequency();
    void showPendingConflict();
    void styleSegments();

    SettingsWindowServices m_services;
    std::unique_ptr<HotkeyCaptureCoordinator> m_capture;
    // Per preference key, how its control shows the value in effect.
    QHash<QString, std::function<void()>> m_refreshers;

    HotkeyKeycaps* m_keycaps = nullptr;
    QPushButton* m_captureButton = nullptr;
    // Labels in Qt::PlainText (plainLabel, captionLabel, warningLabel).
    QLabel* m_captureHint = nullptr;
    QLabel* m_validationMessage = nullptr;
    QLabel* m_registrationError = nullptr;
    QPointer<QMessageBox> m_conflictDialog;
    QWidget* m_segments = nullptr;
    QButtonGroup* m_appearance = nullptr;
    QCheckBox* m_passageAutoSave = nullptr;
    QCheckBox* m_wordHover = nullptr;
    QCheckBox* m_ocrFallback = nullptr;
    QLabel* m_ocrLockedNote = nullptr;
    QSpinBox* m_wordDuration = nullptr;
    QSpinBox* m_passageDuration = nullptr;
    QComboBox* m_reminderFrequency = nullptr;
    StatusBadge* m_notificationBadge = nullptr;
    QPushButton* m_openNotificationSettings = nullptr;
    QLabel* m_notificationMessage = nullptr;
    QCheckBox* m_automaticUpdateChecks = nullptr;
    QCheckBox* m_startAtLogin = nullptr;
    QLabel* m_startAtLoginMessage = nullptr;
};

} // namespace tolvane
