// SPDX-License-Identifier: GPL-3.0-or-later
// `tolvane export`: the Export tab's bytes for the same choices, usage errors, and a damaged deck
// file set aside rather than written over.
#include "app/ExportCommand.h"
#include "core/records/ReviewDeckStore.h"
#include "core/review/DeckExport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

ReviewCard card(const QString& source, const QString& translation, CardStatus status, int daysAgo)
{
    ReviewCard c;
    c.id = QUuid::createUuid();
    c.sourceText = source;
    c.translation = translation;
    c.status = status;
    c.dateAdded = QDateTime::currentDateTimeUtc().addDays(-daysAgo);
    c.nextNotificationDate = c.dateAdded;
    return c;
}

} // namespace

class TestExportCommand : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_home;
    QString m_deckPath;
    QList<ReviewCard> m_cards;

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", m_home.filePath(QStringLiteral("data")).toUtf8());
        QVERIFY(QDir().mkpath(m_home.filePath(QStringLiteral("data/Tolvane"))));
        m_deckPath = m_home.filePath(QStringLiteral("data/Tolvane/review_deck.json"));
    }

    void init()
    {
        m_cards = {card("say \"hi\"", "привет, мир", CardStatus::new_, 1),
                   card("cat", "кошка\nкот", CardStatus::knowIt, 3),
                   card("old", "старый", CardStatus::reviewAgain, 40)};
        QFile file(m_deckPath);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(ReviewDeckStore::encode(m_cards));
    }

    void theCommandWritesWhatTheTabWouldForTheSameChoices_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QList<int>>("cards");
        QTest::addColumn<bool>("anki");
        QTest::newRow("defaults") << QStringList{} << QList<int>{0, 1, 2} << false;
        QTest::newRow("anki, new and known")
            << QStringList{"--format", "anki", "--status", "new,knowIt"} << QList<int>{0, 1} << true;
        QTest::newRow("last 30 days") << QStringList{"--added", "30"} << QList<int>{0, 1} << false;
        QTest::newRow("review again, all time")
            << QStringList{"--status", "reviewAgain", "--added", "all"} << QList<int>{2} << false;
    }
    void theCommandWritesWhatTheTabWouldForTheSameChoices()
    {
        QFETCH(QStringList, options);
        QFETCH(QList<int>, cards);
        QFETCH(bool, anki);
        const QString output = m_home.filePath(QStringLiteral("out.txt"));
        QCOMPARE(runExportCommand(options + QStringList{"--output", output}), 0);
        QList<ReviewCard> expected;
        for (int index : cards)
            expected.append(m_cards.at(index));
        QCOMPARE(readAll(output), exportContent(expected, anki ? ExportFormat::anki : ExportFormat::csv));
    }

    void wrongChoicesAreUsageErrorsAndNoMatchOrAnUnwritablePlaceFail_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("exitCode");
        QTest::newRow("unknown status") << QStringList{"--status", "new,known"} << 2;
        QTest::newRow("unknown format") << QStringList{"--format", "xlsx"} << 2;
        QTest::newRow("unknown range") << QStringList{"--added", "8"} << 2;
        QTest::newRow("missing value") << QStringList{"--format"} << 2;
        QTest::newRow("unknown option") << QStringList{"--all"} << 2;
        QTest::newRow("nothing matches") << QStringList{"--status", "reviewAgain", "--added", "30", "--output", "x"}
                                         << 1;
        QTest::newRow("unwritable place") << QStringList{"--output", "/nonexistent/dir/cards.csv"} << 1;
    }
    void wrongChoicesAreUsageErrorsAndNoMatchOrAnUnwritablePlaceFail()
    {
        QFETCH(QStringList, options);
        QFETCH(int, exitCode);
        const QByteArray deckBefore = readAll(m_deckPath);
        QCOMPARE(runExportCommand(options), exitCode);
        QCOMPARE(readAll(m_deckPath), deckBefore);
        QVERIFY(!QFile::exists(QStringLiteral("x")));
    }

    void aDamagedDeckIsSetAsideByTheStoreAndNotOverwritten()
    {
        const QByteArray damaged = "[{\"id\": broken";
        QFile file(m_deckPath);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(damaged);
        file.close();
        QCOMPARE(runExportCommand({}), 1);
        const QStringList aside = QDir(m_home.filePath(QStringLiteral("data/Tolvane")))
                                      .entryList({QStringLiteral("review_deck.json.corrupt-*")}, QDir::Files);
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readAll(m_home.filePath(QStringLiteral("data/Tolvane/")) + aside.first()), damaged);
    }
};

QTEST_GUILESS_MAIN(TestExportCommand)
#include "tst_ExportCommand.moc"
