// SPDX-License-Identifier: GPL-3.0-or-later
// The two cards drawn offscreen: every state within the size limits, text shown as text, hostile
// text clipped without stalling, the passage card's heights and scrolling. Every state is
// also saved as a picture under out/cards/ (light and dark, at device pixel ratios 1 and 2).
#include "core/overlay/HoverOverlayView.h"
#include "core/overlay/TranslationOverlayView.h"
#include "core/setup/Preferences.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"
#include "ui/AppearanceApplier.h"
#include "ui/overlay/HoverOverlayWindow.h"
#include "ui/overlay/TranslationOverlayWindow.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QImage>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

using namespace tolvane;
using State = HoverOverlayView::State;
Q_DECLARE_METATYPE(tolvane::HoverOverlayView)
Q_DECLARE_METATYPE(tolvane::TranslationOverlayView)

namespace {

const QString picturesDirectory = QStringLiteral(TOLVANE_SOURCE_DIR "/out/cards");

HoverOverlayView wordView(State state, std::optional<QString> label = QStringLiteral("EN → RU"))
{
    HoverOverlayView view;
    view.state = std::move(state);
    view.directionLabel = std::move(label);
    view.targetLanguageCode = QStringLiteral("ru");
    return view;
}

void savePictures(QWidget* card, const QString& name)
{
    QDir().mkpath(picturesDirectory);
    // Scroll bars and layouts settle in posted events, as they would before the card is painted.
    QCoreApplication::processEvents();
    for (const int ratio : {1, 2}) {
        QImage image(card->size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        card->render(&image);
        QVERIFY(image.save(QStringLiteral("%1/%2@%3x.png").arg(picturesDirectory, name).arg(ratio)));
    }
}

// Every label that shows text shows it as text, and every visible control has a name.
void verifyTextIsText(QWidget* card)
{
    for (const QLabel* label : card->findChildren<QLabel*>()) {
        QCOMPARE(label->textFormat(), Qt::PlainText);
        if (label->isVisibleTo(card))
            QVERIFY2(!label->accessibleName().isEmpty() || label->text().isEmpty(), qPrintable(label->text()));
    }
    for (const QAbstractButton* button : card->findChildren<QAbstractButton*>())
        QVERIFY(!button->accessibleName().isEmpty());
}

QStringList visibleTexts(QWidget* card)
{
    QStringList texts;
    for (const QLabel* label : card->findChildren<QLabel*>()) {
        if (label->isVisibleTo(card))
            texts.append(label->text());
    }
    return texts;
}

} // namespace

class TestOverlayCards : public QObject
{
    Q_OBJECT
    FakePlatform platform;
    FakeClock clock;
    FakeScheduler scheduler{&clock};
    std::unique_ptr<Preferences> preferences;

private Q_SLOTS:
    void initTestCase()
    {
        preferences = std::make_unique<Preferences>(*platform.services.preferences);
        platform.transliterator->pinyinReadings.insert(QStringLiteral("房子"), QStringLiteral("fángzi"));
        platform.transliterator->hiraganaReadings.insert(QStringLiteral("家"), QStringLiteral("いえ"));
    }

