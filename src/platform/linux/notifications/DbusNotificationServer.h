// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/notifications/NotificationServer.h"

#include <QDBusConnection>
#include <QObject>

#include <memory>

namespace tolvane {

class NotificationsInterface;

// org.freedesktop.Notifications on a D-Bus connection (the session bus unless told otherwise).
// Calls are asynchronous with a short timeout, so a server that hangs cannot stall the main loop.
class DbusNotificationServer final : public QObject, public NotificationServer
{
    Q_OBJECT
public:
    static constexpr int callTimeoutMs = 3000;

    explicit DbusNotificationServer(QDBusConnection connection = QDBusConnection::sessionBus(),
                                    QObject* parent = nullptr);
    ~DbusNotificationServer() override;

    void capabilities(CapabilitiesReply reply) override;
    void notify(const ServerNotification& notification, NotifyReply reply) override;
    void close(quint32 id) override;
    void setHandlers(ActionHandler onAction, ClosedHandler onClosed) override;

private:
    QDBusConnection m_connection;
    NotificationsInterface* m_interface = nullptr;
    ActionHandler m_onAction;
    ClosedHandler m_onClosed;
};

} // namespace tolvane
