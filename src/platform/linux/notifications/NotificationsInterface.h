// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusAbstractInterface>

namespace tolvane {

// The notification server's signals as Qt signals, so they connect like any other.
class NotificationsInterface final : public QDBusAbstractInterface
{
    Q_OBJECT
public:
    NotificationsInterface(const QDBusConnection& connection, QObject* parent)
        : QDBusAbstractInterface(QStringLiteral("org.freedesktop.Notifications"),
                                 QStringLiteral("/org/freedesktop/Notifications"), "org.freedesktop.Notifications",
                                 connection, parent)
    {}

Q_SIGNALS:
    void ActionInvoked(uint id, const QString& actionKey);
    void NotificationClosed(uint id, uint reason);
};

} // namespace tolvane
