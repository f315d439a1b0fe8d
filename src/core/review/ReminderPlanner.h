// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUuid>

namespace tolvane {

// What the deck asks of the reminders when it changes. NotificationScheduler provides it; the
// deck holds it by interface so that neither needs the other's header.
class ReminderPlanner
{
public:
    virtual ~ReminderPlanner() = default;

    // Plan all reminders anew from the current deck.
    virtual void reschedule() = 0;
    // Take away reminders already on screen that carry this card.
    virtual void removeDeliveredReminders(const QUuid& cardId) = 0;
};

} // namespace tolvane
