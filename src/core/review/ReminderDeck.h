// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/ReviewCard.h"

#include <QUuid>

namespace tolvane {

// What a reminder answer changes in the deck.
class ReminderDeck
{
public:
    virtual ~ReminderDeck() = default;
    virtual void setStatus(const QUuid& cardId, CardStatus status) = 0;
    // The card was just shown in a reminder; it is next due intervalSeconds from now.
    virtual void markShown(const QUuid& cardId, double intervalSeconds) = 0;
};

} // namespace tolvane
