// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/ScreenRecordingPermissionManager.h"

namespace tolvane {

ScreenRecordingPermissionManager::ScreenRecordingPermissionManager(ScreenTextRecognizer& recognizer,
                                                                   Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_recognizer(recognizer)
    , m_poll(
          scheduler, pollPeriod, [&recognizer] { return recognizer.isCaptureGranted(); },
          [this](bool value) { Q_EMIT isGrantedChanged(value); })
{}

ScreenRecordingPermissionManager::~ScreenRecordingPermissionManager() = default;

void ScreenRecordingPermissionManager::refresh()
{
    m_poll.refresh();
}

void ScreenRecordingPermissionManager::requestAccess()
{
    m_recognizer.requestCaptureAccess();
    refresh();
    openSystemSettings();
}

void ScreenRecordingPermissionManager::openSystemSettings()
{
    if (m_poll.noteSettingsOpened(m_recognizer.openCaptureSettings()))
        Q_EMIT settingsMessageChanged(m_poll.settingsMessage());
}

} // namespace tolvane
