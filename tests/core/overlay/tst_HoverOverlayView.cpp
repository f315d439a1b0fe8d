// SPDX-License-Identifier: GPL-3.0-or-later
// The word card's reading line: pinyin or kana under a Han translation, nothing otherwise.
#include "core/overlay/HoverOverlayView.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;
using State = HoverOverlayView::State;
Q_DECLARE_METATYPE(tolvane::HoverOverlayView::State)

class TestHoverOverlayView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void readingBelongsToAHanTranslationForChineseOrJapanese_data()
    {
        QTest::addColumn<State>("state");
        QTest::addColumn<QString>("target");  // "-": none
        QTest::addColumn<QString>("reading"); // "-": none
        QTest::newRow("zh-Hans, Han") << State::liveLookup("house", "房子") << "zh-Hans"
                                      << "fángzi";
        QTest::newRow("ja, Han") << State::lookup("house", "家") << "ja"
                                 << "いえ";
        QTest::newRow("ocrLookup, Han") << State::ocrLookup("house", "房子") << "zh-Hans"
                                        << "fángzi";
        QTest::newRow("ru, Han") << State::liveLookup("house", "房子") << "ru"
                                 << "-";
        QTest::newRow("ja, kana only") << State::liveLookup("house", "いえ") << "ja"
                                       << "-";
        QTest::newRow("zh-Hans, English translation") << State::liveLookup("房子", "house") << "zh-Hans"
                                                      << "-";
        QTest::newRow("no target") << State::liveLookup("house", "房子") << "-"
                                   << "-";
        QTest::newRow("translating") << State::translating("房子") << "zh-Hans"
                                     << "-";
    }
    void readingBelongsToAHanTranslationForChineseOrJapanese()
    {
        QFETCH(State, state);
        QFETCH(QString, target);
        QFETCH(QString, reading);
        FakeTransliterator transliterator;
        transliterator.pinyinReadings.insert(QStringLiteral("房子"), QStringLiteral("fángzi"));
        transliterator.pinyinReadings.insert(QStringLiteral("house"), QStringLiteral("house"));
        transliterator.hiraganaReadings.insert(QStringLiteral("家"), QStringLiteral("いえ"));
        transliterator.hiraganaReadings.insert(QStringLiteral("いえ"), QStringLiteral("いえ"));
        HoverOverlayView view;
        view.state = state;
        if (target != QLatin1String("-"))
            view.targetLanguageCode = target;
        QCOMPARE(view.reading(transliterator).value_or(QStringLiteral("-")), reading);
    }
};

QTEST_GUILESS_MAIN(TestHoverOverlayView)
#include "tst_HoverOverlayView.moc"
