// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/WordNetLexicalTagger.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

std::optional<LexicalClass> classOf(const LexicalTagger& tagger, const QString& sentence, const QString& word)
{
    const qsizetype at = sentence.indexOf(word);
    return tagger.lexicalClass(sentence, at, word.size());
}

} // namespace

class TestWordNetLexicalTagger : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(!WordNetLexicalTagger::defaultLexiconPath().isEmpty(), "the lexicon is built with the project");
    }

    void wordsTakeTheirClassFromTheirNeighbours_data()
    {
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<QString>("word");
        QTest::addColumn<int>("expected");
        using enum LexicalClass;
        const std::tuple<const char*, const char*, const char*, LexicalClass> rows[] = {
            {"noun after a determiner", "The cook was angry.", "cook", noun},
            {"verb after a modal", "We will cook dinner tonight.", "cook", verb},
            {"verb after a subject pronoun", "They paint houses in summer.", "paint", verb},
            {"imperative", "Please warm the milk.", "warm", verb},
            {"adjective after be", "This coat is warm.", "warm", adjective},
            {"regular plural", "The drinks were cold.", "drinks", noun},
            {"third person verb", "He drinks coffee every morning.", "drinks", verb},
            {"irregular past", "She took the bus.", "took", verb},
            {"adverb in -ly", "She opened the window slowly.", "slowly", adverb},
            {"preposition", "Under the bridge lived a troll.", "Under", preposition},
            {"conjunction", "But she did not answer.", "But", conjunction},
            {"possessive determiner", "Our teacher gave us a test.", "Our", determiner},
            {"pronoun standing alone", "The phone is his.", "his", pronoun},
            {"subordinating before", "Eat something before you go.", "before", conjunction},
            {"curly apostrophe", "They don’t swim.", "swim", verb},
        };
        for (const auto& [name, sentence, word, expected] : rows)
            QTest::newRow(name) << QString::fromUtf8(sentence) << QString::fromUtf8(word) << int(expected);
    }

    void wordsTakeTheirClassFromTheirNeighbours()
    {
        QFETCH(QString, sentence);
        QFETCH(QString, word);
        QFETCH(int, expected);
        const WordNetLexicalTagger tagger(WordNetLexicalTagger::defaultLexiconPath());
        const auto found = classOf(tagger, sentence, word);
        QVERIFY(found);
        QCOMPARE(int(*found), expected);
    }

    // Rows whose class depends on more of the clause than the word's two neighbours.
    void wordsTakeTheirClassFromTheirClause_data()
    {
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<QString>("word");
        QTest::addColumn<int>("expected");
        using enum LexicalClass;
        const std::tuple<const char*, const char*, const char*, LexicalClass> rows[] = {
            {"particle with no object of its own", "We ran out of sugar.", "out", adverb},
            {"flat adverb after a verb of action", "Eagles fly high above the hills.", "high", adverb},
            {"flat adverb after the verb's object", "He kicked the ball hard.", "hard", adverb},
            {"quality after be across an adverb", "The road is still wet.", "wet", adjective},
            {"singular noun takes no bare verb", "We waited at the taxi stop.", "stop", noun},
            {"object of a preposition", "At present we rent.", "present", noun},
            {"object of a verb of action", "They sell stamps.", "stamps", noun},
            {"participle between a verb and its object", "We ate boiled potatoes.", "boiled", adjective},
            {"hyphenated participle", "They are a hard-working team.", "hard-working", adjective},
            {"hyphenated number and noun", "Take a 10-minute break.", "10-minute", adjective},
            {"heading before a colon", "NOTICE: Keep this door shut.", "NOTICE", noun},
            {"modal spelling followed by is", "May is warm here.", "May", noun},
            {"name after a title", "Mr Green phoned.", "Green", noun},
            {"counted plural after a number", "He scored two runs.", "runs", noun},
            {"quality in an inverted question", "Are these seats free?", "free", adjective},
            {"lone participle after what", "What happened?", "happened", verb},
            {"-ing of a verb of feeling after be", "The film was boring.", "boring", adjective},
            {"-ed of a verb of feeling after be", "We were worried about the exam.", "worried", adjective},
            {"other -ing after be is progressive", "The baby is crying.", "crying", verb},
            {"that after an adjective opens a clause", "It is clear that he lied.", "that", conjunction},
            {"that before a verb in -s is its subject", "That sounds great.", "That", pronoun},
            {"contraction of it and will", "It'll rain later.", "rain", verb},
            {"bare did is the verb itself", "You did well on the test.", "well", adverb},
            {"well after feel is health", "I don't feel well today.", "well", adjective},
            {"went names a change of state", "The milk went sour.", "sour", adjective},
            {"adverb opening an imperative", "Then hand it in.", "hand", verb},
            {"adjective before a plural subject", "Special offers end today.", "Special", adjective},
            {"round governing a noun", "The boat sailed round the island.", "round", preposition},
            {"round with nothing to govern", "He turned round and left.", "round", adverb},
            {"particle after the verb's object", "Put your bag down here.", "down", adverb},
            {"flat adverb after an imperative", "Drive straight home.", "straight", adverb},
            {"noun before of", "The close of trading was quiet.", "close", noun},
            {"noun closing a phrase after the", "We went to the fair.", "fair", noun},
            {"hyphenated prefix keeps the verb", "She re-read the letter.", "re-read", verb},
            {"adverb of place after be", "The study is upstairs.", "upstairs", adverb},
            {"much before a comparative", "It is much colder today.", "much", adverb},
            {"much closing a clause", "Thank you very much.", "much", adverb},
            {"subject of a verb in -s", "Prices rise when demand grows.", "demand", noun},
            {"his standing for a noun", "His is the red one.", "His", pronoun},
            {"like after a pronoun subject", "Some like tea.", "like", verb},
            {"quality after fell", "She fell asleep.", "asleep", adjective},
            {"people is plural", "People crowd into the square.", "crowd", verb},
            {"quality after an inverted you", "Are you sure?", "sure", adjective},
            {"-ing governing nothing after of", "The cost of living rose.", "living", noun},
            {"object after a past verb", "The Red Cross sent help.", "help", noun},
            {"enough before a noun", "I have enough money.", "enough", determiner},
            {"adverb between a subject and its verb", "He still lives here.", "still", adverb},
            {"particle before a time", "We ate out last night.", "out", adverb},
            {"noun owned by a noun", "The girl's shoes were wet.", "shoes", noun},
            {"preposition with nothing after it", "The ship went under.", "under", adverb},
            {"imperative before an -ing form", "Stop laughing!", "Stop", verb},
            {"preposition opening a sentence", "Inside the tent was warm.", "Inside", preposition},
            {"capitalised name inside a sentence", "Jack and Rose sang.", "Rose", noun},
            {"capitalised name after a verb", "We met Rose there.", "Rose", noun},
            {"direction after a verb", "Turn left at the lights.", "left", adverb},
            {"clock time", "It is ten past six.", "past", preposition},
            {"state the action leaves its object in", "She wiped the table clean.", "clean", adjective},
            {"person before a thing after a verb of giving", "I sent her flowers.", "her", pronoun},
            {"place after a verb of going, not a form of be", "She went to bed early.", "bed", noun},
            {"past that looks like its present before an object", "The old car hit a tree.", "hit", verb},
            {"only a verb takes me after it", "Text me later.", "Text", verb},
            {"still ending a clause after be", "The lake was still.", "still", adjective},
            {"be after an -ing subject stays a verb", "Waiting is boring.", "is", verb},
            {"clause after a contracted subject", "Wait until you're ready.", "until", conjunction},
            {"-es only after a hiss, so bees is no form of be", "Bees make honey.", "Bees", noun},
        };
        for (const auto& [name, sentence, word, expected] : rows)
            QTest::newRow(name) << QString::fromUtf8(sentence) << QString::fromUtf8(word) << int(expected);
    }

    void wordsTakeTheirClassFromTheirClause() { wordsTakeTheirClassFromTheirNeighbours(); }

    // Where each rule above must not reach.
    void rulesLeaveTheirNeighboursAlone_data()
    {
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<QString>("word");
        QTest::addColumn<int>("expected");
        using enum LexicalClass;
        const std::tuple<const char*, const char*, const char*, LexicalClass> rows[] = {
            {"particle with an object is a preposition", "He climbed up the ladder.", "up", preposition},
            {"particle with an object after its verb", "He lives down the road.", "down", preposition},
            {"a verb that makes its object into something", "She found the exam hard.", "hard", adjective},
            {"plural noun takes a bare verb", "The shops close early.", "close", verb},
            {"do lets a singular noun take a bare verb", "What time does the film start?", "start", verb},
            {"let lets a singular noun take a bare verb", "Let the dog sleep.", "sleep", verb},
            {"quality in an inverted question", "Is the shop open today?", "open", adjective},
            {"progressive in an inverted question", "Is he coming tonight?", "coming", verb},
            {"well after a verb of growing is manner", "Tomatoes grow well in the sun.", "well", adverb},
            {"-ing after keep goes on", "The prices keep rising.", "rising", verb},
            {"-ing after look is a quality", "Everyone looked exciting.", "exciting", adjective},
            {"noun sense of round inside a phrase", "The next round starts soon.", "round", noun},
            {"hyphenated noun", "My mother-in-law lives nearby.", "mother-in-law", noun},
            {"participle between a and a noun", "We found a lost puppy.", "lost", adjective},
            {"participle opening a sentence", "Tired walkers rested.", "Tired", adjective},
            {"number before a bare verb", "Children under ten travel free.", "travel", verb},
            {"enough after a quality", "Is it warm enough?", "enough", adverb},
            {"verb after the subject of a question", "Can birds fly?", "fly", verb},
            {"preposition left behind by a question word", "Who did you talk to?", "to", preposition},
            {"participle of an event after be", "The car was sold.", "sold", verb},
            {"participle of a state after be", "The vase is broken.", "broken", adjective},
            {"her before a plural owns it", "We met her parents.", "her", determiner},
            {"left as the past of leave", "She left yesterday.", "left", verb},
            {"verb after going to", "I'm going to cook tonight.", "cook", verb},
            {"manner after a verb that leaves no state", "You spelled it wrong.", "wrong", adverb},
        };
        for (const auto& [name, sentence, word, expected] : rows)
            QTest::newRow(name) << QString::fromUtf8(sentence) << QString::fromUtf8(word) << int(expected);
    }

    void rulesLeaveTheirNeighboursAlone() { wordsTakeTheirClassFromTheirNeighbours(); }

    void numbersInterjectionsBadRangesAndTextGiveNothing()
    {
        const WordNetLexicalTagger tagger(WordNetLexicalTagger::defaultLexiconPath());
        QCOMPARE(classOf(tagger, QStringLiteral("Oh, I see."), QStringLiteral("Oh")), std::nullopt);
        QCOMPARE(classOf(tagger, QStringLiteral("Well, we tried."), QStringLiteral("Well")), std::nullopt);
        QCOMPARE(classOf(tagger, QStringLiteral("Sixty people came."), QStringLiteral("Sixty")), std::nullopt);
        QCOMPARE(classOf(tagger, QStringLiteral("It cost 42 euros."), QStringLiteral("42")), std::nullopt);
        const QString sentence = QStringLiteral("A cat, sleeping.");
        QCOMPARE(tagger.lexicalClass(sentence, -1, 3), std::nullopt);
        QCOMPARE(tagger.lexicalClass(sentence, 200, 3), std::nullopt);
        QCOMPARE(tagger.lexicalClass(sentence, 5, 0), std::nullopt);
        QCOMPARE(tagger.lexicalClass(sentence, 5, 2), std::nullopt); // ", " holds no word
        QCOMPARE(tagger.lexicalClass(QString(), 0, 1), std::nullopt);
        // A word deep inside a very long text is still tagged from its neighbourhood.
        const QString longText = QStringLiteral("We sing. ").repeated(50000) + QStringLiteral("The cook was angry.");
        const auto cook = tagger.lexicalClass(longText, longText.indexOf(QStringLiteral("cook")), 4);
        QCOMPARE(cook, std::optional(LexicalClass::noun));
        QVERIFY(tagger.lexicalClass(QStringLiteral("😀 ☃"), 0, 2) == std::nullopt);
    }

    // The rules look two words ahead and back across the clause; texts that stop short of that
    // must not lead them off the end.
    void everyWordOfShortAndUnfinishedTextsIsTagged()
    {
        const WordNetLexicalTagger tagger(WordNetLexicalTagger::defaultLexiconPath());
        const QStringList texts = {
            QStringLiteral("the wrong"),   QStringLiteral("Mark the wrong answers"),
            QStringLiteral("Can dogs"),    QStringLiteral("That"),
            QStringLiteral("is it"),       QStringLiteral("The girl's"),
            QStringLiteral("went under"),  QStringLiteral("NOTICE:"),
            QStringLiteral("Well,"),       QStringLiteral("it'll rain"),
            QStringLiteral("a 10-minute"), QStringLiteral("re-"),
            QStringLiteral("Dr."),         QStringLiteral("\"Stop,\" he said \u2014 and"),
            QStringLiteral("enough"),      QStringLiteral("much colder than"),
            QStringLiteral("most"),        QStringLiteral("most -"),
            QStringLiteral("ten past"),    QStringLiteral("small yet"),
            QStringLiteral("Turn left"),   QStringLiteral("sent her"),
        };
        for (const QString& text : texts) {
            // Every letter of a word is tagged as the word.
            std::optional<LexicalClass> wordClass;
            for (qsizetype at = 0; at < text.size(); ++at) {
                const auto found = tagger.lexicalClass(text, at, 1);
                if (!text.at(at).isLetter())
                    continue;
                if (at == 0 || !text.at(at - 1).isLetter())
                    wordClass = found;
                QVERIFY2(found == wordClass, qPrintable(text));
            }
        }
    }

    void withoutTheLexiconClosedClassesStillWorkAndALogLineSaysWhy()
    {
        QTemporaryDir directory;
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("No English lexicon at .*missing\\.lexicon")));
        const WordNetLexicalTagger tagger(directory.filePath(QStringLiteral("missing.lexicon")));
        QVERIFY(!tagger.hasLexicon());
        QCOMPARE(classOf(tagger, QStringLiteral("The cat sat on the mat."), QStringLiteral("on")),
                 std::optional(LexicalClass::preposition));
        QCOMPARE(classOf(tagger, QStringLiteral("The cat sat on the mat."), QStringLiteral("The")),
                 std::optional(LexicalClass::determiner));
    }
};

QTEST_GUILESS_MAIN(TestWordNetLexicalTagger)
#include "tst_WordNetLexicalTagger.moc"
