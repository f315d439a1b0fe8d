// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/NotificationCenter.h"

namespace tolvane {

class NullNotificationCenter final : public NotificationCenter
{
public:
    void setDelegate(NotificationCenterDelegate*) override {}
    void setCategories(const QList<NotificationCategory>&) override {}
    void add(const NotificationRequest&, Completion completion) override;
    void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) override { completion({}); }
    void removePendingRequests(const QStringList&) override {}
    void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) override
    {
        completion({});
    }
    void removeDeliveredNotifications(const QStringList&) override {}
    void authorizationStatus(std::function<void(NotificationAuthorization)> completion) override
    {
        completion(NotificationAuthorization::denied);
    }
    void requestAuthorization(std::function<void(bool, const QString&)> completion) override;
};

} // namespace tolvane
