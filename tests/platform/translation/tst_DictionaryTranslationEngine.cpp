// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestDictionaries.h"
#include "platform/linux/translation/DictionaryFile.h"
#include "platform/linux/translation/DictionaryTranslationEngine.h"
#include "platform/linux/translation/Lemmatizer.h"

#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

using namespace tolvane::testing;

class TestDictionaryTranslationEngine final : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QVERIFY(writeFile(m_dir.filePath(QStringLiteral("en-ru.tdict")),
                          buildDictionary(
                              {
                                  {"go", "n\tго (игра)\nv\tидти|ходить|ехать"},
                                  {"went", ">go\tv"},
                                  {"house", "n\tдом|жилище|здание|семья"},
                                  {"loop", ">loop"},
                                  {"the", "det\t"},
                                  {"big", "adj\tбольшой"},
                              },
                              "direction: en-ru\nsource: test data; licence GPL-3.0-or-later")));
        QVERIFY(
            writeFile(m_dir.filePath(QStringLiteral("de-en.tdict")), buildDictionary({{"Haus", "n\thouse|home"},
                                                                                      {"Kleine", "n\tlittle one"},
                                                                                      {"klein", "adj\tsmall|little"},
                                                                                      {"sein", "v\tbe"},
                                                                                      {"bin", "n\tbin"},
                                                                                      {"Tag", "n\tday"},
                                                                                      {"gehen", "v\tgo|walk"}})));
        QVERIFY(
            writeFile(m_dir.filePath(QStringLiteral("zh-en.tdict")),
                      buildDictionary(
                          {{"我", "pron\tI|me"}, {"吃", "v\teat"}, {"苹果", "n\tapple"}, {"苹", "n\tapple (bound)"}})));
        QVERIFY(writeFile(
            m_dir.filePath(QStringLiteral("ko-en.tdict")),
            buildDictionary(
                {{"먹다", "v\teat"}, {"책", "n\tbook"}, {"높다", "adj\thigh|tall"}, {"공부하다", "v\tstudy"}})));
    }

    void wordsAreFoundByFormCaseAndLemma()
    {
        DictionaryTranslationEngine engine({m_dir.path()});
        QCOMPARE(engine.translate(QStringLiteral("house"), QStringLiteral("en"), QStringLiteral("ru")).value(),
                 QStringLiteral("дом, жилище, здание")); // at most three translations
        QCOMPARE(engine.translate(QStringLiteral("HOUSE"), QStringLiteral("en"), QStringLiteral("ru")).value(),
                 QStringLiteral("дом, жилище, здание"));
        // A past tense links to its lemma and names the class, so the verb wins over the game.
        auto went = engine.lookUpWord(QStringLiteral("went"), QStringLiteral("en"), QStringLiteral("ru"));
        QVERIFY(went.ok());
        QCOMPARE(went.value().lemma, QStringLiteral("go"));
        QCOMPARE(went.value().lexicalClass, QStringLiteral("v"));
        QCOMPARE(went.value().gloss(), QStringLiteral("идти, ходить, ехать"));
        QCOMPARE(went.value().word, QStringLiteral("went"));
        // Regular endings come off when the dictionary has the result.
        QCOMPARE(engine.lookUpWord(QStringLiteral("houses"), QStringLiteral("en"), QStringLiteral("ru")).value().lemma,
                 QStringLiteral("house"));
        // German: irregular forms beat look-alike headwords; nouns are found without their capital.
        QCOMPARE(engine.translate(QStringLiteral("bin"), QStringLiteral("de"), QStringLiteral("en")).value(),
                 QStringLiteral("be"));
        QCOMPARE(engine.translate(QStringLiteral("haus"), QStringLiteral("de"), QStringLiteral("en")).value(),
                 QStringLiteral("house, home"));
        QCOMPARE(engine.translate(QStringLiteral("Tage"), QStringLiteral("de"), QStringLiteral("en")).value(),
                 QStringLiteral("day"));
        // Lower case in German: an inflected adjective before a noun that looks the same.
        QCOMPARE(engine.translate(QStringLiteral("kleine"), QStringLiteral("de"), QStringLiteral("en")).value(),
                 QStringLiteral("small, little"));
        QCOMPARE(engine.translate(QStringLiteral("Kleine"), QStringLiteral("de"), QStringLiteral("en")).value(),
                 QStringLiteral("little one"));
        // Korean endings and particles.
        QCOMPARE(engine.translate(QStringLiteral("먹었어요"), QStringLiteral("ko"), QStringLiteral("en")).value(),
                 QStringLiteral("eat"));
        QCOMPARE(engine.translate(QStringLiteral("책을"), QStringLiteral("ko"), QStringLiteral("en")).value(),
                 QStringLiteral("book"));
        QCOMPARE(engine.translate(QStringLiteral("높습니다"), QStringLiteral("ko"), QStringLiteral("en")).value(),
                 QStringLiteral("high, tall"));
        QCOMPARE(engine.translate(QStringLiteral("공부해요"), QStringLiteral("ko"), QStringLiteral("en")).value(),
                 QStringLiteral("study"));
    }

    void passagesAreGlossedWordByWordKeepingUnknownWords()
    {
        DictionaryTranslationEngine engine({m_dir.path()});
        QCOMPARE(engine.translate(QStringLiteral("The big house, Zorg!"), QStringLiteral("en"), QStringLiteral("ru"))
                     .value(),
                 QStringLiteral("большой дом, Zorg!")); // Russian has no articles to carry "The" into

        // Chinese has no spaces: the longest headword wins at each position.
        QCOMPARE(engine.translate(QStringLiteral("我吃苹果。"), QStringLiteral("zh"), QStringLiteral("en")).value(),
                 QStringLiteral("I eat apple。"));
    }

    void badInputGivesAClearErrorAndNeverHangs()
    {
        DictionaryTranslationEngine engine({m_dir.path()});
        const QString en = QStringLiteral("en"), ru = QStringLiteral("ru");
        QCOMPARE(engine.translate(QStringLiteral("  \n"), en, ru).error().message,
                 QStringLiteral("There is no text to translate."));
        QVERIFY(!engine.translate(QStringLiteral("?!… — ;"), en, ru).ok());
        QVERIFY(!engine.translate(QStringLiteral("zzzq"), en, ru).ok());
        // A link that points at itself is followed once, not forever.
        QVERIFY(!engine.translate(QStringLiteral("loop"), en, ru).ok());
        // 100 kB of text: cut to what a card can show, glossed without trouble.
        const QString big = QStringLiteral("house ").repeated(17000);
        auto long_ = engine.translate(big, en, ru);
        QVERIFY(long_.ok());
        QVERIFY(long_.value().startsWith(QStringLiteral("дом дом")));
        QVERIFY(long_.value().size() < big.size());
        // Mixed scripts: what is known is glossed, the rest kept.
        QCOMPARE(engine.translate(QStringLiteral("house 我"), en, ru).value(), QStringLiteral("дом 我"));
        // A language Tolvane does not know.
        QCOMPARE(engine.translate(QStringLiteral("hus"), QStringLiteral("sv"), en).error().message,
                 QStringLiteral("Tolvane cannot translate from SV to English."));
        QCOMPARE(engine.availability(QStringLiteral("sv"), en), LanguageAvailability::unsupported);
    }

    void aMissingPairSaysHowToInstallIt()
    {
        DictionaryTranslationEngine engine({m_dir.path()});
        QCOMPARE(engine.availability(QStringLiteral("en"), QStringLiteral("ko")), LanguageAvailability::supported);
        QCOMPARE(engine.availability(QStringLiteral("en"), QStringLiteral("ru")), LanguageAvailability::installed);
        const auto prepared = engine.prepare(QStringLiteral("en"), QStringLiteral("ko"));
        QVERIFY(!prepared.ok());
        QCOMPARE(prepared.error().message,
                 QStringLiteral("The English → Korean dictionary is not installed. Run scripts/setup."));
        QCOMPARE(engine.prepare(QStringLiteral("en"), QStringLiteral("zh-Hans")).error().message,
                 QStringLiteral("The English → Chinese dictionary is not installed. Run scripts/setup."));
        QVERIFY(engine.prepare(QStringLiteral("en"), QStringLiteral("ru")).ok());
    }

    void damagedFilesAreRefused()
    {
        const QByteArray good = buildDictionary({{"a", "n\tx"}, {"b", "n\ty"}});
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("en-fr.tdict"));

        QVERIFY(writeFile(path, good));
        auto opened = DictionaryFile::open(path);
        QVERIFY(opened.ok());
        QCOMPARE(opened.value()->entryCount(), 2u);
        QCOMPARE(opened.value()->metadata(QStringLiteral("direction")), QStringList{QStringLiteral("xx-yy")});

        for (int cut : {0, 10, 31, 40, int(good.size()) - 3}) {
            QVERIFY(writeFile(path, good.left(cut)));
            QVERIFY2(!DictionaryFile::open(path).ok(), qPrintable(QString::number(cut)));
        }
        QByteArray wrongMagic = good;
        wrongMagic[0] = 'X';
        QVERIFY(writeFile(path, wrongMagic));
        QVERIFY(DictionaryFile::open(path).error().message.contains(QLatin1String("damaged")));
        QByteArray pointsOutside = good;
        pointsOutside[32 + 4] = char(0x7F); // the first key's length
        QVERIFY(writeFile(path, pointsOutside));
        QVERIFY(!DictionaryFile::open(path).ok());
        QByteArray unsorted = good;
        unsorted.replace(32, 32, good.mid(48, 16) + good.mid(32, 16)); // the two index records swapped
        QVERIFY(writeFile(path, unsorted));
        QVERIFY(!DictionaryFile::open(path).ok());

        // The engine turns a damaged file into an error value on prepare.
        QVERIFY(writeFile(path, good.left(20)));
        DictionaryTranslationEngine engine({dir.path()});
        QVERIFY(engine.prepare(QStringLiteral("en"), QStringLiteral("fr"))
                    .error()
                    .message.contains(QLatin1String("scripts/setup")));
    }

    void lemmaGuessesForEachLanguage()
    {
        QVERIFY(Lemmatizer::guesses(QStringLiteral("running"), QStringLiteral("en")).contains(QStringLiteral("run")));
        QVERIFY(Lemmatizer::guesses(QStringLiteral("stopped"), QStringLiteral("en")).contains(QStringLiteral("stop")));
        QVERIFY(Lemmatizer::guesses(QStringLiteral("cities"), QStringLiteral("en")).contains(QStringLiteral("city")));
        QVERIFY(
            Lemmatizer::guesses(QStringLiteral("gemacht"), QStringLiteral("de")).contains(QStringLiteral("machen")));
        QCOMPARE(Lemmatizer::irregularLemma(QStringLiteral("ging"), QStringLiteral("de")), QStringLiteral("gehen"));
        QVERIFY(Lemmatizer::irregularLemma(QStringLiteral("ging"), QStringLiteral("en")).isEmpty());
        QVERIFY(Lemmatizer::guesses(QStringLiteral("吃了"), QStringLiteral("zh")).contains(QStringLiteral("吃")));
        QVERIFY(Lemmatizer::guesses(QStringLiteral("читает"), QStringLiteral("ru")).contains(QStringLiteral("читать")));
        QVERIFY(Lemmatizer::guesses(QStringLiteral("книгами"), QStringLiteral("ru")).contains(QStringLiteral("книга")));
        QVERIFY(
            Lemmatizer::guesses(QStringLiteral("красивая"), QStringLiteral("ru")).contains(QStringLiteral("красивый")));
        QVERIFY(Lemmatizer::guesses(QStringLiteral("갑니다"), QStringLiteral("ko")).contains(QStringLiteral("가다")));
        QVERIFY(Lemmatizer::guesses(QString(), QStringLiteral("ko")).isEmpty());
        // Contracted and past-tense Korean forms open up to their dictionary form.
        const QList<QPair<const char*, const char*>> korean = {
            {"갔어요", "가다"},   {"봐요", "보다"},       {"마셨어요", "마시다"},
            {"했어요", "하다"},   {"먹었습니다", "먹다"}, {"써요", "쓰다"},
            {"배워요", "배우다"}, {"좋아요", "좋다"},     {"읽고", "읽다"}};
        for (const auto& [form, lemma] : korean) {
            QVERIFY2(
                Lemmatizer::guesses(QString::fromUtf8(form), QStringLiteral("ko")).contains(QString::fromUtf8(lemma)),
                form);
        }
    }
};

QTEST_GUILESS_MAIN(TestDictionaryTranslationEngine)
#include "tst_DictionaryTranslationEngine.moc"
