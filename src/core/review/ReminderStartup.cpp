// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/review/ReminderStartup.h"

#include "core/review/NotificationScheduler.h"
#include "core/support/Scheduler.h"
#include "platform/NotificationCenter.h"

namespace tolvane {

void connectReminders(NotificationCenter& center, NotificationCenterDelegate& delegate, NotificationScheduler& planner)
{
    center.setDelegate(&delegate);
    planner.registerCategories();
}

void resumeReminders(NotificationCenter& center, NotificationScheduler& planner, Scheduler& scheduler,
                     bool onboardingComplete)
{
    // Both live for the whole process, like the application that calls this.
    center.authorizationStatus(
        [&planner](NotificationAuthorization status) { planner.updateAuthorizationStatus(status); });
    if (onboardingComplete)
        scheduler.post([&planner] { planner.reschedule(); });
}

} // namespace tolvane
