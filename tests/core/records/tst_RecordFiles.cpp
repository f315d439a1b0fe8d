// SPDX-License-Identifier: GPL-3.0-or-later
// What every record file shares: the encodings (the hand-written encoder must say exactly what a JSON
// parser reads back), the atomic rewrite, and the recovery of files that cannot be read.
#include "RecordTestSupport.h"
#include "core/records/ConfusionLogStore.h"
#include "core/records/RecordJson.h"
#include "core/records/UsageEventStore.h"
#include "core/support/Logging.h"
#include "fakes/FakeScheduler.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace tolvane;

TOLVANE_DEFINE_LOG(lcTestStore, "TestStore")

namespace {

// Lowers the size a file of this process may grow to; a write past it fails instead of raising
// SIGXFSZ.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(qint64 bytes)
    {
        ::getrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit lowered{rlim_t(bytes), m_saved.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_saved); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_saved{};
};

QStringList recoveryCopies(const QString& directory, const QString& fileName)
{
    return QDir(directory).entryList({fileName + QStringLiteral(".corrupt-*")}, QDir::AllEntries | QDir::System);
}

QByteArray encodedDate(const QDateTime& date)
{
    QByteArray out;
    RecordJson::Writer writer(out);
    writer.beginObject();
    writer.member("d", date);
    writer.endObject();
    return out;
}

QDateTime sinceReference(qint64 msecs)
{
    return QDateTime::fromMSecsSinceEpoch(RecordJson::referenceDateMSecsSinceEpoch + msecs, Qt::UTC);
}

} // namespace

