// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/DirectionDetection.h"
#include "platform/linux/language/IcuMecabTransliterator.h"

#include <QTest>

using namespace tolvane;

class TestIcuMecabTransliterator : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void chineseReadsAsPinyinWithToneMarks()
    {
        const IcuMecabTransliterator transliterator;
        QCOMPARE(pronunciationReading(QStringLiteral("图书馆"), QStringLiteral("zh-Hans"), transliterator),
                 QStringLiteral("tú shū guǎn"));
        QCOMPARE(pronunciationReading(QStringLiteral("图书馆"), QStringLiteral("ko"), transliterator), std::nullopt);
    }

    void japaneseReadsAsHiragana()
    {
        const IcuMecabTransliterator transliterator;
        QCOMPARE(pronunciationReading(QStringLiteral("図書館"), QStringLiteral("ja"), transliterator),
                 QStringLiteral("としょかん"));
        QCOMPARE(pronunciationReading(QStringLiteral("東京に行きます"), QStringLiteral("ja"), transliterator),
                 QStringLiteral("とうきょうにいきます"));
        // Kana alone has nothing to add.
        QCOMPARE(pronunciationReading(QStringLiteral("ひらがな"), QStringLiteral("ja"), transliterator), std::nullopt);
    }

    void oddInputIsReadWithoutTrouble()
    {
        const IcuMecabTransliterator transliterator;
        QCOMPARE(transliterator.hiragana(QString()), std::nullopt);
        QCOMPARE(transliterator.pinyin(QString()), std::nullopt);
        const QString page = QStringLiteral("图书馆").repeated(100000);
        const auto reading = transliterator.pinyin(page);
        QVERIFY(reading && !reading->isEmpty() && reading->size() < 4000);
        QVERIFY(transliterator.hiragana(QStringLiteral("図書館😀\u0000x")).has_value());
    }
};

QTEST_GUILESS_MAIN(TestIcuMecabTransliterator)
#include "tst_IcuMecabTransliterator.moc"
