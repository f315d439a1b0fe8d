// SPDX-License-Identifier: GPL-3.0-or-later
// The review window of a running Tolvane, used as a learner would: opened with `tolvane open
// review`, read and answered through the accessibility bus and the real keyboard and mouse; the
// answers must be in the deck file afterwards.
#include "core/records/ReviewDeckStore.h"

#include "x11/AccessibleTree.h"
#include "x11/TolvaneProcess.h"

using namespace tolvane;
using namespace tolvane::testing;

namespace {

QString cardName(const QList<Element>& contents)
{
    const auto card = drawn(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Card "));
    return card ? card->name : QString();
}

QList<Element> reviewWindow()
{
    return windowContents(QStringLiteral("Review Deck"));
}

std::optional<Element> button(const QList<Element>& contents, const QString& name)
{
    return drawn(contents, ATSPI_ROLE_PUSH_BUTTON, name);
}

QString cardLine(const char* id, const char* word, const char* translation)
{
    return QStringLiteral("{\"id\":\"%1\",\"sourceText\":\"%2\",\"translation\":\"%3\",\"targetLanguage\":\"ru\","
                          "\"direction\":\"englishToTarget\",\"status\":\"new\",\"nextNotificationDate\":785000000,"
                          "\"dateAdded\":785000000}")
        .arg(QLatin1String(id), QString::fromUtf8(word), QString::fromUtf8(translation));
}

} // namespace

class TestReviewWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        if (const char* missing = missingDesktop())
            QSKIP(missing);
        atspi_init();
    }

    void aLearnerFlipsAnswersAndMovesThroughTheCardsAndTheDeckFileKeepsTheAnswers()
    {
        TolvaneProcess tolvane(QStringLiteral("review"));
        QVERIFY(tolvane.write(QStringLiteral("data/Tolvane/review_deck.json"),
                              ('[' +
                               QStringList{cardLine("0A000000-0000-4000-8000-000000000001", "water", "вода"),
                                           cardLine("0A000000-0000-4000-8000-000000000002", "house", "дом"),
                                           cardLine("0A000000-0000-4000-8000-000000000003", "cat", "кошка")}
                                   .join(u',') +
                               ']')
                                  .toUtf8()));
        QVERIFY(tolvane.skipGuide());
        QVERIFY(tolvane.start());
        const QStringList openReview{QStringLiteral("open"), QStringLiteral("review")};
        QVERIFY(tolvane.commandOnceListening(openReview));

        QList<Element> contents;
        QTRY_COMPARE_WITH_TIMEOUT((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: water"),
                                  15000);
        QCOMPARE(drawn(contents, ATSPI_ROLE_PUSH_BUTTON, QStringLiteral("Card front"))->description,
                 QStringLiteral("Click to flip"));
        for (const char* name : {"Previous card (←)", "Next card (→)", "Remove from deck", "Shuffle remaining cards",
                                 "Share this flashcard"})
            QVERIFY2(button(contents, QString::fromUtf8(name)), name);
        QVERIFY(!button(contents, QStringLiteral("Previous card (←)"))->enabled);
        QVERIFY(drawn(contents, ATSPI_ROLE_LABEL, QStringLiteral("1 of 3")));
        QVERIFY(!button(contents, QStringLiteral("I know this")));
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"),
                                   {QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("^Review Deck$"),
                                    QStringLiteral("windowactivate"), QStringLiteral("--sync")}),
                 0);

        // Space turns the card; "Review again" sends it to the back.
        key(QStringLiteral("space"));
        QTRY_COMPARE_WITH_TIMEOUT((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card back: вода"),
                                  5000);
        QTRY_VERIFY((contents = reviewWindow(), button(contents, QStringLiteral("Review again"))));
        clickAt(button(contents, QStringLiteral("Review again"))->extents.center());
        QTRY_COMPARE_WITH_TIMEOUT((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: house"),
                                  5000);

        // The arrows move without answering; Return answers "I know this" on the back.
        key(QStringLiteral("Right"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: cat"));
        key(QStringLiteral("Right"));
        key(QStringLiteral("Right"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: water"));
        QVERIFY(!button(contents, QStringLiteral("Next card (→)"))->enabled);
        key(QStringLiteral("Left"));
        key(QStringLiteral("Left"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: house"));
        key(QStringLiteral("Return"));
        key(QStringLiteral("space"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card back: дом"));
        key(QStringLiteral("Return"));
        QTRY_COMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: cat"));

        // Opening it again only raises it: the session keeps its place.
        QVERIFY(tolvane.command(openReview));
        QTest::qWait(500);
        QCOMPARE((contents = reviewWindow(), cardName(contents)), QStringLiteral("Card front: cat"));
        QVERIFY(drawn(contents, ATSPI_ROLE_LABEL, QStringLiteral("2 of 3")));

        QVERIFY(tolvane.stop());
        QFile deckFile(tolvane.recordsDirectory() + QStringLiteral("/review_deck.json"));
        QVERIFY(deckFile.open(QIODevice::ReadOnly));
        const auto cards = ReviewDeckStore::decode(deckFile.readAll(), QDateTime::currentDateTimeUtc());
        QVERIFY(cards.ok());
        QCOMPARE(cards.value().size(), 3);
        QCOMPARE(cards.value().at(0).status, CardStatus::reviewAgain);
        QCOMPARE(cards.value().at(1).status, CardStatus::knowIt);
        QCOMPARE(cards.value().at(2).status, CardStatus::new_);
    }

private:
    static void key(const QString& name)
    {
        QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("key"), name}), 0);
        QTest::qWait(150);
    }
};

QTEST_GUILESS_MAIN(TestReviewWindow)
#include "tst_ReviewWindow.moc"
