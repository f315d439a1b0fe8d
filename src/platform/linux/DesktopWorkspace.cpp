// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/DesktopWorkspace.h"

#include "platform/linux/X11Window.h"

#include <QDesktopServices>
#include <QFile>

namespace tolvane {

bool DesktopWorkspace::openUrl(const QUrl& url)
{
    return QDesktopServices::openUrl(url);
}

QString DesktopWorkspace::frontmostApplicationName() const
{
    const auto pid = x11::activeWindowProcessId();
    if (!pid)
        return {};
    // The command name is what a process calls itself; good enough to tell applications apart.
    QFile comm(QStringLiteral("/proc/%1/comm").arg(*pid));
    if (!comm.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(comm.readAll()).trimmed();
}

} // namespace tolvane
