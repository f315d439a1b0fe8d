// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/AccessibilityPermissionManager.h"

namespace tolvane {

AccessibilityPermissionManager::AccessibilityPermissionManager(AccessibilityService& service, Scheduler& scheduler,
                                                               QObject* parent)
    : QObject(parent)
    , m_service(service)
    , m_poll(
          scheduler, pollPeriod, [&service] { return service.isTrusted(); },
          [this](bool value) { Q_EMIT isTrustedChanged(value); })
{}

AccessibilityPermissionManager::~AccessibilityPermissionManager() = default;

void AccessibilityPermissionManager::refresh()
{
    m_poll.refresh();
}

void AccessibilityPermissionManager::requestAccess()
{
    m_service.requestTrust();
    refresh();
}

void AccessibilityPermissionManager::openSystemSettings()
{
    if (m_poll.noteSettingsOpened(m_service.openSystemSettings()))
        Q_EMIT settingsMessageChanged(m_poll.settingsMessage());
}

} // namespace tolvane
