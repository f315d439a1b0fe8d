// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/ReviewDeckStore.h"

#include "core/records/UsageEventStore.h"
#include "core/review/ReminderPlanner.h"
#include "core/setup/Preferences.h"
#include "core/support/Clock.h"
#include "core/support/Logging.h"
#include "core/support/Scheduler.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

TOLVANE_DEFINE_LOG(lcReviewDeckStore, "ReviewDeckStore")

namespace tolvane {

namespace {

constexpr qsizetype longestWord = 40;

bool isLineBreak(char16_t c)
{
    return c == 0x000A || c == 0x000B || c == 0x000C || c == 0x000D || c == 0x0085 || c == 0x2028 || c == 0x2029;
}

std::optional<DetectedDirection> directionFromRaw(const QString& raw)
{
    return detectedDirectionFromRawValue(raw);
}

std::optional<CardStatus> statusFromRaw(const QString& raw)
{
    return cardStatusFromRawValue(raw);
}

ReviewCard decodeCard(RecordJson::Reader& reader, const QDateTime& readingTime)
{
    ReviewCard card;
    card.id = reader.uuid(QLatin1String("id"));
    card.sourceText = reader.string(QLatin1String("sourceText"));
    card.translation = reader.string(QLatin1String("translation"));
    card.targetLanguage = reader.optionalString(QLatin1String("targetLanguage"));
    // Files from before directions were kept hold only English look-ups.
    card.direction = reader.enumeration<DetectedDirection>(QLatin1String("direction"), directionFromRaw, false)
                         .value_or(DetectedDirection::englishToTarget);
    card.context = reader.optionalString(QLatin1String("context"));
    card.status =
        reader.enumeration<CardStatus>(QLatin1String("status"), statusFromRaw, true).value_or(CardStatus::new_);
    card.nextNotificationDate = reader.optionalDate(QLatin1String("nextNotificationDate")).value_or(readingTime);
    card.lastShownDate = reader.optionalDate(QLatin1String("lastShownDate"));
    card.dateAdded = reader.optionalDate(QLatin1String("dateAdded")).value_or(readingTime);
    return card;
}

void encodeCard(RecordJson::Writer& writer, const ReviewCard& card)
{
    writer.member("id", card.id);
    writer.member("sourceText", card.sourceText);
    writer.member("translation", card.translation);
    writer.optionalMember("targetLanguage", card.targetLanguage);
    if (card.direction)
        writer.member("direction", detectedDirectionNames.text(*card.direction));
    writer.optionalMember("context", card.context);
    writer.member("status", cardStatusNames.text(card.status));
    writer.member("nextNotificationDate", card.nextNotificationDate);
    writer.optionalMember("lastShownDate", card.lastShownDate);
    writer.member("dateAdded", card.dateAdded);
}

} // namespace

ReviewDeckStore::ReviewDeckStore(const Clock& clock, Scheduler& scheduler, const Preferences& preferences,
                                 UsageEventStore& usageEvents, ReminderPlanner* planner, const QString& directory,
                                 QObject* parent)
    : QObject(parent)
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_preferences(preferences)
    , m_usageEvents(usageEvents)
    , m_planner(planner)
    , m_file(directory, QStringLiteral("review_deck.json"), &lcReviewDeckStore)
{
    const QDateTime readingTime = m_clock.now();
    m_cards = m_file.load<ReviewCard>([&](RecordJson::Reader& reader) { return decodeCard(reader, readingTime); })
                  .value_or(QList<ReviewCard>{});
}

Result<QList<ReviewCard>> ReviewDeckStore::decode(const QByteArray& json, const QDateTime& readingTime)
{
    return JsonRecordFile::decodeRecords<ReviewCard>(
        json, [&](RecordJson::Reader& reader) { return decodeCard(reader, readingTime); });
}

QByteArray ReviewDeckStore::encode(const QList<ReviewCard>& cards)
{
    return JsonRecordFile::encodeRecords(cards, encodeCard);
}

bool ReviewDeckStore::isWordLike(const QString& text)
{
    if (text.isEmpty())
        return false;
    // A line-break character always begins its own user-perceived character, so looking at
    // every code unit is the same as looking at the first of each.
    if (std::any_of(text.cbegin(), text.cend(), [](QChar c) { return isLineBreak(c.unicode()); }))
        return false;
    if (text.size() <= longestWord)
        return true;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (graphemes.toNextBoundary() != -1) {
        if (++count > longestWord)
            return false;
    }
    return true;
}

void ReviewDeckStore::addCard(const QString& sourceText, const QString& translation, bool wordOnly,
                              const std::optional<QString>& targetLanguage, DetectedDirection direction)
{
    if (wordOnly && !isWordLike(sourceText))
        return;
    // No "ru" fallback: a card made before any language was chosen carries none.
    const std::optional<QString> language = targetLanguage ? targetLanguage : m_preferences.storedTargetLanguage();
    const QDateTime now = m_clock.now();

    const auto match = std::find_if(m_cards.begin(), m_cards.end(), [&](const ReviewCard& card) {
        return card.sourceText.compare(sourceText, Qt::CaseInsensitive) == 0 && card.targetLanguage == language &&
               card.direction.value_or(DetectedDirection::englishToTarget) == direction;
    });
    if (match != m_cards.end()) {
        match->translation = translation;
        match->targetLanguage = language;
        match->direction = direction;
        match->nextNotificationDate = now;
        if (match->status == CardStatus::knowIt)
            match->status = CardStatus::reviewAgain;
        persist();
        Q_EMIT cardsChanged();
        return;
    }

    ReviewCard card;
    card.id = QUuid::createUuid();
    card.sourceText = sourceText;
    card.translation = translation;
    card.targetLanguage = language;
    card.direction = direction;
    card.status = CardStatus::new_;
    card.nextNotificationDate = now;
    card.dateAdded = now;
    m_cards.append(std::move(card));
    persist();
    Q_EMIT cardsChanged();
    reschedule();
}

void ReviewDeckStore::setStatus(const QUuid& cardId, CardStatus status)
{
    const qsizetype index = indexOf(cardId);
    if (index < 0)
        return;
    m_cards[index].status = status;
    persist();
    Q_EMIT cardsChanged();
    m_usageEvents.record(UsageEventType::review);
    reschedule();
}

void ReviewDeckStore::markShown(const QUuid& cardId, double intervalSeconds)
{
    const qsizetype index = indexOf(cardId);
    if (index < 0)
        return;
    // A broken interval must not produce a date no file can hold.
    if (!std::isfinite(intervalSeconds) || std::fabs(intervalSeconds) > 1.0e10)
        intervalSeconds = 0;
    const QDateTime now = m_clock.now();
    ReviewCard& card = m_cards[index];
    card.lastShownDate = now;
    card.nextNotificationDate = now.addMSecs(std::llround(intervalSeconds * 1000.0));
    persist();
    Q_EMIT cardsChanged();
}

void ReviewDeckStore::removeCard(const QUuid& cardId)
{
    m_cards.removeIf([&](const ReviewCard& card) { return card.id == cardId; });
    persist();
    Q_EMIT cardsChanged();
    m_scheduler.post([self = QPointer<ReviewDeckStore>(this), cardId] {
        if (self && self->m_planner)
            self->m_planner->removeDeliveredReminders(cardId);
    });
    reschedule();
}

QList<ReviewCard> ReviewDeckStore::activeCards() const
{
    QList<ReviewCard> active;
    std::copy_if(m_cards.cbegin(), m_cards.cend(), std::back_inserter(active),
                 [](const ReviewCard& card) { return card.status != CardStatus::knowIt; });
    return active;
}

qsizetype ReviewDeckStore::indexOf(const QUuid& cardId) const
{
    const auto it =
        std::find_if(m_cards.cbegin(), m_cards.cend(), [&](const ReviewCard& card) { return card.id == cardId; });
    return it == m_cards.cend() ? -1 : std::distance(m_cards.cbegin(), it);
}

void ReviewDeckStore::persist()
{
    m_file.persist(m_cards, encodeCard);
}

void ReviewDeckStore::reschedule()
{
    if (m_planner)
        m_planner->reschedule();
}

} // namespace tolvane
