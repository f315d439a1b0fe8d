// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/PermissionManager.h"

#include "platform/AccessibilityService.h"
#include "platform/ScreenTextRecognizer.h"

#include <utility>

namespace tolvane {

PermissionManager::PermissionManager(PermissionProbe probe, Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_probe(std::move(probe))
    , m_granted(m_probe.isGranted())
{
    m_pollTimer = scheduler.repeating(pollPeriod, [this] { refresh(); });
}

PermissionManager::~PermissionManager()
{
    m_pollTimer.cancel();
}

void PermissionManager::refresh()
{
    const bool granted = m_probe.isGranted();
    if (granted == m_granted)
        return;
    m_granted = granted;
    Q_EMIT isGrantedChanged(m_granted);
}

void PermissionManager::requestAccess()
{
    m_probe.request();
    refresh();
    if (m_probe.openSettingsAfterRequest)
        openSystemSettings();
}

void PermissionManager::openSystemSettings()
{
    const Result<void> opened = m_probe.openSettings();
    const QString message = opened ? QString() : opened.error().message;
    if (message == m_settingsMessage)
        return;
    m_settingsMessage = message;
    Q_EMIT settingsMessageChanged(m_settingsMessage);
}

AccessibilityPermissionManager::AccessibilityPermissionManager(AccessibilityService& service, Scheduler& scheduler,
                                                               QObject* parent)
    : PermissionManager({[&service] { return service.isTrusted(); }, [&service] { service.requestTrust(); },
                         [&service] { return service.openSystemSettings(); }},
                        scheduler, parent)
{}

ScreenRecordingPermissionManager::ScreenRecordingPermissionManager(ScreenTextRecognizer& recognizer,
                                                                   Scheduler& scheduler, QObject* parent)
    : PermissionManager({[&recognizer] { return recognizer.isCaptureGranted(); },
                         [&recognizer] { recognizer.requestCaptureAccess(); },
                         [&recognizer] { return recognizer.openCaptureSettings(); },
                         /*openSettingsAfterRequest=*/true},
                        scheduler, parent)
{}

} // namespace tolvane
