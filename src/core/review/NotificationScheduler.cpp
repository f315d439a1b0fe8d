// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/review/NotificationScheduler.h"
#include "core/support/EnumNames.h"

#include "core/setup/Preferences.h"
#include "core/support/Logging.h"

#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

TOLVANE_DEFINE_LOG(lcNotificationScheduler, "NotificationScheduler")

namespace tolvane {

namespace {

constexpr EnumNames authorizationNames{std::array{
    std::pair{NotificationAuthorization::notDetermined, "notDetermined"},
    std::pair{NotificationAuthorization::authorized, "authorized"},
    std::pair{NotificationAuthorization::denied, "denied"},
}};

QString authorizationText(NotificationAuthorization status)
{
    return authorizationNames.text(status);
}

void printToStandardOutput(const QString& line)
{
    QTextStream out(stdout);
    out << line << '\n';
    out.flush();
}

} // namespace

NotificationScheduler::NotificationScheduler(NotificationCenter& center, Preferences& preferences, Scheduler& scheduler,
                                             CardProvider cards)
    : m_center(center)
    , m_preferences(preferences)
    , m_scheduler(scheduler)
    , m_cards(std::move(cards))
    , m_printLine(printToStandardOutput)
{}

NotificationScheduler::~NotificationScheduler()
{
    m_renewalTimer.cancel();
}

void NotificationScheduler::registerCategories()
{
    NotificationCategory category{
        categoryIdentifier,
        {NotificationAction{knowItAction, knowItTitle}, NotificationAction{reviewAgainAction, reviewAgainTitle}}};
    m_center.setCategories({category});
}

QList<ReviewCard> NotificationScheduler::reminderCards(const QList<ReviewCard>& deck)
{
    // Sorting positions with a plain number for a key, not the cards themselves: decks grow to
    // thousands of cards and every answer plans again.
    struct Entry
    {
        bool shown;
        qint64 lastShown;
        qsizetype position;
    };
    std::vector<Entry> eligible;
    eligible.reserve(size_t(deck.size()));
    for (qsizetype i = 0; i < deck.size(); ++i) {
        const ReviewCard& card = deck.at(i);
        if (card.status == CardStatus::knowIt)
            continue;
        eligible.push_back(
            {card.lastShownDate.has_value(), card.lastShownDate ? card.lastShownDate->toMSecsSinceEpoch() : 0, i});
    }
    if (eligible.empty())
        return {};
    // Stable, so never-shown cards and cards shown at the same moment keep their deck order.
    std::stable_sort(eligible.begin(), eligible.end(), [](const Entry& a, const Entry& b) {
        if (a.shown != b.shown)
            return !a.shown;
        return a.lastShown < b.lastShown;
    });
    QList<ReviewCard> slots;
    slots.reserve(slotsPerPlan);
    for (size_t slot = 0; slot < size_t(slotsPerPlan); ++slot)
        slots.append(deck.at(eligible.at(slot % eligible.size()).position));
    return slots;
}

bool NotificationScheduler::isReminderIdentifier(const QString& identifier)
{
    if (identifier.startsWith(slotPrefix))
        return true;
    if (!identifier.startsWith(perCardPrefix))
        return false;
    // Only a well-formed card identifier marks the earlier scheme; anything else after the
    // prefix belongs to someone else and stays.
    const QString rest = identifier.mid(perCardPrefix.size());
    return rest.size() == 36 && !QUuid::fromString(rest).isNull();
}

QString NotificationScheduler::cardIdText(const QUuid& cardId)
{
    return cardId.toString(QUuid::WithoutBraces).toUpper();
}

QString NotificationScheduler::slotIdentifier(int slot, const QUuid& cardId)
{
    return slotPrefix + QString::number(slot) + QLatin1Char('-') + cardIdText(cardId);
}

double NotificationScheduler::renewalToleranceSeconds(double renewalSeconds)
{
    return std::min(renewalSeconds * 0.05, maximumRenewalToleranceSeconds);
}

void NotificationScheduler::stopRenewalTimer()
{
    m_renewalTimer.cancel();
    m_renewalTimer = {};
    m_renewalDelaySeconds = 0;
    m_renewalToleranceSeconds = 0;
}

void NotificationScheduler::armRenewal(Duration remaining)
{
    // Daily reminders renew after 30 days, longer than an event-loop timer can wait in one go.
    constexpr Duration longestWait = std::chrono::hours(24);
    const Lifetime::Watch alive = m_lifetime.watch();
    if (remaining > longestWait) {
        m_renewalTimer = m_scheduler.singleShot(longestWait, [this, alive, remaining, longestWait] {
            if (alive)
                armRenewal(remaining - longestWait);
        });
        return;
    }
    m_renewalTimer = m_scheduler.singleShot(remaining, [this, alive] {
        m_scheduler.post([this, alive] {
            if (alive)
                reschedule();
        });
    });
}

void NotificationScheduler::reschedule()
{
    const QList<ReviewCard> cards = reminderCards(m_cards ? m_cards() : QList<ReviewCard>());
    if (cards.isEmpty()) {
        cancelAll();
        return;
    }
    const double interval = m_preferences.notificationIntervalSeconds();

    stopRenewalTimer();
    m_renewalDelaySeconds = interval * renewalSlots;
    // The scheduler's timers take no tolerance; the figure is kept for a timer that can use it.
    m_renewalToleranceSeconds = renewalToleranceSeconds(m_renewalDelaySeconds);
    armRenewal(Duration(std::llround(m_renewalDelaySeconds * 1000.0)));
    const Lifetime::Watch alive = m_lifetime.watch();

    QList<NotificationRequest> requests;
    requests.reserve(cards.size());
    for (int slot = 0; slot < cards.size(); ++slot) {
        const ReviewCard& card = cards.at(slot);
        NotificationRequest request;
        request.identifier = slotIdentifier(slot, card.id);
        request.title = card.sourceText;
        request.body = card.translation;
        request.sound = true;
        request.userInfo.insert(cardIdKey, cardIdText(card.id));
        request.categoryIdentifier = categoryIdentifier;
        request.timeIntervalSeconds = interval * (slot + 1);
        requests.append(request);
    }

    const quint64 generation = ++m_scheduleGeneration;
    m_scheduler.post([this, alive, generation, requests = std::move(requests)]() mutable {
        if (!alive)
            return;
        m_center.pendingRequests(
            [this, alive, generation, requests = std::move(requests)](QList<NotificationRequest> pending) mutable {
                if (!alive || generation != m_scheduleGeneration)
                    return; // a newer plan is under way
                removePlannedRequests(pending);
                addFrom(0, std::move(requests), generation);
            });
    });
}

void NotificationScheduler::addFrom(int slot, QList<NotificationRequest> requests, quint64 generation)
{
    if (slot >= requests.size())
        return;
    const NotificationRequest request = requests.at(slot);
    const Lifetime::Watch alive = m_lifetime.watch();
    m_center.add(request, [this, alive, slot, generation,
                           requests = std::move(requests)](const QString& error) mutable {
        if (!alive)
            return;
        if (!error.isEmpty()) {
            m_printLine(QStringLiteral("[NotificationScheduler] Failed to schedule slot %1: %2").arg(slot).arg(error));
        }
        // A newer plan has already cleared the centre; adding the rest of this one would leave
        // two plans side by side.
        if (generation != m_scheduleGeneration)
            return;
        addFrom(slot + 1, std::move(requests), generation);
    });
}

void NotificationScheduler::cancelAll()
{
    stopRenewalTimer();
    const quint64 generation = ++m_scheduleGeneration;
    const Lifetime::Watch alive = m_lifetime.watch();
    m_scheduler.post([this, alive, generation] {
        if (!alive)
            return;
        m_center.pendingRequests([this, alive, generation](QList<NotificationRequest> pending) {
            if (!alive || generation != m_scheduleGeneration)
                return;
            removePlannedRequests(pending);
        });
    });
}

void NotificationScheduler::removePlannedRequests(const QList<NotificationRequest>& pending)
{
    QStringList identifiers;
    for (const NotificationRequest& request : pending) {
        if (isReminderIdentifier(request.identifier))
            identifiers.append(request.identifier);
    }
    if (!identifiers.isEmpty())
        m_center.removePendingRequests(identifiers);
}

void NotificationScheduler::removeDeliveredReminders(const QUuid& cardId)
{
    const Lifetime::Watch alive = m_lifetime.watch();
    m_scheduler.post([this, alive, cardId] {
        if (!alive)
            return;
        m_center.deliveredNotifications([this, alive, cardId](QList<DeliveredNotification> delivered) {
            if (!alive)
                return;
            QStringList identifiers;
            for (const DeliveredNotification& notification : delivered) {
                if (QUuid::fromString(notification.userInfo.value(cardIdKey).toString()) == cardId)
                    identifiers.append(notification.identifier);
            }
            if (!identifiers.isEmpty())
                m_center.removeDeliveredNotifications(identifiers);
        });
    });
}

void NotificationScheduler::updateAuthorizationStatus(NotificationAuthorization status)
{
    const bool granted = status == NotificationAuthorization::authorized;
    qCInfo(lcNotificationScheduler).noquote()
        << QStringLiteral("authorization status: %1 (granted=%2)").arg(authorizationText(status)).arg(granted ? 1 : 0);
    handleAuthorizationResult(granted);
}

void NotificationScheduler::handleAuthorizationResult(bool granted)
{
    const Lifetime::Watch alive = m_lifetime.watch();
    m_scheduler.post([this, alive, granted] {
        if (alive)
            m_preferences.setBool(PreferenceKey::notificationPermissionGranted, granted);
    });
}

} // namespace tolvane
