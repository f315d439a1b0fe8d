// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/review/ReminderDeck.h"
#include "core/support/Lifetime.h"
#include "core/support/Scheduler.h"
#include "platform/NotificationCenter.h"

#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace tolvane {

class Preferences;
class ReminderPlanner;

// Carries the user's answers to flashcard reminders into the deck and plans the reminders again.
class ReminderResponder final : public NotificationCenterDelegate
{
public:
    using ShowReviewWindow = std::function<void()>;

    ReminderResponder(ReminderDeck& deck, ReminderPlanner& planner, Preferences& preferences, Scheduler& scheduler,
                      ShowReviewWindow showReviewWindow);
    ~ReminderResponder() override;

    void didReceive(const NotificationResponse& response) override;
    void willPresent(const NotificationRequest& request) override;

    // The card a reminder carries, when its "cardId" entry is a card identifier.
    static std::optional<QUuid> cardIdFrom(const QVariantMap& userInfo);

private:
    void markShownAndReplan(const QUuid& cardId);

    ReminderDeck& m_deck;
    ReminderPlanner& m_planner;
    Preferences& m_preferences;
    Scheduler& m_scheduler;
    ShowReviewWindow m_showReviewWindow;
    Lifetime m_lifetime;
};

} // namespace tolvane
