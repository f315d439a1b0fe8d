// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/ScreenRecordingPermissionManager.h"

namespace tolvane {

ScreenRecordingPermissionManager::ScreenRecordingPermissionManager(ScreenTextRecognizer& recognizer,
                                                                   Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_recognizer(recognizer)
    , m_scheduler(scheduler)
    , m_isGranted(recognizer.isCaptureGranted())
{
    startPolling();
}

ScreenRecordingPermissionManager::~ScreenRecordingPermissionManager()
{
    m_pollTimer.cancel();
}

void ScreenRecordingPermissionManager::startPolling()
{
    m_pollTimer.cancel();
    m_pollTimer = m_scheduler.repeating(pollPeriod, [this] { refresh(); });
}

void ScreenRecordingPermissionManager::refresh()
{
    const bool granted = m_recognizer.isCaptureGranted();
    if (granted == m_isGranted)
        return;
    m_isGranted = granted;
    Q_EMIT isGrantedChanged(m_isGranted);
}

void ScreenRecordingPermissionManager::requestAccess()
{
    m_recognizer.requestCaptureAccess();
    refresh();
    openSystemSettings();
}

void ScreenRecordingPermissionManager::openSystemSettings()
{
    const Result<void> opened = m_recognizer.openCaptureSettings();
    const QString message = opened ? QString() : opened.error().message;
    if (message == m_settingsMessage)
        return;
    m_settingsMessage = message;
    Q_EMIT settingsMessageChanged(m_settingsMessage);
}

} // namespace tolvane
