// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"
#include "platform/NotificationCenter.h"

#include <QDateTime>
#include <QList>

namespace tolvane {

// A request waiting for its moment, with the buttons it will carry.
struct PendingRequest
{
    NotificationRequest request;
    QList<NotificationAction> actions;
    QDateTime dueDate;
    friend bool operator==(const PendingRequest& a, const PendingRequest& b)
    {
        return a.request.identifier == b.request.identifier && a.request.title == b.request.title &&
               a.request.body == b.request.body && a.request.sound == b.request.sound &&
               a.request.userInfo == b.request.userInfo &&
               a.request.categoryIdentifier == b.request.categoryIdentifier &&
               a.request.timeIntervalSeconds == b.request.timeIntervalSeconds && a.dueDate == b.dueDate &&
               a.actions.size() == b.actions.size() &&
               std::equal(a.actions.begin(), a.actions.end(), b.actions.begin(),
                          [](const NotificationAction& x, const NotificationAction& y) {
                              return x.identifier == y.identifier && x.title == y.title;
                          });
    }
};

// The requests of the notification centre, kept in one JSON file so that they outlive the
// process. Written whole and atomically after every change.
class PendingRequestFile
{
public:
    explicit PendingRequestFile(QString path);

    const QString& path() const { return m_path; }
    // An absent file is an empty list. A file that cannot be read is set aside, beside itself,
    // with the reason in the error, and the list starts empty.
    Result<QList<PendingRequest>> load() const;
    Result<void> save(const QList<PendingRequest>& requests) const;

private:
    QString m_path;
};

} // namespace tolvane
