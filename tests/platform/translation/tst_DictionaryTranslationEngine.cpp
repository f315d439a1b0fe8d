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
                                  {"not", "part\tне"},
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
        // A past tense links to its lemma and names the class, so the verb wins over the game.
        auto went = engine.lookUpWord(QStringLiteral("went"), QStringLiteral("en"), QStringLiteral("ru"));
        QVERIFY(went.ok());
        QCOMPARE(went.value().lemma, QStringLiteral("go"));
        QCOMPARE(went.value().lexicalClass, QStringLiteral("v"));
        QCOMPARE(went.value().gloss(), QStringLiteral("идти, ходить, ехать"));
        QCOMPARE(went.value().word, QStringLiteral("went"));
        const QList<std::tuple<const char*, const char*, const char*>> cases = {
            {"house", "en", "дом, жилище, здание"}, // at most three translations
            {"HOUSE", "en", "дом, жилище, здание"},
            {"houses", "en", "дом, жилище, здание"}, // regular endings come off
            // German: irregular forms beat look-alike headwords; nouns are found without their
            // capital; lower case is an inflected adjective before a noun that looks the same.
            {"bin", "de", "be"},
            {"haus", "de", "house, home"},
            {"Tage", "de", "day"},
            {"kleine", "de", "small, little"},
            {"Kleine", "de", "little one"},
            // Korean endings and particles.
            {"먹었어요", "ko", "eat"},
            {"책을", "ko", "book"},
            {"높습니다", "ko", "high, tall"},
            {"공부해요", "ko", "study"},
            // Korean typed as separate jamo (ㅊ ㅐ ㄱ) is composed before the look-up.
            {"\u110E\u1162\u11A8\u110B\u1173\u11AF", "ko", "book"}};
        for (const auto& [word, from, expected] : cases) {
            const QString source = QString::fromUtf8(from);
            const auto translated =
                engine.translate(QString::fromUtf8(word), source,
                                 source == QLatin1String("en") ? QStringLiteral("ru") : QStringLiteral("en"));
            QVERIFY2(translated.ok(), word);
            QCOMPARE(translated.value(), QString::fromUtf8(expected));
        }
    }

    void passagesAreGlossedAsContentWordsWithTheirOriginals()
    {
        DictionaryTranslationEngine engine({m_dir.path()});
        const QList<std::tuple<const char*, const char*, const char*>> cases = {
            // Articles, punctuation inside a sentence and the copula go; unknown words stay.
            {"The big house, Zorg!", "en", "большой (big) · дом (house) · Zorg!"},
            {"The house isn't big", "en", "дом (house) · не (not) · большой (big)"}, // the negation stays
            {"Das kleine Haus ist alt. Der Tag", "de", "small (kleine) · house (Haus) · alt. day (Tag)"},
            // Chinese has no spaces: the longest headword wins at each position.
            {"我吃苹果。", "zh", "I (我) · eat (吃) · apple (苹果)。"},
            // Mixed scripts: what is known is glossed, the rest kept.
            {"house 我", "en", "дом (house) · 我"}};
        for (const auto& [text, from, expected] : cases) {
            const QString source = QString::fromUtf8(from);
            const auto glossed =
                engine.translate(QString::fromUtf8(text), source,
                                 source == QLatin1String("en") ? QStringLiteral("ru") : QStringLiteral("en"));
            QVERIFY2(glossed.ok(), text);
            QCOMPARE(glossed.value(), QString::fromUtf8(expected));
        }
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
        QVERIFY(long_.value().startsWith(QStringLiteral("дом (house) · дом (house)")));
        QVERIFY(long_.value().size() < big.size());
        // Mixed scripts and stray jamo inside one word: an answer or an error, never a crash.
        for (const char* odd : {"책book", "ㅊㅐㄱ", "\u1100\u1100\u1100", "먹\u1161다"})
            Q_UNUSED(engine.translate(QString::fromUtf8(odd), QStringLiteral("ko"), en));
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
        QCOMPARE(Lemmatizer::irregularLemma(QStringLiteral("ging"), QStringLiteral("de")), QStringLiteral("gehen"));
        QVERIFY(Lemmatizer::irregularLemma(QStringLiteral("ging"), QStringLiteral("en")).isEmpty());
        QVERIFY(Lemmatizer::guesses(QString(), QStringLiteral("ko")).isEmpty());
        // Korean contracted and past-tense forms open up to their dictionary form too.
        const QList<std::tuple<const char*, const char*, const char*>> cases = {
            {"running", "en", "run"},
            {"stopped", "en", "stop"},
            {"cities", "en", "city"},
            {"gemacht", "de", "machen"},
            {"吃了", "zh", "吃"},
            {"читает", "ru", "читать"},
            {"книгами", "ru", "книга"},
            {"красивая", "ru", "красивый"},
            {"갑니다", "ko", "가다"},
            {"갔어요", "ko", "가다"},
            {"봐요", "ko", "보다"},
            {"마셨어요", "ko", "마시다"},
            {"했어요", "ko", "하다"},
            {"먹었습니다", "ko", "먹다"},
            {"써요", "ko", "쓰다"},
            {"배워요", "ko", "배우다"},
            {"좋아요", "ko", "좋다"},
            {"읽고", "ko", "읽다"},
            // Adjectives before a noun: -ㄴ, ㄹ dropped before it, and ㅂ turned into 우.
            {"큰", "ko", "크다"},
            {"조용한", "ko", "조용하다"},
            {"긴", "ko", "길다"},
            {"뜨거운", "ko", "뜨겁다"},
            {"어려운", "ko", "어렵다"},
            {"빠른", "ko", "빠르다"},
            {"아이들이", "ko", "아이"},
            // Irregular stems: ㅂ, 르, ㅎ, ㄷ, ㅅ and a dropped ㄹ; the copula and honorific particles.
            {"추워요", "ko", "춥다"},
            {"추웠어요", "ko", "춥다"},
            {"도와요", "ko", "돕다"},
            {"몰라요", "ko", "모르다"},
            {"불렀어요", "ko", "부르다"},
            {"빨간", "ko", "빨갛다"},
            {"그랬어요", "ko", "그렇다"},
            {"걸어요", "ko", "걷다"},
            {"지어요", "ko", "짓다"},
            {"아는", "ko", "알다"},
            {"학생이에요", "ko", "학생"},
            {"선생님께", "ko", "선생님"}};
        for (const auto& [form, language, lemma] : cases) {
            QVERIFY2(Lemmatizer::guesses(QString::fromUtf8(form), QString::fromUtf8(language))
                         .contains(QString::fromUtf8(lemma)),
                     form);
        }
    }
};

QTEST_GUILESS_MAIN(TestDictionaryTranslationEngine)
#include "tst_DictionaryTranslationEngine.moc"
