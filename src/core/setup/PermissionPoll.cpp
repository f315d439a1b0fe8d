// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/PermissionPoll.h"

#include <utility>

namespace tolvane {

PermissionPoll::PermissionPoll(Scheduler& scheduler, Duration period, std::function<bool()> ask,
                               std::function<void(bool)> changed)
    : m_ask(std::move(ask))
    , m_changed(std::move(changed))
    , m_value(m_ask())
{
    m_pollTimer = scheduler.repeating(period, [this] { refresh(); });
}

PermissionPoll::~PermissionPoll()
{
    m_pollTimer.cancel();
}

void PermissionPoll::refresh()
{
    const bool value = m_ask();
    if (value == m_value)
        return;
    m_value = value;
    m_changed(m_value);
}

bool PermissionPoll::noteSettingsOpened(const Result<void>& opened)
{
    const QString message = opened ? QString() : opened.error().message;
    if (message == m_settingsMessage)
        return false;
    m_settingsMessage = message;
    return true;
}

} // namespace tolvane
