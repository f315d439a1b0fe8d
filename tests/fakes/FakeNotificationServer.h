// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/notifications/NotificationServer.h"

#include <QList>

namespace tolvane {

// A notification server that answers at once: it shows everything while it has capabilities,
// and fails every call with failure when capabilityList is nothing.
class FakeNotificationServer final : public NotificationServer
{
public:
    // Nothing: no server answers, with this reason.
    std::optional<QStringList> capabilityList =
        QStringList{QStringLiteral("actions"), QStringLiteral("body"), QStringLiteral("body-markup")};
    QString failure = QStringLiteral("The name org.freedesktop.Notifications was not provided by any .service files");
    QList<ServerNotification> shown;
    QList<quint32> closed;
    ActionHandler onAction;
    ClosedHandler onClosed;
    quint32 nextId = 40;

    void capabilities(CapabilitiesReply reply) override { reply(capabilityList, capabilityList ? QString() : failure); }
    void notify(const ServerNotification& n, NotifyReply reply) override
    {
        if (!capabilityList) {
            reply(std::nullopt, failure);
            return;
        }
        shown.append(n);
        reply(++nextId, QString());
    }
    void close(quint32 id) override { closed.append(id); }
    void setHandlers(ActionHandler a, ClosedHandler c) override
    {
        onAction = std::move(a);
        onClosed = std::move(c);
    }
};

} // namespace tolvane
