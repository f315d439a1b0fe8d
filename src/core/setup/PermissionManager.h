// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"
#include "core/support/Scheduler.h"

#include <QObject>
#include <QString>

#include <functional>

namespace tolvane {

class AccessibilityService;
class ScreenTextRecognizer;

// How to ask the desktop about one permission.
struct PermissionProbe
{
    std::function<bool()> isGranted;
    std::function<void()> request;
    // The error says what to do where there is no settings window to open.
    std::function<Result<void>()> openSettings;
    // Whether a request also opens the settings, whatever its answer: for a permission whose grant
    // the user finishes there.
    bool openSettingsAfterRequest = false;
};

// Keeps whether Tolvane holds one permission, polling while it lives so that a change made in the
// desktop's settings shows within a poll period; observers hear only of changes. Also remembers
// why the settings window could not be opened. Main thread only.
class PermissionManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isGranted READ isGranted NOTIFY isGrantedChanged)
    Q_PROPERTY(QString settingsMessage READ settingsMessage NOTIFY settingsMessageChanged)
public:
    static constexpr Duration pollPeriod{1500};

    PermissionManager(PermissionProbe probe, Scheduler& scheduler, QObject* parent = nullptr);
    ~PermissionManager() override;

    bool isGranted() const { return m_granted; }
    // Set when the desktop has no settings window to open: what the user can do instead.
    QString settingsMessage() const { return m_settingsMessage; }

    void refresh();
    void requestAccess();
    void openSystemSettings();

Q_SIGNALS:
    void isGrantedChanged(bool isGranted);
    void settingsMessageChanged(const QString& message);

private:
    PermissionProbe m_probe;
    bool m_granted = false;
    QString m_settingsMessage;
    TimerHandle m_pollTimer;
};

// Whether Tolvane may read other applications' text through the accessibility bus.
class AccessibilityPermissionManager final : public PermissionManager
{
public:
    AccessibilityPermissionManager(AccessibilityService& service, Scheduler& scheduler, QObject* parent = nullptr);
};

// Whether Tolvane may capture the strip of screen the OCR fallback reads.
class ScreenRecordingPermissionManager final : public PermissionManager
{
public:
    ScreenRecordingPermissionManager(ScreenTextRecognizer& recognizer, Scheduler& scheduler, QObject* parent = nullptr);
};

} // namespace tolvane
