// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/DesktopSettingsCommand.h"

namespace tolvane {

namespace {

struct NotificationSettingsWindow
{
    QLatin1String desktop; // as XDG_CURRENT_DESKTOP names it, lower case
    DesktopCommand command;
};

const QList<NotificationSettingsWindow>& notificationSettingsWindows()
{
    static const QList<NotificationSettingsWindow> windows{
        {QLatin1String("gnome"), {QStringLiteral("gnome-control-center"), {QStringLiteral("notifications")}}},
        {QLatin1String("kde"), {QStringLiteral("systemsettings"), {QStringLiteral("kcm_notifications")}}},
        {QLatin1String("kde"), {QStringLiteral("systemsettings5"), {QStringLiteral("kcm_notifications")}}},
        {QLatin1String("xfce"), {QStringLiteral("xfce4-notifyd-config"), {}}},
        {QLatin1String("x-cinnamon"), {QStringLiteral("cinnamon-settings"), {QStringLiteral("notifications")}}},
        {QLatin1String("mate"), {QStringLiteral("mate-notification-properties"), {}}},
        {QLatin1String("lxqt"), {QStringLiteral("lxqt-config-notificationd"), {}}},
    };
    return windows;
}

} // namespace

Result<DesktopCommand> notificationSettingsCommand(const QStringList& currentDesktops,
                                                   const std::function<bool(const QString&)>& isInstalled)
{
    for (const QString& desktop : currentDesktops) {
        for (const NotificationSettingsWindow& window : notificationSettingsWindows()) {
            // Ubuntu and Unity sessions name GNOME among their desktops.
            if (desktop.compare(window.desktop, Qt::CaseInsensitive) == 0 && isInstalled(window.command.program))
                return window.command;
        }
    }
    // A window manager on its own (openbox, i3) names no desktop; another desktop's window
    // still configures the notification server the session uses.
    for (const NotificationSettingsWindow& window : notificationSettingsWindows()) {
        if (isInstalled(window.command.program))
            return window.command;
    }
    return Error{
        QStringLiteral("This desktop has no notification settings window. Reminders appear through the session's "
                       "notification server; if none appear, start one (for example notification-daemon or dunst) "
                       "and check that it is not set to “do not disturb”.")};
}

} // namespace tolvane
