// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/review/ReviewSession.h"

#include "core/records/ReviewDeckStore.h"

#include <QRandomGenerator>

namespace tolvane {

ReviewSession::ReviewSession(ReviewDeckStore& deck, QRandomGenerator* random)
    : m_deck(deck)
    , m_random(random ? random : QRandomGenerator::system())
{}

void ReviewSession::start()
{
    m_queue = m_deck.activeCards();
    m_currentIndex = 0;
    m_flipped = false;
    m_complete = false;
    m_reviewed = 0;
}

ReviewSession::Screen ReviewSession::screen() const
{
    if (m_queue.isEmpty())
        return Screen::empty;
    return m_complete ? Screen::complete : Screen::card;
}

const ReviewCard* ReviewSession::currentCard() const
{
    if (m_currentIndex < 0 || m_currentIndex >= m_queue.size())
        return nullptr;
    return &m_queue.at(m_currentIndex);
}

void ReviewSession::answer(CardStatus status)
{
    if (m_complete || m_currentIndex < 0 || m_currentIndex >= m_queue.size())
        return;
    const ReviewCard card = m_queue.at(m_currentIndex);
    m_deck.setStatus(card.id, status);
    m_flipped = false;
    ++m_reviewed;
    if (status == CardStatus::reviewAgain) {
        m_queue.move(m_currentIndex, m_queue.size() - 1);
        return;
    }
    if (m_currentIndex + 1 >= m_queue.size())
        m_complete = true;
    else
        ++m_currentIndex;
}

void ReviewSession::previous()
{
    if (!canGoPrevious())
        return;
    --m_currentIndex;
    m_flipped = false;
}

void ReviewSession::next()
{
    if (!canGoNext())
        return;
    ++m_currentIndex;
    m_flipped = false;
}

void ReviewSession::shuffleRemaining()
{
    const qsizetype remaining = m_queue.size() - m_currentIndex;
    if (remaining < 2)
        return;
    // Fisher–Yates over [currentIndex, end): each position takes one of the cards not yet placed.
    // The random words come from the source in one request. 64 random bits reduced modulo the span
    // are uniform to within span / 2^64, which no deck can make visible.
    QList<quint64> words(remaining - 1);
    m_random->fillRange(words.data(), words.size());
    for (qsizetype i = m_queue.size() - 1; i > m_currentIndex; --i) {
        const qsizetype span = i - m_currentIndex + 1;
        const qsizetype j = m_currentIndex + qsizetype(words.at(i - m_currentIndex - 1) % quint64(span));
        if (j != i)
            m_queue.swapItemsAt(i, j);
    }
    m_flipped = false;
}

void ReviewSession::removeCurrent()
{
    if (m_queue.isEmpty() || m_currentIndex < 0 || m_currentIndex >= m_queue.size())
        return;
    m_deck.removeCard(m_queue.at(m_currentIndex).id);
    m_queue.removeAt(m_currentIndex);
    m_flipped = false;
    if (!m_queue.isEmpty() && m_currentIndex >= m_queue.size())
        m_currentIndex = m_queue.size() - 1;
}

qsizetype ReviewSession::progressValue() const
{
    return qMin(m_queue.size(), m_currentIndex + 1);
}

qsizetype ReviewSession::progressTotal() const
{
    return qMax(m_queue.size(), qsizetype(1));
}

QString ReviewSession::progressText() const
{
    return QStringLiteral("%1 of %2").arg(progressValue()).arg(m_queue.size());
}

QString ReviewSession::emptyTitle()
{
    return QStringLiteral("No cards yet");
}

QString ReviewSession::emptyText()
{
    return QStringLiteral("Words you look up are saved here as flashcards. Hover over a word and press your lookup "
                          "hotkey to add your first one.");
}

QString ReviewSession::completeTitle()
{
    return QStringLiteral("Session complete");
}

QString ReviewSession::completionText(qsizetype reviewed)
{
    return QStringLiteral("You reviewed %1 card%2. Cards you still need to practice will come back next session.")
        .arg(reviewed)
        .arg(reviewed == 1 ? QString() : QStringLiteral("s"));
}

} // namespace tolvane
