// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/review/ReminderPlanner.h"

#include <QList>
#include <QUuid>

namespace tolvane {

// Counts the re-plans and records the cards whose delivered reminders were to be cleared.
class FakeReminderPlanner final : public ReminderPlanner
{
public:
    void reschedule() override { ++reschedules; }
    void removeDeliveredReminders(const QUuid& cardId) override { removedReminders.append(cardId); }

    int reschedules = 0;
    QList<QUuid> removedReminders;
};

} // namespace tolvane