    void everyWordCardStateFitsItsLimitsAndShowsItsTexts_data()
    {
        QTest::addColumn<HoverOverlayView>("view");
        QTest::addColumn<QStringList>("texts"); // texts that must be on the card
        QTest::addColumn<QSizeF>("size");       // expected size; 0 for "within the limits"

        QTest::newRow("placeholder-empty")
            << wordView(State::placeholder({}), std::nullopt) << QStringList{"Hover tracking"} << QSizeF(240, 0);
        QTest::newRow("placeholder") << wordView(State::placeholder("house")) << QStringList{"Hover tracking", "house"}
                                     << QSizeF(240, 0);
        HoverOverlayView lookup = wordView(State::lookup("house", "дом", QStringLiteral("from the dictionary")));
        lookup.partOfSpeech = QStringLiteral("n.");
        lookup.onSpeak = [] {};
        QTest::newRow("lookup") << lookup << QStringList{"house", "n.", "дом", "from the dictionary"} << QSizeF(240, 0);
        QTest::newRow("unmatched") << wordView(State::unmatched("zyzzyva"))
                                   << QStringList{"zyzzyva", "No translation found"} << QSizeF(240, 0);
        QTest::newRow("ocrLookup") << wordView(State::ocrLookup("bread", "хлеб")) << QStringList{"bread", "хлеб"}
                                   << QSizeF(240, 0);
        QTest::newRow("ocrUnmatched") << wordView(State::ocrUnmatched("qwfp"))
                                      << QStringList{"qwfp", "No translation found"} << QSizeF(240, 0);
        QTest::newRow("translating") << wordView(State::translating("serendipity"))
                                     << QStringList{"serendipity", "Translating…"} << QSizeF(240, 0);
        QTest::newRow("noLabel") << wordView(State::noLabel()) << QStringList{"No accessible text label here"}
                                 << QSizeF(240, 0);

        HoverOverlayView example = wordView(State::liveLookup("book", "книга"));
        example.partOfSpeech = QStringLiteral("n.");
        example.onSpeak = [] {};
        example.exampleSentence = QStringLiteral(
            "I read the book yesterday on the train home, and then I read it again in the evening because the "
            "ending surprised me so much that I had to see how the author had prepared it from the first page on\n"
            "Я прочитал книгу вчера в поезде по дороге домой, а вечером перечитал её ещё раз, потому что концовка "
            "меня так удивила, что мне пришлось посмотреть, как автор подготовил её с первой страницы");
        QTest::newRow("liveLookup-example") << example << QStringList{"book", "книга"} << QSizeF(0, 0);

        HoverOverlayView chinese = wordView(State::liveLookup("house", "房子"), QStringLiteral("EN → ZH"));
        chinese.targetLanguageCode = QStringLiteral("zh-Hans");
        chinese.partOfSpeech = QStringLiteral("n.");
        chinese.onSpeak = [] {};
        chinese.exampleSentence = QStringLiteral("The house is old.\n这房子很旧。");
        QTest::newRow("liveLookup-zh") << chinese << QStringList{"房子", "fángzi", "这房子很旧。"} << QSizeF(240, 0);

        HoverOverlayView japanese = wordView(State::liveLookup("house", "家"), QStringLiteral("EN → JA"));
        japanese.targetLanguageCode = QStringLiteral("ja");
        japanese.onSpeak = [] {};
        QTest::newRow("liveLookup-ja") << japanese << QStringList{"家", "いえ"} << QSizeF(240, 0);

        HoverOverlayView wide = wordView(State::lookup(
            "house", "дом",
            QStringLiteral("a building for people to live in, usually for one family, with its own entrance, "
                           "kitchen, rooms for sleeping and often a small garden behind it")));
        QTest::newRow("lookup-long-context") << wide << QStringList{"дом"} << QSizeF(420, 0);
    }
    void everyWordCardStateFitsItsLimitsAndShowsItsTexts()
    {
        QFETCH(HoverOverlayView, view);
        QFETCH(QStringList, texts);
        QFETCH(QSizeF, size);
        for (const bool dark : {false, true}) {
            QApplication::setPalette(dark ? AppearanceApplier::darkPalette() : AppearanceApplier::lightPalette());
            HoverOverlayWindow window(*platform.screens, *platform.transliterator);
            window.update(view);
            QWidget* card = window.widget();
            const QSizeF frame = window.frame().size();
            QVERIFY2(frame.width() >= 240 && frame.width() <= 420 && frame.height() <= 360,
                     qPrintable(QStringLiteral("%1 × %2").arg(frame.width()).arg(frame.height())));
            if (size.width() > 0)
                QCOMPARE(frame.width(), size.width());
            const QStringList shown = visibleTexts(card);
            for (const QString& text : texts)
                QVERIFY2(shown.contains(text), qPrintable(text + " not in " + shown.join(" | ")));
            verifyTextIsText(card);
            savePictures(card, QStringLiteral("word-%1-%2").arg(QTest::currentDataTag(), dark ? "dark" : "light"));
        }
        QApplication::setPalette(AppearanceApplier::lightPalette());
    }

