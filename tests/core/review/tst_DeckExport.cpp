// SPDX-License-Identifier: GPL-3.0-or-later
// The exported files byte for byte, the filters that choose their cards, the texts of the tab and
// the atomic write.
#include "core/review/DeckExport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <QTimeZone>

using namespace tolvane;

namespace {

ReviewCard card(const QString& source, const QString& translation, CardStatus status = CardStatus::new_,
                QDateTime added = QDateTime(QDate(2025, 3, 7), QTime(12, 0), Qt::UTC))
{
    ReviewCard c;
    c.id = QUuid::createUuid();
    c.sourceText = source;
    c.translation = translation;
    c.status = status;
    c.dateAdded = std::move(added);
    return c;
}

QStringList sources(const QList<ReviewCard>& cards)
{
    QStringList result;
    for (const ReviewCard& c : cards)
        result.append(c.sourceText);
    return result;
}

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

} // namespace

Q_DECLARE_METATYPE(tolvane::ReviewCard)

class TestDeckExport : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void csvLinesAreEscapedFieldByFieldWithUtcDates_data()
    {
        QTest::addColumn<ReviewCard>("card");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("bare") << card("house", "дом") << QByteArray("house,дом,New,2025-03-07");
        QTest::newRow("quote doubled") << card("say \"hi\"", "x", CardStatus::knowIt)
                                       << QByteArray("\"say \"\"hi\"\"\",x,Know It,2025-03-07");
        QTest::newRow("comma quoted, nothing doubled") << card("run", "бежать, бегать", CardStatus::reviewAgain)
                                                       << QByteArray("run,\"бежать, бегать\",Review Again,2025-03-07");
        QTest::newRow("line feed and carriage return")
            << card("a\nb", "c\rd") << QByteArray("\"a\nb\",\"c\rd\",New,2025-03-07");
        QTest::newRow("tab and markup written bare")
            << card("<b>x</b>\t", "\u202Ey") << QByteArray("<b>x</b>\t,\u202Ey,New,2025-03-07");
        QTest::newRow("empty fields") << card("", "") << QByteArray(",,New,2025-03-07");
        const QTimeZone moscow("Europe/Moscow");
        const QTimeZone newYork("America/New_York");
        QTest::newRow("23:30 east of UTC keeps its day in UTC")
            << card("a", "b", CardStatus::new_, QDateTime(QDate(2025, 3, 7), QTime(23, 30), moscow))
            << QByteArray("a,b,New,2025-03-07");
        QTest::newRow("00:30 east of UTC is the day before in UTC")
            << card("a", "b", CardStatus::new_, QDateTime(QDate(2025, 3, 8), QTime(0, 30), moscow))
            << QByteArray("a,b,New,2025-03-07");
        QTest::newRow("23:30 west of UTC is the next day in UTC")
            << card("a", "b", CardStatus::new_, QDateTime(QDate(2025, 3, 7), QTime(23, 30), newYork))
            << QByteArray("a,b,New,2025-03-08");
    }
    void csvLinesAreEscapedFieldByFieldWithUtcDates()
    {
        QFETCH(ReviewCard, card);
        QFETCH(QByteArray, line);
        QCOMPARE(csvContent({card}), QByteArray("\xEF\xBB\xBFWord,Translation,Status,DateAdded\n") + line);
    }

    void wholeFilesHaveLineFeedsBetweenLinesOnlyAndCsvAloneHasTheMark()
    {
        const QList<ReviewCard> cards = {card("one", "eins"), card("two", "zwei\nzwo")};
        QCOMPARE(csvContent({}), QByteArray("\xEF\xBB\xBFWord,Translation,Status,DateAdded"));
        QCOMPARE(csvContent(cards), QByteArray("\xEF\xBB\xBFWord,Translation,Status,DateAdded\none,eins,New,"
                                               "2025-03-07\ntwo,\"zwei\nzwo\",New,2025-03-07"));
        // The line break inside a translation makes an extra line, as written.
        QCOMPARE(ankiContent(cards), QByteArray("one\teins\ntwo\tzwei\nzwo"));
        QCOMPARE(ankiContent({card("a\tb", "\"c\",d")}), QByteArray("a\tb\t\"c\",d"));
        QCOMPARE(ankiContent({}), QByteArray());
        QCOMPARE(exportContent(cards, ExportFormat::anki), ankiContent(cards));
        QCOMPARE(exportContent(cards, ExportFormat::csv), csvContent(cards));
    }

    void statusTogglesAndDateRangesChooseTheCardsInDeckOrder()
    {
        const QDateTime now(QDate(2025, 3, 10), QTime(12, 0), QTimeZone::systemTimeZone());
        const QList<ReviewCard> deck = {
            card("new", "", CardStatus::new_, now.addDays(-100)),
            card("known", "", CardStatus::knowIt, now.addDays(-1)),
            card("again", "", CardStatus::reviewAgain, now.addSecs(-60)),
            card("sevenDaysEarlier", "", CardStatus::new_, now.addDays(-7).addSecs(-3600)),
            card("sevenDaysLater", "", CardStatus::new_, now.addDays(-7).addSecs(3600)),
            card("sevenDaysExactly", "", CardStatus::new_, now.addDays(-7)),
        };
        ExportSettings settings;
        QCOMPARE(filteredCards(deck, settings, now).size(), 6);
        settings.includeNew = false;
        QCOMPARE(sources(filteredCards(deck, settings, now)), (QStringList{"known", "again"}));
        settings.includeKnowIt = false;
        settings.includeReviewAgain = false;
        QVERIFY(filteredCards(deck, settings, now).isEmpty());

        settings = ExportSettings{};
        settings.dateRange = ExportDateRange::last7Days;
        QCOMPARE(sources(filteredCards(deck, settings, now)),
                 (QStringList{"known", "again", "sevenDaysLater", "sevenDaysExactly"}));
        settings.dateRange = ExportDateRange::last90Days;
        QCOMPARE(filteredCards(deck, settings, now).size(), 5);
        settings.includeKnowIt = false;
        settings.dateRange = ExportDateRange::last30Days;
        QCOMPARE(sources(filteredCards(deck, settings, now)),
                 (QStringList{"again", "sevenDaysEarlier", "sevenDaysLater", "sevenDaysExactly"}));
    }

    void theButtonCountsCardsInTheSingularForOne()
    {
        QCOMPARE(exportButtonTitle(1, ExportFormat::csv), QStringLiteral("Export 1 card as CSV…"));
        QCOMPARE(exportButtonTitle(12, ExportFormat::anki), QStringLiteral("Export 12 cards as Anki text…"));
    }

    void writingReplacesTheFileWholeAndAFailureLeavesTheDiskAsItWas()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("cards.csv"));
        QVERIFY(writeExportFile(path, "old").ok());
        QVERIFY(writeExportFile(path, "new content").ok());
        QCOMPARE(fileBytes(path), QByteArray("new content"));

        QVERIFY(!writeExportFile(dir.filePath(QStringLiteral("missing/cards.csv")), "x").ok());
        QVERIFY(!writeExportFile(dir.path(), "x").ok());
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"cards.csv"}));
        QCOMPARE(fileBytes(path), QByteArray("new content"));
    }
};

QTEST_GUILESS_MAIN(TestDeckExport)
#include "tst_DeckExport.moc"
