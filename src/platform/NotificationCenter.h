// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace tolvane {

struct NotificationAction
{
    QString identifier;
    QString title;
};

struct NotificationCategory
{
    QString identifier;
    QList<NotificationAction> actions;
};

// A one-shot request shown after a delay.
struct NotificationRequest
{
    QString identifier;
    QString title;
    QString body;
    bool sound = false;
    QVariantMap userInfo;
    QString categoryIdentifier;
    double timeIntervalSeconds = 0; // from the moment the request is added
};

struct DeliveredNotification
{
    QString identifier;
    QVariantMap userInfo;
};

enum class NotificationAuthorization { notDetermined, denied, authorized };

// The user's answer to a notification: one of its category's actions, or the default action
// (a click on the notification itself).
struct NotificationResponse
{
    static inline const QString defaultActionIdentifier =
        QStringLiteral("com.apple.UNNotificationDefaultActionIdentifier");
    QString actionIdentifier;
    QString requestIdentifier;
    QVariantMap userInfo;
};

// Receives answers, and notifications that come due while Tolvane is in front.
class NotificationCenterDelegate
{
public:
    virtual ~NotificationCenterDelegate() = default;
    virtual void didReceive(const NotificationResponse& response) = 0;
    virtual void willPresent(const NotificationRequest& request) = 0;
};

// Timed local notifications.
class NotificationCenter
{
public:
    virtual ~NotificationCenter() = default;

    virtual void setDelegate(NotificationCenterDelegate* delegate) = 0;
    virtual void setCategories(const QList<NotificationCategory>& categories) = 0;

    using Completion = std::function<void(const QString& error)>; // empty error: success
    virtual void add(const NotificationRequest& request, Completion completion) = 0;
    virtual void pendingRequests(std::function<void(QList<NotificationRequest>)> completion) = 0;
    virtual void removePendingRequests(const QStringList& identifiers) = 0;
    virtual void deliveredNotifications(std::function<void(QList<DeliveredNotification>)> completion) = 0;
    virtual void removeDeliveredNotifications(const QStringList& identifiers) = 0;

    virtual void authorizationStatus(std::function<void(NotificationAuthorization)> completion) = 0;
    virtual void requestAuthorization(std::function<void(bool granted, const QString& error)> completion) = 0;
};

} // namespace tolvane