    void hostileTextIsShownLiterallyAndClippedByTheCard_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shownStart"); // what the card's label starts with
        QTest::newRow("10 000-character word") << QString(10000, QLatin1Char('w')) << QString(50, QLatin1Char('w'));
        QString megabyte;
        megabyte.reserve(1 << 20);
        while (megabyte.size() < (1 << 20))
            megabyte += QStringLiteral("a sentence that never ends ");
        QTest::newRow("1 MB sentence") << megabyte << QStringLiteral("a sentence that never ends");
        QTest::newRow("markup") << QStringLiteral("<b>bold</b> &amp; <img src=x>")
                                << QStringLiteral("<b>bold</b> &amp;");
        QTest::newRow("bidi controls") << QStringLiteral("\u202Eevil\u202C \u2067word\u2069")
                                       << QStringLiteral("\u202Eevil\u202C");
        QTest::newRow("lone surrogates") << QStringLiteral("a") + QChar(0xD800) + QStringLiteral("b") + QChar(0xDC00)
                                         << QStringLiteral("a\uFFFDb\uFFFD");
    }
    void hostileTextIsShownLiterallyAndClippedByTheCard()
    {
        QFETCH(QString, text);
        QFETCH(QString, shownStart);
        HoverOverlayWindow word(*platform.screens, *platform.transliterator);
        HoverOverlayView view = wordView(State::liveLookup(text, text, text));
        view.exampleSentence = text + QLatin1Char('\n') + text;
        view.partOfSpeech = text;
        word.update(view);
        QVERIFY(word.frame().width() <= 420 && word.frame().height() <= 360);
        QVERIFY(std::ranges::any_of(visibleTexts(word.widget()),
                                    [&](const QString& t) { return t.startsWith(shownStart); }));
        savePictures(word.widget(), QStringLiteral("word-hostile-%1").arg(QTest::currentDataTag()).replace(' ', '-'));
        word.update(wordView(State::translating(text)));
        QVERIFY(word.frame().height() <= 360);

        TranslationOverlayWindow passage(*platform.screens, *preferences, clock, scheduler, *platform.eventMonitor);
        passage.show(TranslationOverlayView{text, text, text, text, true, text});
        QVERIFY(passage.frame().height() <= 400 && passage.frame().width() == 420);
        QVERIFY(std::ranges::any_of(visibleTexts(passage.widget()),
                                    [&](const QString& t) { return t.startsWith(shownStart); }));
        verifyTextIsText(passage.widget());
        savePictures(passage.widget(),
                     QStringLiteral("passage-hostile-%1").arg(QTest::currentDataTag()).replace(' ', '-'));
        passage.dismiss();
    }

    void passageCardIsBetweenItsHeightsAndScrollsALongPassage_data()
    {
        QTest::addColumn<TranslationOverlayView>("view");
        QTest::addColumn<double>("height");
        QTest::addColumn<bool>("scrolls");
        const QString longText =
            QStringLiteral("The committee met on Tuesday to discuss the proposal for the new library, "
                           "and after a long debate it agreed to ask the city for more money. ")
                .repeated(8);
        QTest::newRow("one-line") << TranslationOverlayView{"Hello.", "Привет.", {}, {}, true, "EN → RU"} << 80.0
                                  << false;
        QTest::newRow("long-passage")
            << TranslationOverlayView{longText, longText, QStringLiteral("Apertium"), QStringLiteral("Live"),
                                      true,     "EN → RU"}
            << 400.0 << true;
        QTest::newRow("word") << TranslationOverlayView{"house", "дом", {}, QStringLiteral("Live"), false, "EN → RU"}
                              << 112.0 << false;
        QTest::newRow("passage-zh") << TranslationOverlayView{"The house is old and the garden is large.",
                                                              "房子很旧，花园很大。",
                                                              {},
                                                              {},
                                                              true,
                                                              "EN → ZH"}
                                    << 0.0 << false;
    }
    void passageCardIsBetweenItsHeightsAndScrollsALongPassage()
    {
        QFETCH(TranslationOverlayView, view);
        QFETCH(double, height);
        QFETCH(bool, scrolls);
        for (const bool dark : {false, true}) {
            QApplication::setPalette(dark ? AppearanceApplier::darkPalette() : AppearanceApplier::lightPalette());
            TranslationOverlayWindow window(*platform.screens, *preferences, clock, scheduler, *platform.eventMonitor);
            window.show(view);
            QCOMPARE(window.frame().width(), 420.0);
            if (height > 0)
                QCOMPARE(window.frame().height(), height);
            QCOMPARE(window.fittingHeight(view), window.frame().height());
            auto* scroll = window.widget()->findChild<QScrollArea*>();
            QVERIFY(scroll);
            QCOMPARE(scroll->verticalScrollBar()->maximum() > 0, scrolls);
            verifyTextIsText(window.widget());
            savePictures(window.widget(),
                         QStringLiteral("passage-%1-%2").arg(QTest::currentDataTag(), dark ? "dark" : "light"));
            window.dismiss();
        }
        QApplication::setPalette(AppearanceApplier::lightPalette());
    }
};

QTEST_MAIN(TestOverlayCards)
#include "tst_OverlayCards.moc"
