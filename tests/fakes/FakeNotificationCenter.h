// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Scheduler.h"
#include "platform/NotificationCenter.h"

#include <QList>
#include <QStringList>

#include <functional>

namespace tolvane {

class FakeNotificationCenter final : public NotificationCenter
{
public:
    NotificationCenterDelegate* delegate = nullptr;
    QList<NotificationCategory> categories;
    QList<NotificationRequest> pending;
    QList<DeliveredNotification> delivered;
    QStringList removedPending;
    QStringList removedDelivered;
    NotificationAuthorization authorization = NotificationAuthorization::authorized;
    QString addError; // non-empty: add fails with it
    int authorizationRequests = 0;

    void setDelegate(NotificationCenterDelegate* d) override { delegate = d; }
    void setCategories(const QList<NotificationCategory>& c) override { categories = c; }
    // When set, additions and the pending list are answered later, on this scheduler, as a real
    // centre does.
    Scheduler* answerLater = nullptr;
    std::function<void(int additions)> afterAdd; // called after every completed addition
    int additions = 0;

    void add(const NotificationRequest& request, Completion completion) override
    {
        later([this, request, completion] {
            if (addError.isEmpty()) {
                pending.removeIf([&](const NotificationRequest& r) { return r.identifier == request.identifier; });
                pending.append(request);
            }
            if (completion)
                completion(addError);
            ++additions;
            if (afterAdd)
                afterAdd(additions);
        });
    }
    void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) override
    {
        later([this, completion] { completion(pending); });
    }
    void removePendingRequests(const QStringList& ids) override
    {
        removedPending += ids;
        pending.removeIf([&](const NotificationRequest& r) { return ids.contains(r.identifier); });
    }
    void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) override
    {
        completion(delivered);
    }
    void removeDeliveredNotifications(const QStringList& ids) override
    {
        removedDelivered += ids;
        delivered.removeIf([&](const DeliveredNotification& d) { return ids.contains(d.identifier); });
    }
    void authorizationStatus(std::function<void(NotificationAuthorization)> completion) override
    {
        completion(authorization);
    }
    void requestAuthorization(std::function<void(bool, const QString&)> completion) override
    {
        ++authorizationRequests;
        completion(authorization == NotificationAuthorization::authorized, QString());
    }

private:
    void later(std::function<void()> answer)
    {
        if (answerLater)
            answerLater->post(std::move(answer));
        else
            answer();
    }
};

} // namespace tolvane
