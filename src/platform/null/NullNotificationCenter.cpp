// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/null/NullNotificationCenter.h"

namespace tolvane {

void NullNotificationCenter::add(const NotificationRequest&, Completion completion)
{
    if (completion)
        completion(QStringLiteral("Notifications are not available in this session."));
}

void NullNotificationCenter::requestAuthorization(std::function<void(bool, const QString&)> completion)
{
    completion(false, QStringLiteral("Notifications are not available in this session."));
}

} // namespace tolvane
