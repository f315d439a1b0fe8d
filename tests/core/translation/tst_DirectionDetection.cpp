// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/DirectionDetection.h"
#include "core/translation/LanguageTable.h"
#include "core/translation/PartOfSpeech.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

namespace {

LanguageHypotheses hypotheses(const QString& dominant, double english, const QString& target, double other)
{
    LanguageHypotheses result;
    result.dominant = dominant;
    result.probability.insert(QStringLiteral("en"), english);
    result.probability.insert(target, other);
    return result;
}

// Remembers where it was asked to look.
class RecordingTagger final : public LexicalTagger
{
public:
    mutable QList<std::tuple<QString, qsizetype, qsizetype>> calls;
    std::optional<LexicalClass> answer = LexicalClass::noun;
    std::optional<LexicalClass> lexicalClass(const QString& sentence, qsizetype start, qsizetype length) const override
    {
        calls.append({sentence, start, length});
        return answer;
    }
};

} // namespace

class TestDirectionDetection : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void codesLabelsAndRecognitionLanguages()
    {
        QCOMPARE(labelCode(QStringLiteral("sv")), QStringLiteral("SV"));
        QCOMPARE(languageShortName(QStringLiteral("sv")), QStringLiteral("SV"));
        QCOMPARE(recognitionLanguages(QStringLiteral("sv")), QStringList({"en-US", "sv"}));
        QCOMPARE(recognitionLanguages(QStringLiteral("ja")), QStringList({"en-US"})); // an excluded script
        QCOMPARE(recognitionLanguages(QStringLiteral("pt")), QStringList({"en-US", "pt-BR"}));
        // Labels use the arrow with spaces.
        QCOMPARE(makeDirectionLabel(DetectedDirection::targetToEnglish, QStringLiteral("zh-Hans")),
                 QStringLiteral("ZH \u2192 EN"));
        QCOMPARE(makeDirectionLabel(QStringLiteral("fr")), QStringLiteral("EN \u2192 FR"));
        QCOMPARE(languagePair(DetectedDirection::targetToEnglish, QStringLiteral("fr")),
                 (LanguagePair{QStringLiteral("fr"), QStringLiteral("en")}));
    }

    void detectionTrustsOnlyConfidentTargetAnswers_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("dominant");
        QTest::addColumn<double>("targetProbability");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<DetectedDirection>("expected");
        const auto e2t = DetectedDirection::englishToTarget;
        const auto t2e = DetectedDirection::targetToEnglish;
        const QString sentence = QStringLiteral("Il pleut depuis trois jours.");
        const QString fr = QStringLiteral("fr");
        QTest::newRow("confident French") << fr << sentence << fr << 0.9 << true << t2e;
        QTest::newRow("exactly the threshold") << fr << sentence << fr << 0.6 << true << t2e;
        QTest::newRow("weak French") << fr << sentence << fr << 0.55 << true << e2t;
        QTest::newRow("not a number") << fr << sentence << fr << qQNaN() << true << e2t;
        QTest::newRow("no dominant language") << fr << sentence << QString() << 0.9 << true << e2t;
        QTest::newRow("dominant without a hypothesis") << fr << sentence << "de" << 0.9 << true << e2t;
        QTest::newRow("two letters padded") << fr << QStringLiteral("  le \n") << fr << 0.99 << false << e2t;
        QTest::newRow("two graphemes, many units")
            << fr << QStringLiteral("e\u0301e\u0301") << fr << 0.99 << false << e2t;
        QTest::newRow("excluded Japanese")
            << QStringLiteral("ja") << QStringLiteral("\u56F3\u66F8\u9928\u3067\u3059") << "ja" << 0.99 << false << e2t;
        QTest::newRow("excluded Korean") << QStringLiteral("ko") << QStringLiteral("\uD559\uAD50\uC5D0") << "ko" << 0.99
                                         << false << e2t;
    }

    void detectionTrustsOnlyConfidentTargetAnswers()
    {
        QFETCH(QString, target);
        QFETCH(QString, text);
        QFETCH(QString, dominant);
        QFETCH(double, targetProbability);
        QFETCH(bool, asked);
        QFETCH(DetectedDirection, expected);

        FakeLanguageRecognizer recognizer;
        LanguageHypotheses answer = hypotheses(dominant, 1.0 - targetProbability, target, targetProbability);
        if (dominant == QLatin1String("de"))
            answer.probability.remove(QStringLiteral("de"));
        recognizer.answers.insert(text.trimmed(), answer);

        QCOMPARE(detectDirection(text, target, recognizer), expected);
        QCOMPARE(!recognizer.queries.isEmpty(), asked);
        if (asked) {
            QCOMPARE(recognizer.queries.first().first, text.trimmed());
            QCOMPARE(recognizer.queries.first().second, QStringList({"en", target}));
        }
    }

    void hanTestCoversTheThreeBlocks()
    {
        QVERIFY(containsHanCharacters(QStringLiteral("a\u3400")));
        QVERIFY(containsHanCharacters(QString::fromUcs4(U"\U00020000")));
        QVERIFY(!containsHanCharacters(QStringLiteral("\u3068\u3057\u3087")));
        QVERIFY(!containsHanCharacters(QString::fromUcs4(U"\U0002FA20")));
    }

    void readingsComeOnlyForHanTextAndOnlyWhenNew()
    {
        FakeTransliterator transliterator;
        const QString library = QStringLiteral("\u56FE\u4E66\u9986");
        const QString japaneseLibrary = QStringLiteral("\u56F3\u66F8\u9928");
        transliterator.pinyinReadings.insert(library, QStringLiteral(" t\u00FA sh\u016B gu\u01CEn "));
        transliterator.hiraganaReadings.insert(japaneseLibrary, QStringLiteral("\u3068\u3057\u3087\u304B\u3093"));
        transliterator.hiraganaReadings.insert(QStringLiteral("\u3072\u3089"), QStringLiteral("\u3072\u3089"));
        transliterator.pinyinReadings.insert(QStringLiteral("\u4E2D"), QStringLiteral("\u4E2D"));

        QCOMPARE(pronunciationReading(library, QStringLiteral("zh-Hans"), transliterator),
                 QStringLiteral("t\u00FA sh\u016B gu\u01CEn"));
        QCOMPARE(pronunciationReading(japaneseLibrary, QStringLiteral("ja"), transliterator),
                 QStringLiteral("\u3068\u3057\u3087\u304B\u3093"));
        QCOMPARE(pronunciationReading(library, QStringLiteral("ko"), transliterator), std::nullopt);
        QCOMPARE(pronunciationReading(QStringLiteral("\u3072\u3089"), QStringLiteral("ja"), transliterator),
                 std::nullopt);
        QCOMPARE(pronunciationReading(QStringLiteral("\u4E2D"), QStringLiteral("zh-Hans"), transliterator),
                 std::nullopt);
    }

    void looksAtTheFirstCaseInsensitiveOccurrence()
    {
        RecordingTagger tagger;
        QCOMPARE(partOfSpeechOf(QStringLiteral("can"), QStringLiteral("Can I open the can?"), tagger),
                 QStringLiteral("n."));
        QCOMPARE(tagger.calls.size(), 1);
        QCOMPARE(std::get<1>(tagger.calls.first()), 0);
        QCOMPARE(std::get<2>(tagger.calls.first()), 3);

        // Without a sentence the word is tagged alone.
        tagger.answer = LexicalClass::determiner;
        QCOMPARE(partOfSpeechOf(QStringLiteral("every"), std::nullopt, tagger), QStringLiteral("det."));
        QCOMPARE(std::get<0>(tagger.calls.last()), QStringLiteral("every"));
    }

    void nothingWhenTheWordIsMissingOrHasNoClass()
    {
        RecordingTagger tagger;
        QCOMPARE(partOfSpeechOf(QStringLiteral("dog"), QStringLiteral("The cat sleeps."), tagger), std::nullopt);
        QVERIFY(tagger.calls.isEmpty());
        QCOMPARE(partOfSpeechOf(QString(), QStringLiteral("The cat sleeps."), tagger), std::nullopt);
        tagger.answer = std::nullopt;
        QCOMPARE(partOfSpeechOf(QStringLiteral("wow"), QStringLiteral("Wow!"), tagger), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestDirectionDetection)
#include "tst_DirectionDetection.moc"
