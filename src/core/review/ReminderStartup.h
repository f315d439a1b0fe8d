// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace tolvane {

class NotificationCenter;
class NotificationCenterDelegate;
class NotificationScheduler;
class Scheduler;

// The reminders' part of the application's start-up, in two pieces because other steps come
// between them.
//
// First: the delegate receives the answers, and the category with its two buttons is installed.
void connectReminders(NotificationCenter& center, NotificationCenterDelegate& delegate, NotificationScheduler& planner);

// Later: the permission is read and stored, and, once the first-run guide is finished, the plan
// is made on the main loop. Before that, the guide plans when it ends.
void resumeReminders(NotificationCenter& center, NotificationScheduler& planner, Scheduler& scheduler,
                     bool onboardingComplete);

} // namespace tolvane
