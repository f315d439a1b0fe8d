// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/notifications/DbusNotificationServer.h"

#include "platform/linux/notifications/NotificationsInterface.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tolvane {

namespace {

QString notConnected()
{
    return QStringLiteral("no session bus");
}

} // namespace

DbusNotificationServer::DbusNotificationServer(QDBusConnection connection, QObject* parent)
    : QObject(parent)
    , m_connection(std::move(connection))
{
    if (!m_connection.isConnected())
        return;
    m_interface = new NotificationsInterface(m_connection, this);
    m_interface->setTimeout(callTimeoutMs);
    connect(m_interface, &NotificationsInterface::ActionInvoked, this, [this](uint id, const QString& key) {
        if (m_onAction)
            m_onAction(id, key);
    });
    connect(m_interface, &NotificationsInterface::NotificationClosed, this, [this](uint id, uint) {
        if (m_onClosed)
            m_onClosed(id);
    });
}

DbusNotificationServer::~DbusNotificationServer() = default;

void DbusNotificationServer::setHandlers(ActionHandler onAction, ClosedHandler onClosed)
{
    m_onAction = std::move(onAction);
    m_onClosed = std::move(onClosed);
}

void DbusNotificationServer::capabilities(CapabilitiesReply reply)
{
    if (!m_interface) {
        reply(std::nullopt, notConnected());
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(m_interface->asyncCall(QStringLiteral("GetCapabilities")), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [reply](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        const QDBusPendingReply<QStringList> answer = *call;
        if (answer.isError())
            reply(std::nullopt, answer.error().message());
        else
            reply(answer.value(), QString());
    });
}

void DbusNotificationServer::notify(const ServerNotification& notification, NotifyReply reply)
{
    if (!m_interface) {
        reply(std::nullopt, notConnected());
        return;
    }
    QVariantMap hints;
    // The notification protocol defines urgency as a byte; some servers reject any other type.
    hints.insert(QStringLiteral("urgency"), QVariant::fromValue(uchar(1)));
    hints.insert(QStringLiteral("desktop-entry"), QStringLiteral("tolvane"));
    if (notification.sound)
        hints.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    else
        hints.insert(QStringLiteral("suppress-sound"), true);
    const QDBusPendingCall pending =
        m_interface->asyncCall(QStringLiteral("Notify"), QStringLiteral("Tolvane"), uint(0), QStringLiteral("tolvane"),
                               notification.summary, notification.body, notification.actions, hints, int(-1));
    auto* watcher = new QDBusPendingCallWatcher(pending, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [reply](QDBusPendingCallWatcher* call) {
        call->deleteLater();
        const QDBusPendingReply<uint> answer = *call;
        if (answer.isError())
            reply(std::nullopt, answer.error().message());
        else
            reply(answer.value(), QString());
    });
}

void DbusNotificationServer::close(quint32 id)
{
    if (m_interface)
        m_interface->asyncCall(QStringLiteral("CloseNotification"), uint(id));
}

} // namespace tolvane
