// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/PartOfSpeech.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

namespace {

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

class TestPartOfSpeech : public QObject
{
    Q_OBJECT
private Q_SLOTS:
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

QTEST_GUILESS_MAIN(TestPartOfSpeech)
#include "tst_PartOfSpeech.moc"
