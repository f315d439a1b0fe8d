// SPDX-License-Identifier: GPL-3.0-or-later
// When a look-up makes a card and when it refreshes one, the answers, and what the reminders hear.
#include "RecordTestSupport.h"
#include "core/records/ReviewDeckStore.h"
#include "core/records/UsageEventStore.h"
#include "core/setup/Preferences.h"
#include "fakes/FakeReminderPlanner.h"
#include "fakes/FakeScheduler.h"
#include "platform/null/MemoryPreferenceStore.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

using namespace tolvane;

namespace {

QJsonObject cardInFile(const QString& path, qsizetype index)
{
    return QJsonDocument::fromJson(readFile(path)).array().at(index).toObject();
}

const auto de = std::optional<QString>(QStringLiteral("de"));
constexpr auto toTarget = DetectedDirection::englishToTarget;
constexpr auto toEnglish = DetectedDirection::targetToEnglish;

// A deck with everything it talks to, in a directory of its own.
struct Fixture
{
    QTemporaryDir dir;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    MemoryPreferenceStore preferenceStore;
    Preferences preferences{preferenceStore};
    FakeReminderPlanner planner;
    UsageEventStore events{clock, dir.path()};
    std::unique_ptr<ReviewDeckStore> deck = makeDeck();

    std::unique_ptr<ReviewDeckStore> makeDeck()
    {
        return std::make_unique<ReviewDeckStore>(clock, scheduler, preferences, events, &planner, dir.path());
    }
    qsizetype reviewEvents() const
    {
        return std::count_if(events.events().cbegin(), events.events().cend(),
                             [](const UsageEvent& e) { return e.type == UsageEventType::review; });
    }
};

} // namespace

class TestReviewDeckStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void aWordLookedUpAgainInAnotherCaseRefreshesItsCard()
    {
        Fixture f;
        QSignalSpy changes(f.deck.get(), &ReviewDeckStore::cardsChanged);
        f.deck->addCard(QStringLiteral("Haus"), QStringLiteral("house"), true, de, toEnglish);
        const ReviewCard first = f.deck->cards().first();
        QCOMPARE(f.planner.reschedules, 1);

        f.clock.advance(Duration(3600000));
        f.deck->addCard(QStringLiteral("haus"), QStringLiteral("home"), true, de, toEnglish);
        QCOMPARE(f.deck->cards().size(), 1);
        const ReviewCard& card = f.deck->cards().first();
        QCOMPARE(card.sourceText, QStringLiteral("Haus"));
        QCOMPARE(card.translation, QStringLiteral("home"));
        QCOMPARE(card.id, first.id);
        QCOMPARE(card.dateAdded, first.dateAdded);
        QCOMPARE(card.nextNotificationDate, f.clock.now());
        QCOMPARE(f.planner.reschedules, 1); // a refresh does not re-plan
        QCOMPARE(changes.size(), 2);
        QCOMPARE(ReviewDeckStore::decode(readFile(f.deck->filePath()), f.clock.now()).value(), f.deck->cards());
    }

    void directionAndLanguageKeepCardsApart()
    {
        Fixture f;
        f.preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("fr"));
        f.deck->addCard(QStringLiteral("chat"), QStringLiteral("cat"), true, std::nullopt, toEnglish);
        f.deck->addCard(QStringLiteral("chat"), QStringLiteral("chat"), true, std::nullopt, toTarget);
        f.preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("de"));
        f.deck->addCard(QStringLiteral("chat"), QStringLiteral("Plaudern"), true, std::nullopt, toTarget);
        // Given explicitly, the language beats the preference.
        f.deck->addCard(QStringLiteral("CHAT"), QStringLiteral("cat"), true, QStringLiteral("fr"), toEnglish);
        QCOMPARE(f.deck->cards().size(), 3);
        QCOMPARE(f.deck->cards().at(2).targetLanguage, de);
    }

    void withoutAnyLanguageTheCardCarriesNoneAndStillMatches()
    {
        Fixture f;
        f.deck->addCard(QStringLiteral("word"), QStringLiteral("слово"), true, std::nullopt, toTarget);
        QVERIFY(!cardInFile(f.deck->filePath(), 0).contains(QStringLiteral("targetLanguage")));
        f.deck->addCard(QStringLiteral("Word"), QStringLiteral("слово"), true, std::nullopt, toTarget);
        QCOMPARE(f.deck->cards().size(), 1);
        // Absent and present never match.
        f.deck->addCard(QStringLiteral("word"), QStringLiteral("слово"), true, QStringLiteral("ru"), toTarget);
        QCOMPARE(f.deck->cards().size(), 2);
    }

    void onlyWordLikeTextsBecomeCardsFromAWordLookUp_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("wordLike");
        QTest::newRow("40 letters") << QString(40, QLatin1Char('a')) << true;
        QTest::newRow("41 letters") << QString(41, QLatin1Char('a')) << false;
        QTest::newRow("40 accented letters in 80 code units") << QStringLiteral("e\u0301").repeated(40) << true;
        QTest::newRow("41 emoji") << QStringLiteral("🙂").repeated(41) << false;
        QTest::newRow("empty") << QString() << false;
        for (const char16_t lineBreak : {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029})
            QTest::newRow(qPrintable(QStringLiteral("break U+%1").arg(int(lineBreak), 4, 16, QLatin1Char('0'))))
                << (QStringLiteral("ab") + QChar(lineBreak) + QStringLiteral("cd")) << false;
        QTest::newRow("a tab is no line break") << QStringLiteral("ab\tcd") << true;
    }

    void onlyWordLikeTextsBecomeCardsFromAWordLookUp()
    {
        QFETCH(QString, text);
        QFETCH(bool, wordLike);
        Fixture f;
        f.deck->addCard(text, QStringLiteral("t"), true, de, toTarget);
        QCOMPARE(f.deck->cards().size(), wordLike ? 1 : 0);
        QCOMPARE(QFile::exists(f.deck->filePath()), wordLike); // a refused text writes nothing
        QCOMPARE(f.planner.reschedules, wordLike ? 1 : 0);
        // A saved passage is taken as it is.
        f.deck->addCard(text + QStringLiteral("\n") + text, QStringLiteral("t"), false, de, toTarget);
        QCOMPARE(f.deck->cards().size(), wordLike ? 2 : 1);
    }

    void aKnownWordLookedUpAgainComesBackIntoReview()
    {
        Fixture f;
        f.deck->addCard(QStringLiteral("Baum"), QStringLiteral("tree"), true, de, toEnglish);
        const QUuid id = f.deck->cards().first().id;
        f.deck->markShown(id, 3600);
        const QDateTime shown = f.clock.now();
        f.deck->setStatus(id, CardStatus::knowIt);
        QVERIFY(f.deck->activeCards().isEmpty());

        f.clock.advance(Duration(86400000));
        f.deck->addCard(QStringLiteral("baum"), QStringLiteral("tree"), true, de, toEnglish);
        QCOMPARE(f.deck->cards().first().status, CardStatus::reviewAgain);
        QCOMPARE(f.deck->cards().first().nextNotificationDate, f.clock.now());
        QCOMPARE(f.deck->cards().first().lastShownDate, std::optional<QDateTime>(shown));
        // reviewAgain stays as it is on a further look-up.
        f.deck->addCard(QStringLiteral("BAUM"), QStringLiteral("tree"), true, de, toEnglish);
        QCOMPARE(f.deck->cards().first().status, CardStatus::reviewAgain);
    }

    void everyAnswerIsOneReviewEventAndARePlan()
    {
        Fixture f;
        f.deck->addCard(QStringLiteral("a"), QStringLiteral("b"), true, de, toTarget);
        const QUuid id = f.deck->cards().first().id;
        const int plansBefore = f.planner.reschedules;
        f.deck->setStatus(id, CardStatus::reviewAgain);
        f.deck->setStatus(id, CardStatus::reviewAgain); // unchanged still counts
        f.deck->setStatus(id, CardStatus::knowIt);
        QCOMPARE(f.reviewEvents(), 3);
        QCOMPARE(f.planner.reschedules, plansBefore + 3);
        QCOMPARE(f.deck->cards().first().status, CardStatus::knowIt);
        QCOMPARE(cardInFile(f.deck->filePath(), 0).value(QStringLiteral("status")).toString(),
                 QStringLiteral("knowIt"));

        // Unknown cards change nothing at all.
        QFile::remove(f.deck->filePath());
        QSignalSpy changes(f.deck.get(), &ReviewDeckStore::cardsChanged);
        f.deck->setStatus(QUuid::createUuid(), CardStatus::knowIt);
        f.deck->markShown(QUuid::createUuid(), 60);
        QVERIFY(!QFile::exists(f.deck->filePath()));
        QCOMPARE(f.reviewEvents(), 3);
        QCOMPARE(f.planner.reschedules, plansBefore + 3);
        QCOMPARE(changes.size(), 0);
    }

    void markShownSetsBothDatesWithoutRePlanning()
    {
        Fixture f;
        f.deck->addCard(QStringLiteral("a"), QStringLiteral("b"), true, de, toTarget);
        const QUuid id = f.deck->cards().first().id;
        const int plansBefore = f.planner.reschedules;
        f.clock.advance(Duration(5000));
        f.deck->markShown(id, 14400.5);
        const ReviewCard& card = f.deck->cards().first();
        QCOMPARE(card.lastShownDate, std::optional<QDateTime>(f.clock.now()));
        QCOMPARE(card.nextNotificationDate, f.clock.now().addMSecs(14400500));
        QCOMPARE(f.planner.reschedules, plansBefore);
        QCOMPARE(f.reviewEvents(), 0);
        // A broken interval gives a date the file can still hold.
        f.deck->markShown(id, std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(f.deck->cards().first().nextNotificationDate, f.clock.now());
        QCOMPARE(ReviewDeckStore::decode(readFile(f.deck->filePath()), f.clock.now()).value(), f.deck->cards());
    }

    void removingACardClearsItsDeliveredRemindersLater()
    {
        Fixture f;
        for (const char* word : {"one", "two", "three"})
            f.deck->addCard(QString::fromLatin1(word), QStringLiteral("x"), true, de, toTarget);
        const QUuid two = f.deck->cards().at(1).id;
        const int plansBefore = f.planner.reschedules;
        f.deck->removeCard(two);
        QCOMPARE(f.deck->cards().size(), 2);
        QCOMPARE(f.deck->cards().at(1).sourceText, QStringLiteral("three"));
        QCOMPARE(f.planner.reschedules, plansBefore + 1);
        QVERIFY(f.planner.removedReminders.isEmpty()); // not inside the call
        f.scheduler.runPosted();
        QCOMPARE(f.planner.removedReminders, QList<QUuid>{two});
        QCOMPARE(ReviewDeckStore::decode(readFile(f.deck->filePath()), f.clock.now()).value().size(), 2);

        // An unknown card still rewrites the file, clears reminders and re-plans.
        QFile::remove(f.deck->filePath());
        const QUuid unknown = QUuid::createUuid();
        f.deck->removeCard(unknown);
        f.scheduler.runPosted();
        QVERIFY(QFile::exists(f.deck->filePath()));
        QCOMPARE(f.planner.removedReminders.last(), unknown);
        QCOMPARE(f.planner.reschedules, plansBefore + 2);

        // Without a planner nothing is asked; the deck may also be gone by the time the removal runs.
        f.deck->setReminderPlanner(nullptr);
        f.deck->removeCard(f.deck->cards().first().id);
        f.scheduler.runPosted();
        f.deck->setReminderPlanner(&f.planner);
        f.deck->removeCard(f.deck->cards().first().id);
        f.deck.reset();
        f.scheduler.runPosted();
        QCOMPARE(f.planner.removedReminders.size(), 2);
        QCOMPARE(f.planner.reschedules, plansBefore + 3);
    }

    void olderFilesLoadWithTheLenientDefaults()
    {
        Fixture f;
        QVERIFY(writeFile(
            f.dir.filePath(QStringLiteral("review_deck.json")),
            "[{\"id\":\"4f1c9a2e-2b7d-4c41-9e0a-6d5b3c2a1f08\",\"sourceText\":\"old\",\"translation\":\"alt\","
            "\"status\":\"reviewAgain\",\"context\":\"An old sentence.\",\"unknownKey\":[1,2]}]"));
        f.clock.advance(Duration(1234));
        const QDateTime loadTime = f.clock.now();
        f.deck = f.makeDeck();
        QCOMPARE(f.deck->cards().size(), 1);
        const ReviewCard& card = f.deck->cards().first();
        QCOMPARE(card.direction, std::optional<DetectedDirection>(toTarget));
        QCOMPARE(card.nextNotificationDate, loadTime);
        QCOMPARE(card.dateAdded, loadTime);

        f.clock.advance(Duration(60000));
        f.deck->addCard(QStringLiteral("new"), QStringLiteral("neu"), true, de, toTarget);
        const QJsonObject written = cardInFile(f.deck->filePath(), 0);
        QCOMPARE(written.value(QStringLiteral("direction")).toString(), QStringLiteral("englishToTarget"));
        QCOMPARE(written.value(QStringLiteral("context")).toString(), QStringLiteral("An old sentence."));
        // A card with no direction matches an English look-up.
        f.deck->addCard(QStringLiteral("OLD"), QStringLiteral("alt"), true, std::nullopt, toTarget);
        QCOMPARE(f.deck->cards().size(), 2);
    }

    void cardsMissingWhatTheyCannotDoWithoutAreRefused_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::newRow("no id") << QByteArray("\"id\":\"4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08\",") << QByteArray();
        QTest::newRow("no status") << QByteArray(",\"status\":\"new\"") << QByteArray();
        QTest::newRow("unknown status") << QByteArray("\"new\"") << QByteArray("\"learned\"");
        QTest::newRow("id not hex") << QByteArray("4F1C9A2E") << QByteArray("ZZZZZZZZ");
    }

    void cardsMissingWhatTheyCannotDoWithoutAreRefused()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        const QByteArray card =
            "[{\"id\":\"4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08\",\"sourceText\":\"a\",\"translation\":\"b\","
            "\"status\":\"new\"}]";
        const QDateTime now(QDate(2026, 1, 1), QTime(0, 0), Qt::UTC);
        QVERIFY(ReviewDeckStore::decode(card, now).ok()); // the card as it should be loads
        const auto decoded = ReviewDeckStore::decode(QByteArray(card).replace(from, to), now);
        QVERIFY(!decoded.ok());
        QVERIFY(!decoded.error().message.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestReviewDeckStore)
#include "tst_ReviewDeckStore.moc"
