// SPDX-License-Identifier: GPL-3.0-or-later
#include <QProcess>
#include <QTest>

class TestLanguageCommands : public QObject
{
    Q_OBJECT
private:
    static QPair<int, QString> run(const QStringList& arguments)
    {
        QProcess process;
        process.start(QStringLiteral(TOLVANE_BINARY_DIR "/src/tolvane"), arguments);
        if (!process.waitForFinished(30000))
            return {-1, QString()};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput())};
    }

private Q_SLOTS:
    void detectPrintsTheDirectionAndBothProbabilities()
    {
        const auto [code, output] =
            run({"detect", "--target", "fr", "Les", "enfants", "jouent", "dans", "le", "jardin."});
        QCOMPARE(code, 0);
        QVERIFY2(QRegularExpression(QStringLiteral("^targetToEnglish en=0\\.\\d\\d fr=(0\\.\\d\\d|1\\.00)\n$"))
                     .match(output)
                     .hasMatch(),
                 qPrintable(output));
        QCOMPARE(run({"detect", "--target"}).first, 2);
    }

    void readingAndPosPrintTheirAnswer()
    {
        QCOMPARE(run({"reading", "--target", "ja", "図書館"}), qMakePair(0, QStringLiteral("としょかん\n")));
        QCOMPARE(run({"pos", "They will paint the fence.", "paint"}), qMakePair(0, QStringLiteral("v.\n")));
        QCOMPARE(run({"pos", "only one argument"}).first, 2);
    }
};

QTEST_GUILESS_MAIN(TestLanguageCommands)
#include "tst_LanguageCommands.moc"
