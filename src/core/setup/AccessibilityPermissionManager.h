// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/setup/PermissionPoll.h"
#include "core/support/Scheduler.h"
#include "platform/AccessibilityService.h"

#include <QObject>
#include <QString>

namespace tolvane {

// Keeps whether Tolvane may read other applications' text, polling while it lives, so a change
// made in the desktop's settings shows within a poll period. Main thread only.
class AccessibilityPermissionManager final : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isTrusted READ isTrusted NOTIFY isTrustedChanged)
    Q_PROPERTY(QString settingsMessage READ settingsMessage NOTIFY settingsMessageChanged)
public:
    static constexpr Duration pollPeriod{1500};

    AccessibilityPermissionManager(AccessibilityService& service, Scheduler& scheduler, QObject* parent = nullptr);
    ~AccessibilityPermissionManager() override;

    bool isTrusted() const { return m_poll.value(); }
    // Set when the desktop has no settings window to open: what the user can do instead.
    QString settingsMessage() const { return m_poll.settingsMessage(); }

    void refresh();
    void requestAccess();
    void openSystemSettings();

Q_SIGNALS:
    void isTrustedChanged(bool isTrusted);
    void settingsMessageChanged(const QString& message);

private:
    AccessibilityService& m_service;
    PermissionPoll m_poll;
};

} // namespace tolvane
