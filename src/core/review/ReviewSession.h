// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/records/ReviewCard.h"

#include <QList>
#include <QString>

class QRandomGenerator;

namespace tolvane {

class ReviewDeckStore;

// One run through the cards still to be learned. The queue holds copies of the deck's cards, taken
// when the session starts; answers and removals go to the deck by card id, so a card the deck has
// lost meanwhile changes nothing there and the session simply carries on with its copy. Nothing of
// a session is kept once it ends.
class ReviewSession final
{
public:
    // What the "Cards" tab shows.
    enum class Screen { empty, complete, card };

    // random orders the shuffled cards; the system's secure source unless a test gives its own.
    explicit ReviewSession(ReviewDeckStore& deck, QRandomGenerator* random = nullptr);

    // A fresh queue of the deck's cards that are not yet known, in deck order.
    void start();

    Screen screen() const;
    const QList<ReviewCard>& queue() const { return m_queue; }
    qsizetype currentIndex() const { return m_currentIndex; }
    // The card on screen; null when the queue is empty.
    const ReviewCard* currentCard() const;
    bool isFlipped() const { return m_flipped; }
    bool isComplete() const { return m_complete; }
    qsizetype reviewedThisSession() const { return m_reviewed; }

    void flip() { m_flipped = !m_flipped; }
    // "I know this" moves on (and ends the session on the last card); "Review again" sends the
    // card to the back of the queue, so the next one takes its place.
    void answer(CardStatus status);
    bool canGoPrevious() const { return m_currentIndex >= 1; }
    bool canGoNext() const { return m_currentIndex < m_queue.size() - 1; }
    void previous();
    void next();
    // Puts the current card and the ones after it in a random order; fewer than two is left alone.
    void shuffleRemaining();
    // Takes the current card out of the deck and of the queue; counts no answer.
    void removeCurrent();

    // The progress bar and its text: "3 of 12".
    qsizetype progressValue() const;
    qsizetype progressTotal() const;
    QString progressText() const;

    // The screens' texts.
    static QString emptyTitle();
    static QString emptyText();
    static QString completeTitle();
    static QString completionText(qsizetype reviewed);

private:
    ReviewDeckStore& m_deck;
    QRandomGenerator* m_random;
    QList<ReviewCard> m_queue;
    qsizetype m_currentIndex = 0;
    bool m_flipped = false;
    bool m_complete = false;
    qsizetype m_reviewed = 0;
};

} // namespace tolvane
