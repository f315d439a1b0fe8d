// SPDX-License-Identifier: GPL-3.0-or-later
// One entry per word, case ignored, counted at every look-up.
#include "RecordTestSupport.h"
#include "core/records/ConfusionLogStore.h"
#include "fakes/FakeScheduler.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

QStringList words(const QList<ConfusionLogEntry>& entries)
{
    QStringList list;
    for (const auto& entry : entries)
        list << entry.word;
    return list;
}

} // namespace

class TestConfusionLogStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void lookUpsDifferingOnlyInCaseShareOneEntry()
    {
        QTemporaryDir dir;
        FakeClock clock;
        ConfusionLogStore log(clock, dir.path());
        QSignalSpy changes(&log, &ConfusionLogStore::entriesChanged);
        log.recordLookup(QStringLiteral("Bank"), QStringLiteral("банк"), QStringLiteral("Firefox"));
        clock.advance(Duration(60000));
        log.recordLookup(QStringLiteral("bank"), QStringLiteral("берег"), QStringLiteral("Kate"));
        clock.advance(Duration(60000));
        log.recordLookup(QStringLiteral("BANK"), QString(), QStringLiteral("Kate"));
        log.recordLookup(QStringLiteral("ÄPFEL"), QStringLiteral("apples"), std::nullopt);
        log.recordLookup(QStringLiteral("äpfel"), QStringLiteral("apples"), std::nullopt);
        // No other normalisation: a trailing space makes another word.
        log.recordLookup(QStringLiteral("bank "), QStringLiteral("x"), std::nullopt);

        QCOMPARE(changes.size(), 6);
        QCOMPARE(words(log.entries()),
                 (QStringList{QStringLiteral("Bank"), QStringLiteral("ÄPFEL"), QStringLiteral("bank ")}));
        const ConfusionLogEntry& bank = log.entries().first();
        QCOMPARE(bank.seenCount, 3);
        QCOMPARE(bank.translation, QString()); // the latest, even when empty
        QCOMPARE(bank.lastSeen, QDateTime(QDate(2026, 3, 2), QTime(9, 2), Qt::UTC));
        QCOMPARE(log.entries().at(1).seenCount, 2);

        ConfusionLogStore reread(clock, dir.path());
        QCOMPARE(reread.entries(), log.entries());

        // An unknown application removes the key from the file.
        QVERIFY(readFile(log.filePath()).contains("\"appContext\":\"Kate\""));
        log.recordLookup(QStringLiteral("bank"), QStringLiteral("x"), std::nullopt);
        QVERIFY(!readFile(log.filePath()).contains("appContext"));
        QCOMPARE(log.entries().first().appContext, std::nullopt);
    }

    void mostConfusedRanksByCountAndKeepsLogOrderForTies()
    {
        QTemporaryDir dir;
        FakeClock clock;
        ConfusionLogStore log(clock, dir.path());
        for (const char* word : {"one", "two", "two", "three", "three", "four", "four", "four"})
            log.recordLookup(QString::fromLatin1(word), QString(), std::nullopt);
        QCOMPARE(words(log.mostConfused(10)), (QStringList{"four", "two", "three", "one"}));
        QCOMPARE(words(log.mostConfused(2)), (QStringList{"four", "two"}));
        QVERIFY(log.mostConfused(0).isEmpty());
        QVERIFY(log.mostConfused(-1).isEmpty());
        // The log itself is never reordered.
        QCOMPARE(words(log.entries()), (QStringList{"one", "two", "three", "four"}));
    }

    void requiredKeysDecideWhetherAFileLoads_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("loads");
        // One entry, with the given members after word and translation.
        const auto entry = [](const char* rest) {
            return "[{\"word\":\"a\",\"translation\":\"\"," + QByteArray(rest) + "}]";
        };
        QTest::newRow("no appContext") << entry("\"seenCount\":2,\"lastSeen\":0") << true;
        QTest::newRow("appContext null") << entry("\"seenCount\":2,\"lastSeen\":0,\"appContext\":null") << true;
        QTest::newRow("no seenCount") << entry("\"lastSeen\":0") << false;
        QTest::newRow("fractional count") << entry("\"seenCount\":2.5,\"lastSeen\":0") << false;
        QTest::newRow("count beyond 64 bits") << entry("\"seenCount\":1e30,\"lastSeen\":0") << false;
    }

    void requiredKeysDecideWhetherAFileLoads()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, loads);
        QCOMPARE(ConfusionLogStore::decode(content).ok(), loads);
    }
};

QTEST_GUILESS_MAIN(TestConfusionLogStore)
#include "tst_ConfusionLogStore.moc"