class TestRecordFiles : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void recordsAreCompactPrivateAndDatedFrom2001()
    {
        QTemporaryDir parent;
        const QString dir = parent.path() + QStringLiteral("/a/Tolvane");
        FakeClock clock(QDateTime(QDate(2025, 1, 1), QTime(0, 0), Qt::UTC));
        ConfusionLogStore log(clock, dir);
        QVERIFY(!QFile::exists(log.filePath())); // nothing is written before the first change
        log.recordLookup(QStringLiteral("Haus"), QStringLiteral("house"), std::nullopt);
        QCOMPARE(readFile(log.filePath()),
                 QByteArray("[{\"word\":\"Haus\",\"translation\":\"house\",\"seenCount\":1,\"lastSeen\":757382400}]"));
        UsageEventStore events(clock, dir);
        events.record(UsageEventType::review);

        QCOMPARE(QFile(events.filePath()).permissions() & 0x0077, QFileDevice::Permissions());
        // The temporary file of the atomic write does not stay behind.
        QCOMPARE(QDir(dir).entryList(QDir::Files),
                 (QStringList{QStringLiteral("confusion_log.json"), QStringLiteral("usage_events.json")}));
    }

    void anEmptyArrayOrAMissingFileLoadsQuietly()
    {
        QTemporaryDir dir;
        FakeClock clock;
        LogCapture logs;
        QVERIFY(UsageEventStore(clock, dir.path()).events().isEmpty());
        QVERIFY(writeFile(dir.filePath(QStringLiteral("usage_events.json")), "[]"));
        QVERIFY(UsageEventStore(clock, dir.path()).events().isEmpty());
        QVERIFY(logs.lines().isEmpty());
        QVERIFY(recoveryCopies(dir.path(), QStringLiteral("usage_events.json")).isEmpty());
    }

    void badContentIsSetAsideUntouchedAndTheStoreStartsAfresh_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("an object") << QByteArray("{}");
        QTest::newRow("date as ISO text") << QByteArray("[{\"type\":\"lookup\",\"date\":\"2025-01-01T00:00:00Z\"}]");
        QTest::newRow("NaN date") << QByteArray("[{\"type\":\"lookup\",\"date\":NaN}]");
        QTest::newRow("huge date") << QByteArray("[{\"type\":\"lookup\",\"date\":1e300}]");
        QTest::newRow("unknown type") << QByteArray("[{\"type\":\"click\",\"date\":0}]");
        QTest::newRow("one bad record among good") << QByteArray("[{\"type\":\"lookup\",\"date\":0},{\"date\":0}]");
        QTest::newRow("cut short") << QByteArray("[{\"type\":\"lookup\",\"date\":0},{\"type\":\"loo");
        QTest::newRow("invalid UTF-8") << QByteArray("[{\"type\":\"look\xff\xfe\",\"date\":0}]");
        QTest::newRow("deeply nested") << QByteArray(100000, '[') + QByteArray(100000, ']');
        QTest::newRow("empty file") << QByteArray();
    }

    void badContentIsSetAsideUntouchedAndTheStoreStartsAfresh()
    {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        FakeClock clock;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("usage_events.json")), content));
        LogCapture logs;
        UsageEventStore events(clock, dir.path());
        QVERIFY(events.events().isEmpty());
        const QStringList copies = recoveryCopies(dir.path(), QStringLiteral("usage_events.json"));
        QCOMPARE(copies.size(), 1);
        QVERIFY(QRegularExpression(QStringLiteral("^usage_events\\.json\\.corrupt-[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-"
                                                  "[0-9A-F]{4}-[0-9A-F]{12}$"))
                    .match(copies.first())
                    .hasMatch());
        QCOMPARE(readFile(dir.filePath(copies.first())), content);
        QCOMPARE(logs.lines().size(), 1);
        const QString expected =
            QStringLiteral("[UsageEventStore] Could not decode JSON; preserved the original at %1. Error: ")
                .arg(dir.filePath(copies.first()));
        QVERIFY2(logs.lines().first().startsWith(expected) && logs.lines().first().size() > expected.size(),
                 qPrintable(logs.lines().first()));
        events.record(UsageEventType::lookup);
        QCOMPARE(UsageEventStore::decode(readFile(events.filePath())).value(), events.events());
    }

    void twoFailuresInTwoRunsLeaveTwoCopies()
    {
        QTemporaryDir dir;
        FakeClock clock;
        const QString path = dir.filePath(QStringLiteral("confusion_log.json"));
        QVERIFY(writeFile(path, "not json"));
        ConfusionLogStore(clock, dir.path());
        QVERIFY(writeFile(path, "[{\"word\":1}]"));
        ConfusionLogStore(clock, dir.path());
        QStringList contents;
        for (const QString& copy : recoveryCopies(dir.path(), QStringLiteral("confusion_log.json")))
            contents << readFile(dir.filePath(copy));
        contents.sort();
        QCOMPARE(contents, (QStringList{QStringLiteral("[{\"word\":1}]"), QStringLiteral("not json")}));
    }

    void unknownKeysAreIgnoredAndWholeNumbersMayCarryAFraction()
    {
        QTemporaryDir dir;
        FakeClock clock;
        QVERIFY(writeFile(dir.filePath(QStringLiteral("confusion_log.json")),
                          "[{\"word\":\"a\",\"translation\":\"b\",\"seenCount\":3.0,\"lastSeen\":1.5,\"x\":{}}]"));
        ConfusionLogStore log(clock, dir.path());
        QCOMPARE(log.entries().size(), 1);
        QCOMPARE(log.entries().first().seenCount, 3);
        QCOMPARE(log.entries().first().lastSeen, QDateTime(QDate(2001, 1, 1), QTime(0, 0, 1, 500), Qt::UTC));
    }

    void aDirectoryAPipeOrAHugeFileInThePlaceOfTheFileIsMovedAside()
    {
        QTemporaryDir dir;
        FakeClock clock;
        QVERIFY(QDir(dir.path()).mkpath(QStringLiteral("usage_events.json/inner")));
        QFile huge(dir.filePath(QStringLiteral("confusion_log.json")));
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(qint64(200) * 1024 * 1024)); // sparse
        huge.close();
        QCOMPARE(::mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("pipe.json"))).constData(), 0600), 0);
        LogCapture logs;
        UsageEventStore events(clock, dir.path());
        ConfusionLogStore log(clock, dir.path());
        // A named pipe would block the reader forever.
        JsonRecordFile pipe(dir.path(), QStringLiteral("pipe.json"), &lcTestStore);
        QVERIFY(!pipe.load<UsageEvent>([](RecordJson::Reader&) { return UsageEvent{}; }));
        QCOMPARE(recoveryCopies(dir.path(), QStringLiteral("usage_events.json")).size(), 1);
        QCOMPARE(recoveryCopies(dir.path(), QStringLiteral("confusion_log.json")).size(), 1);
        QCOMPARE(recoveryCopies(dir.path(), QStringLiteral("pipe.json")).size(), 1);
        QCOMPARE(logs.lines().size(), 3);
        events.record(UsageEventType::lookup);
        QCOMPARE(UsageEventStore::decode(readFile(events.filePath())).value(), events.events());
    }

    void aFailedMoveLeavesTheFileToBeReplaced()
    {
        QTemporaryDir dir;
        // With the recovery suffix the name grows past what the file system allows.
        const QString name = QString(220, QLatin1Char('r')) + QStringLiteral(".json");
        QVERIFY(writeFile(dir.filePath(name), "{}"));
        LogCapture logs;
        JsonRecordFile file(dir.path(), name, &lcTestStore);
        QVERIFY(!file.load<UsageEvent>([](RecordJson::Reader&) { return UsageEvent{}; }));
        QCOMPARE(logs.lines().size(), 1);
        QVERIFY2(
            QRegularExpression(QStringLiteral("^\\[TestStore\\] Could not decode JSON or create a recovery copy\\. "
                                              "Decode error: .+; backup error: .+$"))
                .match(logs.lines().first())
                .hasMatch(),
            qPrintable(logs.lines().first()));
        QCOMPARE(readFile(file.path()), QByteArray("{}"));
        file.persistBytes("[]");
        QCOMPARE(readFile(file.path()), QByteArray("[]"));
    }

    void aFailedWriteIsLoggedAndKeepsTheFileAndTheChange()
    {
        QTemporaryDir dir;
        FakeClock clock;
        ConfusionLogStore log(clock, dir.path());
        log.recordLookup(QStringLiteral("a"), QString(), std::nullopt);
        const QByteArray before = readFile(log.filePath());
        // Past the file-size limit every write fails ("File too large"), as on a full disk.
        std::optional<FileSizeLimit> limit(std::in_place, before.size());
        LogCapture logs;
        log.recordLookup(QStringLiteral("b"), QString(), std::nullopt);
        QCOMPARE(logs.lines().size(), 1);
        QVERIFY2(logs.lines().first().startsWith(QStringLiteral("[ConfusionLogStore] Failed to persist JSON: ")),
                 qPrintable(logs.lines().first()));
        QCOMPARE(readFile(log.filePath()), before);
        QCOMPARE(log.entries().size(), 2);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("confusion_log.json")});
        // Nothing of the failed write is left in the way of the next one.
        limit.reset();
        log.recordLookup(QStringLiteral("c"), QString(), std::nullopt);
        QCOMPARE(ConfusionLogStore::decode(readFile(log.filePath())).value(), log.entries());
    }

    void datesAreWrittenAsTheShortestExactNumber_data()
    {
        QTest::addColumn<qint64>("msecs");
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("reference date") << qint64(0) << QByteArray("{\"d\":0}");
        QTest::newRow("2025-01-01") << qint64(757382400000) << QByteArray("{\"d\":757382400}");
        QTest::newRow("one millisecond") << qint64(1) << QByteArray("{\"d\":0.001}");
        QTest::newRow("a quarter") << qint64(757382400250) << QByteArray("{\"d\":757382400.25}");
        QTest::newRow("before 2001") << qint64(-1500) << QByteArray("{\"d\":-1.5}");
        QTest::newRow("just before 2001") << qint64(-1) << QByteArray("{\"d\":-0.001}");
    }

    void datesAreWrittenAsTheShortestExactNumber()
    {
        QFETCH(qint64, msecs);
        QFETCH(QByteArray, json);
        QCOMPARE(encodedDate(sinceReference(msecs)), json);
    }

    void everyMillisecondReadsBackExactly()
    {
        QRandomGenerator random(7);
        for (int i = 0; i < 20000; ++i) {
            const qint64 msecs = qint64(random.bounded(8.0e12)) - qint64(4.0e12);
            const QByteArray json = encodedDate(sinceReference(msecs));
            const double seconds = QJsonDocument::fromJson(json).object().value(QStringLiteral("d")).toDouble();
            QCOMPARE(RecordJson::dateFromSecondsSinceReferenceDate(seconds), std::optional(sinceReference(msecs)));
            QCOMPARE(RecordJson::secondsSinceReferenceDate(sinceReference(msecs)), seconds);
        }
    }

    void everyCharacterSurvivesEscaping()
    {
        QString all;
        for (char32_t c = 0; c < 0x11000; ++c) {
            if (c >= 0xD800 && c < 0xE000)
                continue;
            all += QString::fromUcs4(&c, 1);
        }
        QByteArray out = "[";
        RecordJson::Writer::appendString(out, all);
        out += "]";
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(out, &error);
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(document.array().at(0).toString(), all);
    }
};

QTEST_GUILESS_MAIN(TestRecordFiles)
#include "tst_RecordFiles.moc"
