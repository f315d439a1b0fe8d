// SPDX-License-Identifier: GPL-3.0-or-later
// A review session: the queue and its rules, the deck it answers into, the progress and the
// completion texts.
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/review/ReviewSession.h"
#include "core/setup/Preferences.h"
#include "fakes/FakeReminderPlanner.h"
#include "fakes/FakeScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

struct Fixture
{
    QTemporaryDir dir;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    MemoryPreferenceStore preferenceStore;
    Preferences preferences{preferenceStore};
    FakeReminderPlanner planner;
    UsageEventStore events{clock, dir.path()};
    ReviewDeckStore deck{clock, scheduler, preferences, events, &planner, dir.path()};
    QRandomGenerator random{42};
    ReviewSession session{deck, &random};

    explicit Fixture(const QStringList& words)
    {
        for (const QString& word : words)
            deck.addCard(word, word.toUpper(), true, QStringLiteral("de"), DetectedDirection::englishToTarget);
        session.start();
    }
    QStringList queueWords() const
    {
        QStringList words;
        for (const ReviewCard& card : session.queue())
            words.append(card.sourceText);
        return words;
    }
    QString current() const { return session.currentCard() ? session.currentCard()->sourceText : QString(); }
    CardStatus statusInDeck(const QString& word) const
    {
        for (const ReviewCard& card : deck.cards()) {
            if (card.sourceText == word)
                return card.status;
        }
        return CardStatus::new_;
    }
};

} // namespace

