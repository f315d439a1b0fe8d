// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Clock.h"
#include "core/support/Lifetime.h"
#include "core/support/Scheduler.h"
#include "platform/NotificationCenter.h"
#include "platform/linux/notifications/NotificationServer.h"
#include "platform/linux/notifications/PendingRequestFile.h"

#include <QHash>

#include <memory>

namespace tolvane {

// The notification centre of the Linux desktop. Requests wait in a file of their own until they
// are due, then go to the desktop's notification server with their category's buttons; the
// server's answers come back to the delegate.
class DesktopNotificationCenter final : public NotificationCenter
{
public:
    using ActiveCheck = std::function<bool()>;

    static constexpr std::chrono::seconds retryDelay{60};
    // Timers wake at least this often, so a suspended machine or a changed clock is caught up.
    static constexpr std::chrono::minutes longestWait{10};

    DesktopNotificationCenter(std::unique_ptr<NotificationServer> server, QString pendingFilePath, Scheduler& scheduler,
                              const Clock& clock, ActiveCheck applicationIsActive);
    ~DesktopNotificationCenter() override;

    // The centre of the running desktop: the session bus's notification server, the pending
    // file in the data directory, the main loop's timers and the wall clock.
    static std::unique_ptr<DesktopNotificationCenter> forSessionBus();
    static QString defaultPendingFilePath();

    void setDelegate(NotificationCenterDelegate* delegate) override;
    void setCategories(const QList<NotificationCategory>& categories) override;
    void add(const NotificationRequest& request, Completion completion) override;
    void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) override;
    void removePendingRequests(const QStringList& identifiers) override;
    void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) override;
    void removeDeliveredNotifications(const QStringList& identifiers) override;
    void authorizationStatus(std::function<void(NotificationAuthorization)> completion) override;
    void requestAuthorization(std::function<void(bool granted, const QString& error)> completion) override;

    // Servers render markup in the body; the user's words must show as typed.
    static QString escapedBody(const QString& text);
    // The server's form of a request: the default action first, then the buttons.
    static ServerNotification serverNotification(const PendingRequest& pending, bool bodyMarkup);

private:
    struct Delivered
    {
        NotificationRequest request;
    };

    void persist();
    void writeFile();
    void arm();
    void deliverDue();
    void deliver(const PendingRequest& pending);
    void delivered(const PendingRequest& pending, quint32 id);
    void deliveryFailed(const QString& error);
    void actionInvoked(quint32 id, const QString& actionKey);
    void checkAuthorization(std::function<void(bool granted, const QString& error)> reply);

    // Only when the centre made them itself; declared first so that they go last.
    std::unique_ptr<Scheduler> m_ownedScheduler;
    std::unique_ptr<Clock> m_ownedClock;
    std::unique_ptr<NotificationServer> m_server;
    PendingRequestFile m_file;
    Scheduler& m_scheduler;
    const Clock& m_clock;
    ActiveCheck m_applicationIsActive;
    NotificationCenterDelegate* m_delegate = nullptr;
    QList<NotificationCategory> m_categories;
    QList<PendingRequest> m_pending;
    QHash<quint32, Delivered> m_delivered;
    TimerHandle m_timer;
    bool m_delivering = false;
    bool m_unsaved = false;
    QDateTime m_retryAt;
    QString m_lastDeliveryError;
    Lifetime m_lifetime;
};

} // namespace tolvane
