// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace tolvane {

// One notification as the desktop's notification server takes it.
struct ServerNotification
{
    QString summary;
    QString body;
    // Pairs of action key and label, as the server expects them.
    QStringList actions;
    bool sound = false;
};

// The desktop's notification server. Every call answers later, on the main loop, and never waits
// for long: a server that hangs gives an error, not a frozen Tolvane.
class NotificationServer
{
public:
    virtual ~NotificationServer() = default;

    // The server's capabilities, or nothing and the reason when no server answers.
    using CapabilitiesReply = std::function<void(std::optional<QStringList> capabilities, const QString& error)>;
    virtual void capabilities(CapabilitiesReply reply) = 0;

    // The server's number for the shown notification, or nothing and the reason.
    using NotifyReply = std::function<void(std::optional<quint32> id, const QString& error)>;
    virtual void notify(const ServerNotification& notification, NotifyReply reply) = 0;
    virtual void close(quint32 id) = 0;

    // What the server reports later about the notifications it shows.
    using ActionHandler = std::function<void(quint32 id, const QString& actionKey)>;
    using ClosedHandler = std::function<void(quint32 id)>;
    virtual void setHandlers(ActionHandler onAction, ClosedHandler onClosed) = 0;
};

} // namespace tolvane
