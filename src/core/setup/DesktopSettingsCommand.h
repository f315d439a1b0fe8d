// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace tolvane {

// A program of the desktop and its arguments, to start detached.
struct DesktopCommand
{
    QString program;
    QStringList arguments;
    friend bool operator==(const DesktopCommand&, const DesktopCommand&) = default;
};

// The desktop's notification settings: the window of the running desktop first (the names of
// XDG_CURRENT_DESKTOP), else any desktop's window that is installed. isInstalled answers whether
// a program is on the PATH. The error says what to do where no such window exists.
Result<DesktopCommand> notificationSettingsCommand(const QStringList& currentDesktops,
                                                   const std::function<bool(const QString&)>& isInstalled);

} // namespace tolvane
