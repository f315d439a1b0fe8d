// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/JsonRecordFile.h"
#include "core/records/ReviewCard.h"
#include "core/review/ReminderDeck.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <optional>

namespace tolvane {

class Clock;
class Preferences;
class ReminderPlanner;
class Scheduler;
class UsageEventStore;

// The flashcard deck: every looked-up word (and saved passage) as one card, mirrored to
// review_deck.json. Changes that alter which cards are due for reminders ask the planner to plan
// again.
class ReviewDeckStore final : public QObject, public ReminderDeck
{
    Q_OBJECT
public:
    // planner may be null; the deck then keeps its cards without anyone to remind.
    ReviewDeckStore(const Clock& clock, Scheduler& scheduler, const Preferences& preferences,
                    UsageEventStore& usageEvents, ReminderPlanner* planner = nullptr,
                    const QString& directory = recordsDirectory(), QObject* parent = nullptr);

    void setReminderPlanner(ReminderPlanner* planner) { m_planner = planner; }

    const QList<ReviewCard>& cards() const { return m_cards; }
    const QString& filePath() const { return m_file.path(); }

    // A look-up: refreshes the matching card or appends a new one. wordOnly refuses texts that
    // are not word-like; targetLanguage absent means the one in the preferences, if any.
    void addCard(const QString& sourceText, const QString& translation, bool wordOnly,
                 const std::optional<QString>& targetLanguage, DetectedDirection direction);
    // An answer from the review window or a reminder. Unknown cards are ignored.
    void setStatus(const QUuid& cardId, CardStatus status) override;
    // The card was just shown in a reminder; it is due again intervalSeconds from now.
    void markShown(const QUuid& cardId, double intervalSeconds) override;
    void removeCard(const QUuid& cardId);
    // Cards still to be learned, in deck order.
    QList<ReviewCard> activeCards() const;

    // At most 40 user-perceived characters, not empty, no line break.
    static bool isWordLike(const QString& text);

    // readingTime stands in for the dates older files lack.
    static Result<QList<ReviewCard>> decode(const QByteArray& json, const QDateTime& readingTime);
    static QByteArray encode(const QList<ReviewCard>& cards);

Q_SIGNALS:
    void cardsChanged();

private:
    qsizetype indexOf(const QUuid& cardId) const;
    void persist();
    void reschedule();

    const Clock& m_clock;
    Scheduler& m_scheduler;
    const Preferences& m_preferences;
    UsageEventStore& m_usageEvents;
    ReminderPlanner* m_planner;
    JsonRecordFile m_file;
    QList<ReviewCard> m_cards;
};

} // namespace tolvane