class TestReviewSession : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void aSessionTakesTheUnknownCardsInDeckOrderAndAllKnownShowsEmpty()
    {
        Fixture f({"a", "b", "c"});
        f.deck.setStatus(f.deck.cards().at(1).id, CardStatus::knowIt);
        f.deck.setStatus(f.deck.cards().at(2).id, CardStatus::reviewAgain);
        f.session.start();
        QCOMPARE(f.queueWords(), (QStringList{"a", "c"}));
        QCOMPARE(f.session.screen(), ReviewSession::Screen::card);

        f.deck.setStatus(f.deck.cards().at(0).id, CardStatus::knowIt);
        f.deck.setStatus(f.deck.cards().at(2).id, CardStatus::knowIt);
        f.session.start();
        QCOMPARE(f.session.screen(), ReviewSession::Screen::empty);
        QCOMPARE(f.session.currentCard(), nullptr);
        QCOMPARE(f.session.progressText(), QStringLiteral("0 of 0"));
        QCOMPARE(f.session.progressTotal(), 1);
    }

    void reviewAgainSendsACardToTheBackAndTheSessionEndsOnlyAfterItIsKnown()
    {
        Fixture f({"a", "b", "c"});
        f.session.flip();
        f.session.answer(CardStatus::reviewAgain);
        QCOMPARE(f.queueWords(), (QStringList{"b", "c", "a"}));
        QCOMPARE(f.current(), QStringLiteral("b"));
        QVERIFY(!f.session.isFlipped());
        QCOMPARE(f.statusInDeck("a"), CardStatus::reviewAgain);
        QCOMPARE(f.session.progressText(), QStringLiteral("1 of 3"));

        f.session.answer(CardStatus::knowIt);
        f.session.answer(CardStatus::knowIt);
        QCOMPARE(f.current(), QStringLiteral("a"));
        QCOMPARE(f.session.progressText(), QStringLiteral("3 of 3"));
        f.session.answer(CardStatus::knowIt);
        QCOMPARE(f.session.screen(), ReviewSession::Screen::complete);
        QCOMPARE(f.session.currentIndex(), 2);
        QCOMPARE(f.session.reviewedThisSession(), 4);
        QCOMPARE(ReviewSession::completionText(f.session.reviewedThisSession()),
                 QStringLiteral("You reviewed 4 cards. Cards you still need to practice will come back next session."));
        QCOMPARE(f.statusInDeck("a"), CardStatus::knowIt);
        // A completed session takes no more answers.
        f.session.answer(CardStatus::reviewAgain);
        QCOMPARE(f.session.reviewedThisSession(), 4);
        QCOMPARE(f.statusInDeck("c"), CardStatus::knowIt);
    }

    void theOnlyCardComesBackAfterReviewAgainAndCompletesWithOneCardSingular()
    {
        Fixture f({"a"});
        f.session.flip();
        f.session.answer(CardStatus::reviewAgain);
        QCOMPARE(f.current(), QStringLiteral("a"));
        QVERIFY(!f.session.isFlipped());
        QCOMPARE(f.session.screen(), ReviewSession::Screen::card);
        f.session.answer(CardStatus::knowIt);
        QCOMPARE(f.session.screen(), ReviewSession::Screen::complete);
        QCOMPARE(ReviewSession::completionText(1),
                 QStringLiteral("You reviewed 1 card. Cards you still need to practice will come back next session."));
        QCOMPARE(ReviewSession::completionText(0).left(20), QStringLiteral("You reviewed 0 cards"));
    }

    void arrowsStopAtTheEndsAndCountNoAnswer()
    {
        Fixture f({"a", "b"});
        QVERIFY(!f.session.canGoPrevious());
        f.session.flip();
        f.session.previous();
        QCOMPARE(f.session.currentIndex(), 0);
        QVERIFY(f.session.isFlipped());
        f.session.next();
        QCOMPARE(f.current(), QStringLiteral("b"));
        QVERIFY(!f.session.isFlipped());
        QVERIFY(!f.session.canGoNext());
        f.session.next();
        QCOMPARE(f.session.currentIndex(), 1);
        f.session.previous();
        QCOMPARE(f.current(), QStringLiteral("a"));
        QCOMPARE(f.session.reviewedThisSession(), 0);
        QCOMPARE(f.events.events().size(), 0);
    }

    void shuffleReordersOnlyFromTheCurrentCardAndLeavesALastCardAlone()
    {
        Fixture f({"a", "b", "c", "d", "e", "f", "g", "h"});
        f.session.next();
        f.session.next();
        QSet<QStringList> orders;
        for (int i = 0; i < 20; ++i) {
            f.session.flip();
            f.session.shuffleRemaining();
            QVERIFY(!f.session.isFlipped());
            const QStringList words = f.queueWords();
            QCOMPARE(words.mid(0, 2), (QStringList{"a", "b"}));
            QStringList rest = words.mid(2);
            orders.insert(rest);
            rest.sort();
            QCOMPARE(rest, (QStringList{"c", "d", "e", "f", "g", "h"}));
        }
        QVERIFY(orders.size() > 10);

        while (f.session.canGoNext())
            f.session.next();
        const QStringList before = f.queueWords();
        f.session.flip();
        f.session.shuffleRemaining();
        QCOMPARE(f.queueWords(), before);
        QVERIFY(f.session.isFlipped());
    }

    void removalTakesTheCardFromDeckAndQueueAndStepsBackAtTheEnd()
    {
        Fixture f({"a", "b", "c"});
        f.session.next();
        f.session.next();
        f.session.removeCurrent();
        QCOMPARE(f.queueWords(), (QStringList{"a", "b"}));
        QCOMPARE(f.current(), QStringLiteral("b"));
        QCOMPARE(f.deck.cards().size(), 2);
        f.session.previous();
        f.session.removeCurrent();
        QCOMPARE(f.current(), QStringLiteral("b"));
        f.session.removeCurrent();
        QCOMPARE(f.session.screen(), ReviewSession::Screen::empty);
        QCOMPARE(f.deck.cards().size(), 0);
        QCOMPARE(f.session.reviewedThisSession(), 0);
        f.session.removeCurrent(); // nothing left: nothing happens
    }

    void aCardRemovedElsewhereIsStillAnsweredInTheSessionAndTheDeckIsLeftAlone()
    {
        Fixture f({"a", "b"});
        f.deck.removeCard(f.deck.cards().at(0).id);
        f.deck.addCard(QStringLiteral("c"), QStringLiteral("C"), true, QStringLiteral("de"),
                       DetectedDirection::englishToTarget);
        QCOMPARE(f.queueWords(), (QStringList{"a", "b"}));
        f.session.answer(CardStatus::knowIt);
        QCOMPARE(f.current(), QStringLiteral("b"));
        QCOMPARE(f.session.reviewedThisSession(), 1);
        QCOMPARE(f.deck.cards().size(), 2);
        QCOMPARE(f.events.events().size(), 0);
        f.session.previous();
        f.session.removeCurrent();
        QCOMPARE(f.deck.cards().size(), 2);
        f.session.start();
        QCOMPARE(f.queueWords(), (QStringList{"b", "c"}));
    }
};

QTEST_GUILESS_MAIN(TestReviewSession)
#include "tst_ReviewSession.moc"
