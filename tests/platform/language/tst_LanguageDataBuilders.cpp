// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/EnglishLexicon.h"
#include "platform/linux/language/LanguageModel.h"
#include "platform/linux/language/LanguageModelRecognizer.h"
#include "platform/linux/language/WordNetLexicalTagger.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;
using namespace tolvane::languagemodel;

class TestLanguageDataBuilders : public QObject
{
    Q_OBJECT
private:
    QTemporaryDir m_directory;

    QString write(const QString& name, const QByteArray& content)
    {
        QFile file(m_directory.filePath(name));
        if (!file.open(QIODevice::WriteOnly))
            return {};
        file.write(content);
        return file.fileName();
    }

    static int run(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        process.start(program, arguments);
        return process.waitForFinished(60000) ? process.exitCode() : -1;
    }

    // Two made-up languages: "hotel" is everyday in both, "blorf" and "zugwert" in one each.
    bool buildTwoLanguages()
    {
        const QString xaText = write("xa.txt", "blorf blorf hotel hotel hotel. blorfen ist gut, blorf hotel.\n");
        const QString xbText = write("xb.txt", "zugwert hotel hotel zugwert; das hotel zugwert Zugwert.\n");
        const QString xaIndex = write("xa.index", "00databaseinfo\tA\tb\nblorf\tA\tb\nhotel\tA\tb\nsnarp the\tA\tb\n");
        const QString xbIndex = write("xb.index", "hotel\tA\tb\nzugwert\tA\tb\n");
        return run(TOLVANE_LANGUAGE_MODEL_BUILDER, {"--output", m_directory.filePath("xa.langmodel"), "--corpus",
                                                    xaText, "--headwords", xaIndex}) == 0 &&
               run(TOLVANE_LANGUAGE_MODEL_BUILDER,
                   {"--output", m_directory.filePath("xb.langmodel"), "--corpus", xbText, "--headwords", xbIndex}) == 0;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_directory.isValid());
        QVERIFY(buildTwoLanguages());
    }

    void theModelKeepsCountsAndSourcesOfEachWord()
    {
        const auto model = LanguageModel::open(m_directory.filePath("xa.langmodel"));
        QVERIFY(model);
        const auto blorf = model->word(foldWord(u"Blorf"));
        QVERIFY(blorf);
        QCOMPARE(blorf->corpusCount, 3);
        QVERIFY(blorf->flags & inCorpus);
        QVERIFY(blorf->flags & isHeadword);
        QVERIFY(!model->word(foldWord(u"zugwert")));
        QVERIFY(!model->word(foldWord(u"snarp"))); // headwords of several words are left out
        // Letters seen in the language are likelier there than letters never seen.
        QVERIFY(model->characterLogLikelihood(foldWord(u"blorf")) > model->characterLogLikelihood(foldWord(u"qqxq")));
    }

    void endingsOfTheSpellingDictionaryReachInflectedForms()
    {
        const QString text = write("xc.txt", "le chat mange.\n");
        write("xc.aff", "SET UTF-8\nSFX A Y 2\nSFX A er ons/B er\nSFX A 0 s .\n");
        write("xc.dic", "2\nmanger/A\nchanter/A\n");
        const QString output = m_directory.filePath("xc.langmodel");
        QCOMPARE(run(TOLVANE_LANGUAGE_MODEL_BUILDER,
                     {"--output", output, "--corpus", text, "--dictionary", m_directory.filePath("xc")}),
                 0);
        const auto model = LanguageModel::open(output);
        QVERIFY(model);
        QVERIFY(model->word(foldWord(u"manger")));
        QVERIFY(model->isInflectionOfKnownWord(foldWord(u"Chantons")));
        QVERIFY(model->isInflectionOfKnownWord(foldWord(u"mangers")));
        QVERIFY(!model->isInflectionOfKnownWord(foldWord(u"chantoff")));
        QVERIFY(!model->isInflectionOfKnownWord(foldWord(u"dansons")));
        QVERIFY(!model->isInflectionOfKnownWord(QStringLiteral("ons")));
    }

    void accentsAndCaseFoldAway()
    {
        QCOMPARE(foldWord(u"Église"), QStringLiteral("eglise"));
        QCOMPARE(foldWord(u"Straße"), QStringLiteral("strasse"));
        QCOMPARE(foldWord(u"ЁЛКА"), QStringLiteral("елка"));
        QCOMPARE(foldWord(u"l’eau"), QStringLiteral("l'eau"));
        QStringList words;
        forEachWord(u"J'ai vu l’été, -- 42 fois!", [&](QStringView word) {
            words.append(word.toString());
            return true;
        });
        QCOMPARE(words, QStringList({"J'ai", "vu", "l’été", "fois"}));
    }

    void aWordEveryoneUsesAbstainsAndAWordOfOneLanguageDecides()
    {
        LanguageModelRecognizer recognizer(m_directory.path());
        const QStringList pair = {"xa", "xb"};
        const LanguageHypotheses shared = recognizer.recognize(QStringLiteral("hotel"), pair);
        QVERIFY(shared.probability.value("xa") <= 0.55 + 1e-9);
        QVERIFY(shared.probability.value("xb") <= 0.55 + 1e-9);
        QCOMPARE(recognizer.recognize(QStringLiteral("Blorf"), pair).dominant, QStringLiteral("xa"));
        QVERIFY(recognizer.recognize(QStringLiteral("zugwert"), pair).probability.value("xb") >= 0.6);
        // In a sentence the shared word does not hold the others back.
        QVERIFY(recognizer.recognize(QStringLiteral("hotel zugwert"), pair).probability.value("xb") >= 0.6);
    }

    void theLexiconCreditsIrregularFormsToTheirBase()
    {
        QDir().mkpath(m_directory.filePath("wordnet"));
        write("wordnet/index.noun", "  1 licence line\nsaw n 2 1 @ 2 1 04140064 03300000\nfoot_race n 1 0 1 0 1\n");
        write("wordnet/index.verb", "see v 24 3 @ ~ + 24 20 02129289\nsaw v 1 1 @ 1 0 01258000\n");
        write("wordnet/index.adj", "");
        write("wordnet/index.adv", "");
        write("wordnet/cntlist.rev", "see%2:39:00:: 1 500\nsaw%1:06:00:: 1 12\nsaw%2:35:00:: 1 2\n");
        write("wordnet/noun.exc", "");
        write("wordnet/verb.exc", "saw see\nseen see\n");
        write("wordnet/adj.exc", "");
        write("wordnet/adv.exc", "");
        const QString output = m_directory.filePath("en.lexicon");
        QCOMPARE(run(TOLVANE_ENGLISH_LEXICON_BUILDER, {m_directory.filePath("wordnet"), output}), 0);

        const auto lexicon = EnglishLexicon::open(output);
        QVERIFY(lexicon);
        const auto saw = lexicon->entry(QStringLiteral("saw"));
        QVERIFY(saw);
        QCOMPARE(saw->taggedUses[englishlexicon::noun], 12);
        QCOMPARE(saw->taggedUses[englishlexicon::verb], 502); // its own 2 and those of "see"
        QVERIFY(saw->flags & englishlexicon::irregularVerbForm);
        QVERIFY(saw->flags & englishlexicon::isLemma);
        const auto seen = lexicon->entry(QStringLiteral("seen"));
        QVERIFY(seen && !(seen->flags & englishlexicon::isLemma));
        QVERIFY(!lexicon->entry(QStringLiteral("foot_race")));

        // The verb reading wins after a subject pronoun even though the noun is the lemma here.
        const WordNetLexicalTagger tagger(output);
        QCOMPARE(tagger.lexicalClass(QStringLiteral("I saw it."), 2, 3), std::optional(LexicalClass::verb));
        QCOMPARE(tagger.lexicalClass(QStringLiteral("The saw is sharp."), 4, 3), std::optional(LexicalClass::noun));
    }

    void buildersRefuseMissingArguments()
    {
        QCOMPARE(run(TOLVANE_ENGLISH_LEXICON_BUILDER, {}), 2);
        QVERIFY(run(TOLVANE_LANGUAGE_MODEL_BUILDER, {}) != 0);
    }
};

QTEST_GUILESS_MAIN(TestLanguageDataBuilders)
#include "tst_LanguageDataBuilders.moc"
