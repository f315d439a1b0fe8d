// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/ReviewCard.h"
#include "core/review/ReminderPlanner.h"
#include "core/support/Lifetime.h"
#include "core/support/Scheduler.h"
#include "platform/NotificationCenter.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>

namespace tolvane {

class Preferences;

// Keeps a rolling plan of flashcard reminders in the notification centre: one card per reminder,
// spaced by the user's reminder interval, renewed before the plan runs dry.
class NotificationScheduler final : public ReminderPlanner
{
public:
    using CardProvider = std::function<QList<ReviewCard>()>;
    // Where the one line about a slot that could not be added goes (standard output by default).
    using LinePrinter = std::function<void(const QString& line)>;

    static inline const QString categoryIdentifier = QStringLiteral("FLASHCARD_REMINDER");
    static inline const QString knowItAction = QStringLiteral("FLASHCARD_KNOW_IT");
    static inline const QString reviewAgainAction = QStringLiteral("FLASHCARD_REVIEW_AGAIN");
    static inline const QString knowItTitle = QStringLiteral("I know this");
    static inline const QString reviewAgainTitle = QStringLiteral("Review again");
    static inline const QString slotPrefix = QStringLiteral("vantor-flashcard-slot-");
    // Reminders of the earlier one-per-card plan: this prefix and the card's identifier.
    static inline const QString perCardPrefix = QStringLiteral("vantor-flashcard-");
    static inline const QString cardIdKey = QStringLiteral("cardId");
    static constexpr int slotsPerPlan = 60;
    static constexpr int renewalSlots = 30;
    static constexpr double maximumRenewalToleranceSeconds = 300;

    NotificationScheduler(NotificationCenter& center, Preferences& preferences, Scheduler& scheduler,
                          CardProvider cards);
    ~NotificationScheduler() override;

    void registerCategories();
    void reschedule() override;
    void cancelAll();
    void removeDeliveredReminders(const QUuid& cardId) override;

    void updateAuthorizationStatus(NotificationAuthorization status);
    void handleAuthorizationResult(bool granted);

    // The cards of one plan, slot by slot: eligible cards, least recently shown first, repeated
    // round-robin to fill every slot. Empty when no card is eligible.
    static QList<ReviewCard> reminderCards(const QList<ReviewCard>& deck);
    // Whether a pending request belongs to the reminder plan (and may be replaced by planning).
    static bool isReminderIdentifier(const QString& identifier);
    static QString slotIdentifier(int slot, const QUuid& cardId);
    // The 36-character upper-case text reminders carry.
    static QString cardIdText(const QUuid& cardId);
    static double renewalToleranceSeconds(double renewalSeconds);

    quint64 scheduleGeneration() const { return m_scheduleGeneration; }
    bool hasRenewalTimer() const { return m_renewalTimer.isActive(); }
    // Of the running renewal timer (zero when none runs).
    double renewalDelaySeconds() const { return m_renewalDelaySeconds; }
    double renewalTimerToleranceSeconds() const { return m_renewalToleranceSeconds; }

    void setLinePrinter(LinePrinter printer) { m_printLine = std::move(printer); }

private:
    void stopRenewalTimer();
    void armRenewal(Duration remaining);
    void removePlannedRequests(const QList<NotificationRequest>& pending);
    void addFrom(int slot, QList<NotificationRequest> requests, quint64 generation);

    NotificationCenter& m_center;
    Preferences& m_preferences;
    Scheduler& m_scheduler;
    CardProvider m_cards;
    LinePrinter m_printLine;
    quint64 m_scheduleGeneration = 0;
    TimerHandle m_renewalTimer;
    double m_renewalDelaySeconds = 0;
    double m_renewalToleranceSeconds = 0;
    // Timers and centre answers hold this weakly and do nothing once the scheduler is gone.
    Lifetime m_lifetime;
};

} // namespace tolvane
