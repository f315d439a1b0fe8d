// SPDX-License-Identifier: GPL-3.0-or-later
// Killing the application in the middle of its writes loses nothing it has reported as written and
// never leaves a file that does not decode.
#include "CrashingWriter.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

class TestRecordsCrash : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyReportedChangeSurvivesSigkill()
    {
        QTemporaryDir dir;
        // A few seconds here; bench_records_crash runs the long version.
        const auto report = crashtest::run(dir.path(), 400, std::chrono::milliseconds(4000), 20261122);
        qInfo("%d kills, %d inside a write, %lld reported changes", report.kills, report.interruptedWrites,
              static_cast<long long>(report.reportedChanges));
        QVERIFY2(report.problems.isEmpty(), qPrintable(report.problems.join(QLatin1Char('\n'))));
        QCOMPARE(report.undecodableFiles, 0);
        QCOMPARE(report.lostChanges, 0);
        QVERIFY(report.kills >= 50);
        QVERIFY(report.reportedChanges > 0);
    }
};

QTEST_GUILESS_MAIN(TestRecordsCrash)
#include "tst_RecordsCrash.moc"
