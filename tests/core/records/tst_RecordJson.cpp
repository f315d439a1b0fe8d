// SPDX-License-Identifier: GPL-3.0-or-later
// The hand-written encoder must say exactly what a JSON parser reads back.
#include "core/records/RecordJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QTest>

using namespace tolvane;

namespace {

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

class TestRecordJson : public QObject
{
    Q_OBJECT
private Q_SLOTS:
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

QTEST_GUILESS_MAIN(TestRecordJson)
#include "tst_RecordJson.moc"
