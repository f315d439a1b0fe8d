// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/GraphemeText.h"

#include <QTest>

using namespace tolvane;

class TestGraphemeText : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void countsUserPerceivedCharacters()
    {
        // A flag (2 code points, 4 code units), an e with a combining accent, a CR LF pair.
        const GraphemeText text(QStringLiteral("🇫🇷e\u0301\r\nx"));
        QCOMPARE(text.size(), 4);
        QCOMPARE(text.at(0), QStringLiteral("🇫🇷"));
        QCOMPARE(text.at(1), QStringLiteral("e\u0301"));
        QVERIFY(text.isLineBreak(2));
        QCOMPARE(text.mid(1, 4), QStringLiteral("e\u0301\r\nx"));
        QCOMPARE(text.at(9), QStringView());

        QCOMPARE(text.utf16Offset(1), 4);
        QCOMPARE(text.indexAtUtf16(5), 1); // the accent belongs to its letter
        QCOMPARE(text.indexAtUtf16(7), 2); // the LF belongs to the CR
        QCOMPARE(text.indexAtUtf16(99), 4);
        // Code points: flag = 0,1; e = 2; accent = 3; CR = 4; LF = 5; x = 6.
        QCOMPARE(text.indexAtCodePoint(3), 1);
        QCOMPARE(text.indexAtCodePoint(7), 4);
    }

    void whitespaceAndLineBreaks()
    {
        for (char32_t c : {0x0Au, 0x0Bu, 0x0Cu, 0x0Du, 0x85u, 0x2028u, 0x2029u}) {
            QVERIFY(textrules::isLineBreak(c));
            QVERIFY(textrules::isWhitespace(c));
        }
        QVERIFY(textrules::isWhitespace(0x00A0)); // no-break space
        QVERIFY(!textrules::isLineBreak(U' '));
        QVERIFY(!textrules::isWhitespace(0x200B)); // zero-width space is not White_Space
    }

    void trimsAndSplits()
    {
        QCOMPARE(textrules::trimmedWhitespace(QStringLiteral("\u00a0 word\u2029\n")), QStringLiteral("word"));
        QCOMPARE(textrules::trimmedPunctuation(QStringLiteral("¿«Qué?»")), QStringLiteral("Qué"));
        QCOMPARE(textrules::trimmedPunctuation(QStringLiteral("—")), QString());
        // Symbols are not punctuation.
        QCOMPARE(textrules::trimmedPunctuation(QStringLiteral("$5+")), QStringLiteral("$5+"));
        QCOMPARE(textrules::splitAtWhitespace(QStringLiteral("  a\u00a0b\n\nc ")),
                 QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    }

    void editDistance_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("distance");
        QTest::newRow("one substitution") << QStringLiteral("hause") << "house" << 1;
        QTest::newRow("insert and delete") << QStringLiteral("book") << "books" << 1;
        QTest::newRow("transposition is two") << QStringLiteral("form") << "from" << 2;
        QTest::newRow("empty") << QString() << "abc" << 3;
        QTest::newRow("accented letter is one character") << QStringLiteral("cafe\u0301") << "cafe" << 1;
    }
    void editDistance()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, distance);
        QCOMPARE(textrules::editDistance(a, b), distance);
        QCOMPARE(textrules::editDistance(b, a), distance);
    }
};

QTEST_GUILESS_MAIN(TestGraphemeText)
#include "tst_GraphemeText.moc"
