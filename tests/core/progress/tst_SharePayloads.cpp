// SPDX-License-Identifier: GPL-3.0-or-later
// What a share says: the message, the picture's texts, the language a card is shared under and
// the sizes its headline and body are drawn at.
#include "core/progress/SharePayloads.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

namespace {

ReviewCard card(const QString& source, const QString& translation, std::optional<QString> target,
                std::optional<DetectedDirection> direction = DetectedDirection::englishToTarget)
{
    ReviewCard c;
    c.sourceText = source;
    c.translation = translation;
    c.targetLanguage = std::move(target);
    c.direction = direction;
    return c;
}

using OptionalCode = std::optional<QString>;

} // namespace

Q_DECLARE_METATYPE(tolvane::ReviewCard)
Q_DECLARE_METATYPE(OptionalCode)

class TestSharePayloads : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void headlineAndBodySizesChangeAtNineteenAndFortyOneUserPerceivedCharacters_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("headline");
        QTest::addColumn<int>("body");
        QTest::newRow("18") << QString(18, u'a') << 94 << 42;
        QTest::newRow("19") << QString(19, u'a') << 68 << 42;
        QTest::newRow("40") << QString(40, u'a') << 68 << 42;
        QTest::newRow("41") << QString(41, u'a') << 68 << 32;
        // 18 flags are 36 code points and 72 code units, still 18 characters to the eye.
        QString flags;
        for (int i = 0; i < 18; ++i)
            flags += QStringLiteral("\U0001F1EB\U0001F1F7");
        QTest::newRow("18 flags") << flags << 94 << 42;
        QString accented;
        for (int i = 0; i < 40; ++i)
            accented += QStringLiteral("e\u0301");
        QTest::newRow("40 combined accents") << accented << 68 << 42;
        QTest::newRow("empty") << QString() << 94 << 42;
    }
    void headlineAndBodySizesChangeAtNineteenAndFortyOneUserPerceivedCharacters()
    {
        QFETCH(QString, text);
        QFETCH(int, headline);
        QFETCH(int, body);
        QCOMPARE(shareHeadlinePointSize(text), headline);
        QCOMPARE(shareBodyPointSize(text), body);
    }

    void cardLanguageIsItsOwnOrGuessedFromScriptThenRecogniser_data()
    {
        QTest::addColumn<ReviewCard>("card");
        QTest::addColumn<OptionalCode>("expected");
        QTest::newRow("own, trimmed") << card("house", "maison", QStringLiteral(" fr\n")) << OptionalCode("fr");
        QTest::newRow("blank own falls to script") << card("house", "дом", QStringLiteral("  ")) << OptionalCode("ru");
        QTest::newRow("Cyrillic translation") << card("house", "дом", std::nullopt) << OptionalCode("ru");
        QTest::newRow("Cyrillic supplement") << card("x", "\u0510\u0511", std::nullopt) << OptionalCode("ru");
        QTest::newRow("Hangul") << card("house", "집집", std::nullopt) << OptionalCode("ko");
        QTest::newRow("kana among Han") << card("eat", "食べる", std::nullopt) << OptionalCode("ja");
        QTest::newRow("no direction reads the translation")
            << card("house", "дом", std::nullopt, std::nullopt) << OptionalCode("ru");
        QTest::newRow("from target reads the source")
            << card("дом", "house", std::nullopt, DetectedDirection::targetToEnglish) << OptionalCode("ru");
        QTest::newRow("one letter") << card("a", "я", std::nullopt) << OptionalCode();
        QTest::newRow("one letter after trimming") << card("a", " я \n", std::nullopt) << OptionalCode();
        QTest::newRow("recogniser: Spanish") << card("house", "casa", std::nullopt) << OptionalCode("es");
        QTest::newRow("recogniser: Chinese") << card("water", "水水", std::nullopt) << OptionalCode("zh-Hans");
        QTest::newRow("recogniser: outside the table") << card("hi", "hallo", std::nullopt) << OptionalCode();
    }
    void cardLanguageIsItsOwnOrGuessedFromScriptThenRecogniser()
    {
        QFETCH(ReviewCard, card);
        FakeLanguageRecognizer recognizer;
        recognizer.answers.insert(QStringLiteral("casa"), {QStringLiteral("es"), {}});
        recognizer.answers.insert(QStringLiteral("水水"), {QStringLiteral("zh"), {}});
        recognizer.answers.insert(QStringLiteral("hallo"), {QStringLiteral("nl"), {}});
        QFETCH(OptionalCode, expected);
        QCOMPARE(cardTargetLanguageCode(card, &recognizer), expected);
        if (!recognizer.queries.isEmpty())
            QCOMPARE(recognizer.queries.first().second.size(), 9);
    }

    void flashcardMessageAndPictureNameTheLanguage_data()
    {
        QTest::addColumn<ReviewCard>("card");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("eyebrow");
        const QString tail =
            QStringLiteral("\nLearn with me as you use your computer with Tolvane.\nhttps://tolvane.app");
        QTest::newRow("Russian by script")
            << card("house", "дом", std::nullopt)
            << QStringLiteral("Did you know \u201Chouse\u201D in Russian is \u201Cдом\u201D?") + tail
            << QStringLiteral("RUSSIAN · TOLVANE");
        QTest::newRow("from target is always English")
            << card("Haus", "house", QStringLiteral("de"), DetectedDirection::targetToEnglish)
            << QStringLiteral("Did you know \u201CHaus\u201D in English is \u201Chouse\u201D?") + tail
            << QStringLiteral("ENGLISH · TOLVANE");
        QTest::newRow("no language found")
            << card("a", "b", std::nullopt)
            << QStringLiteral("Did you know \u201Ca\u201D translates to \u201Cb\u201D?") + tail
            << QStringLiteral("TRANSLATION · TOLVANE");
        // The learner's words are never taken for the platform's name.
        QTest::newRow("user text kept as typed")
            << card("Mac", "<b>Mac</b>", QStringLiteral("fr"))
            << QStringLiteral("Did you know \u201CMac\u201D in French is \u201C<b>Mac</b>\u201D?") + tail
            << QStringLiteral("FRENCH · TOLVANE");
    }
    void flashcardMessageAndPictureNameTheLanguage()
    {
        QFETCH(ReviewCard, card);
        QFETCH(QString, text);
        QFETCH(QString, eyebrow);
        const ShareContent content = flashcardShareContent(card, nullptr);
        QCOMPARE(content.text, text);
        QCOMPARE(content.picture, (SharePictureTexts{eyebrow, card.sourceText, card.translation,
                                                     QStringLiteral("Learn a language as you use your computer · "
                                                                    "tolvane.app")}));
    }

    void milestoneAndApplicationSharesSayTheirOwnWords()
    {
        const LookupMilestone milestone{1000, QStringLiteral("Haus"), QStringLiteral("house"), QStringLiteral("de"),
                                        DetectedDirection::targetToEnglish};
        const ShareContent reached = milestoneShareContent(milestone, QLocale(QLocale::English, QLocale::UnitedStates));
        QCOMPARE(reached.text,
                 QStringLiteral("I just reached 1,000 lookups with Tolvane!\nDid you know \u201CHaus\u201D "
                                "in English is \u201Chouse\u201D?\nLearn with me as you use your "
                                "computer with Tolvane.\nhttps://tolvane.app"));
        QCOMPARE(reached.picture,
                 (SharePictureTexts{QStringLiteral("LOOKUP MILESTONE · TOLVANE"), QStringLiteral("1,000"),
                                    QStringLiteral("LOOKUPS\nHaus → house"),
                                    QStringLiteral("Learn with me as you use your computer · tolvane.app")}));
        const ShareContent app = appShareContent();
        QCOMPARE(app.text,
                 QStringLiteral("Learn a language as you use your computer with Tolvane. https://tolvane.app"));
        QCOMPARE(app.picture,
                 (SharePictureTexts{QStringLiteral("TOLVANE FOR LINUX"), QStringLiteral("Learn as you go."),
                                    QStringLiteral("Translate words anywhere on your computer."),
                                    QStringLiteral("Build fluency in the moments between · tolvane.app")}));
    }
};

QTEST_GUILESS_MAIN(TestSharePayloads)
#include "tst_SharePayloads.moc"
