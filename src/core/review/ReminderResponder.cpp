// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/review/ReminderResponder.h"

#include "core/review/NotificationScheduler.h"
#include "core/review/ReminderPlanner.h"
#include "core/setup/Preferences.h"

namespace tolvane {

ReminderResponder::ReminderResponder(ReminderDeck& deck, ReminderPlanner& planner, Preferences& preferences,
                                     Scheduler& scheduler, ShowReviewWindow showReviewWindow)
    : m_deck(deck)
    , m_planner(planner)
    , m_preferences(preferences)
    , m_scheduler(scheduler)
    , m_showReviewWindow(std::move(showReviewWindow))
{}

ReminderResponder::~ReminderResponder() = default;

std::optional<QUuid> ReminderResponder::cardIdFrom(const QVariantMap& userInfo)
{
    const QVariant value = userInfo.value(NotificationScheduler::cardIdKey);
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    const QString text = value.toString();
    const QUuid id = QUuid::fromString(text);
    if (text.size() != 36 || id.isNull())
        return std::nullopt;
    return id;
}

void ReminderResponder::markShownAndReplan(const QUuid& cardId)
{
    m_deck.markShown(cardId, m_preferences.notificationIntervalSeconds());
    m_planner.reschedule();
}

void ReminderResponder::didReceive(const NotificationResponse& response)
{
    const std::optional<QUuid> cardId = cardIdFrom(response.userInfo);
    if (!cardId)
        return;
    const QString action = response.actionIdentifier;
    const Lifetime::Watch alive = m_lifetime.watch();
    m_scheduler.post([this, alive, id = *cardId, action] {
        if (!alive)
            return;
        const bool knowIt = action == NotificationScheduler::knowItAction;
        const bool reviewAgain = action == NotificationScheduler::reviewAgainAction;
        if (knowIt)
            m_deck.setStatus(id, CardStatus::knowIt);
        else if (reviewAgain)
            m_deck.setStatus(id, CardStatus::reviewAgain);
        markShownAndReplan(id);
        // Anything but an answer button is a click on the reminder itself: the user wants the cards.
        if (!knowIt && !reviewAgain && m_showReviewWindow)
            m_showReviewWindow();
    });
}

void ReminderResponder::willPresent(const NotificationRequest& request)
{
    // The centre shows the reminder with its sound whatever happens here; only the card moves on.
    const std::optional<QUuid> cardId = cardIdFrom(request.userInfo);
    if (!cardId)
        return;
    const Lifetime::Watch alive = m_lifetime.watch();
    m_scheduler.post([this, alive, id = *cardId] {
        if (alive)
            markShownAndReplan(id);
    });
}

} // namespace tolvane
