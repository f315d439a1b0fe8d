// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"
#include "core/support/Scheduler.h"

#include <QString>

#include <functional>

namespace tolvane {

// The part every permission manager shares: asks one yes/no question every poll period and
// reports only changes, and remembers why the settings window could not be opened. The owner
// names the question and turns the reports into its own signals. Main thread only.
class PermissionPoll final
{
public:
    PermissionPoll(Scheduler& scheduler, Duration period, std::function<bool()> ask, std::function<void(bool)> changed);
    ~PermissionPoll();
    PermissionPoll(const PermissionPoll&) = delete;
    PermissionPoll& operator=(const PermissionPoll&) = delete;

    bool value() const { return m_value; }
    QString settingsMessage() const { return m_settingsMessage; }

    void refresh();
    // Returns whether the remembered message changed.
    bool noteSettingsOpened(const Result<void>& opened);

private:
    std::function<bool()> m_ask;
    std::function<void(bool)> m_changed;
    bool m_value = false;
    QString m_settingsMessage;
    TimerHandle m_pollTimer;
};

} // namespace tolvane
