// SPDX-License-Identifier: GPL-3.0-or-later
// Example sentences fitted to three lines of 392 points, and the example block's two parts.
#include "core/overlay/LineFitting.h"

#include <QTest>

using namespace tolvane;

namespace {
// Every character is 10 points wide except "i" (4) and "W" (30): 39 plain characters make a line.
double width(const QString& text)
{
    double w = 0;
    for (const QChar c : text)
        w += c == QLatin1Char('i') ? 4 : c == QLatin1Char('W') ? 30 : 10;
    return w;
}
QString letters(int n, char c = 'a')
{
    return QString(n, QLatin1Char(c));
}
} // namespace

class TestLineFitting : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void textIsCutToThreeLinesWithAnEllipsis_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("fitted");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("fits on one line") << "I read the book"
                                          << "I read the book";
        const QString threeLines = letters(39) + " " + letters(39) + " " + letters(39);
        QTest::newRow("exactly three lines") << threeLines << threeLines;
        QTest::newRow("double spaces kept") << "a  b   c"
                                            << "a  b   c";
        // A fourth line is dropped and the third gets "…" (a single word is not shortened; the card
        // wraps what overhangs).
        QTest::newRow("fourth line dropped") << threeLines + " more" << threeLines + "…";
        // The third line loses words from its end until it fits with the "…".
        QTest::newRow("third line shortened at a space")
            << letters(39) + " " + letters(39) + " " + letters(20) + " " + letters(18) + " tail"
            << letters(39) + " " + letters(39) + " " + letters(20) + "…";
        // A word wider than a line: the longest prefix that fits with "…" (38 + "…" = 390).
        QTest::newRow("long word cut") << letters(100) << letters(38) + "…";
        QTest::newRow("long word after a short one") << "go " + letters(100) << "go " + letters(38) + "…";
        QTest::newRow("wide characters") << letters(20, 'W') << letters(12, 'W') + "…";
        QTest::newRow("narrow characters") << letters(97, 'i') << letters(97, 'i');
    }
    void textIsCutToThreeLinesWithAnEllipsis()
    {
        QFETCH(QString, text);
        QFETCH(QString, fitted);
        QCOMPARE(fitToLines(text, width), fitted);
    }

    void hugeTextsAreFittedWithAHandfulOfMeasurements_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("1 MB without a space") << letters(1 << 20);
        QTest::newRow("1 MB of words") << QStringLiteral("word ").repeated(200000);
        QTest::newRow("1 MB of spaces") << QString(1 << 20, QLatin1Char(' '));
    }
    void hugeTextsAreFittedWithAHandfulOfMeasurements()
    {
        QFETCH(QString, text);
        int measured = 0;
        qsizetype longest = 0;
        const QString fitted = fitToLines(text, [&](const QString& t) {
            ++measured;
            longest = std::max(longest, t.size());
            return width(t);
        });
        QVERIFY(fitted.size() < 200);
        QVERIFY2(measured < 300, qPrintable(QString::number(measured)));
        QVERIFY(longest <= 2048);
    }

    void exampleSplitsAtTheFirstLineFeed_data()
    {
        QTest::addColumn<QString>("example");
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<QString>("translation"); // "-" for none
        QTest::newRow("sentence only") << "I read the book."
                                       << "I read the book."
                                       << "-";
        QTest::newRow("with translation") << "I read the book.\nЯ читал книгу."
                                          << "I read the book."
                                          << "Я читал книгу.";
        QTest::newRow("second feed stays") << "A.\nB\nC"
                                           << "A."
                                           << "B\nC";
        QTest::newRow("empty translation") << "I read the book.\n"
                                           << "I read the book."
                                           << "-";
        QTest::newRow("empty sentence") << "\nЯ читал."
                                        << ""
                                        << "Я читал.";
    }
    void exampleSplitsAtTheFirstLineFeed()
    {
        QFETCH(QString, example);
        QFETCH(QString, sentence);
        QFETCH(QString, translation);
        const ExampleLines lines = exampleLines(example, width);
        QCOMPARE(lines.sentence, sentence);
        QCOMPARE(lines.translation.value_or(QStringLiteral("-")), translation);
    }
};

QTEST_GUILESS_MAIN(TestLineFitting)
#include "tst_LineFitting.moc"
