// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/AccessibilityPermissionManager.h"

namespace tolvane {

AccessibilityPermissionManager::AccessibilityPermissionManager(AccessibilityService& service, Scheduler& scheduler,
                                                               QObject* parent)
    : QObject(parent)
    , m_service(service)
    , m_scheduler(scheduler)
    , m_isTrusted(service.isTrusted())
{
    startPolling();
}

AccessibilityPermissionManager::~AccessibilityPermissionManager()
{
    m_pollTimer.cancel();
}

void AccessibilityPermissionManager::startPolling()
{
    m_pollTimer.cancel();
    m_pollTimer = m_scheduler.repeating(pollPeriod, [this] { refresh(); });
}

void AccessibilityPermissionManager::refresh()
{
    const bool trusted = m_service.isTrusted();
    if (trusted == m_isTrusted)
        return;
    m_isTrusted = trusted;
    Q_EMIT isTrustedChanged(m_isTrusted);
}

void AccessibilityPermissionManager::requestAccess()
{
    m_service.requestTrust();
    refresh();
}

void AccessibilityPermissionManager::openSystemSettings()
{
    const Result<void> opened = m_service.openSystemSettings();
    const QString message = opened ? QString() : opened.error().message;
    if (message == m_settingsMessage)
        return;
    m_settingsMessage = message;
    Q_EMIT settingsMessageChanged(m_settingsMessage);
}

} // namespace tolvane
