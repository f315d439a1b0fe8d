// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/WordNetLexicalTagger.h"

#include "platform/linux/language/EnglishLexicon.h"
#include "platform/linux/language/LanguageModelRecognizer.h"

#include "core/support/Logging.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tolvane {

using namespace englishlexicon;

TOLVANE_DEFINE_LOG(lcLexicalTagger, "LexicalTagger")

namespace {

// Sentences longer than this are tagged on the stretch around the word only, which keeps a call
// short whatever the caller hands in.
constexpr qsizetype contextReach = 400;

enum Tag { tNoun, tVerb, tAdjective, tAdverb, tPreposition, tConjunction, tPronoun, tDeterminer, tNone, tagCount };
using Scores = std::array<double, tagCount>;
constexpr double absent = -100.0;
constexpr double closedClassScore = 4.0;

struct Token
{
    QString text;  // as written
    QString lower; // lower case, curly apostrophes straightened
    qsizetype start = 0;
    qsizetype end = 0;
    bool isWord = false;
    // Morphology of a word token.
    bool plural = false, thirdPerson = false, pastForm = false, ingForm = false;
    bool oftenAdjective = false; // WordNet's texts often use the form itself as an adjective ("broken", not "sold")
    Scores scores{};
    Tag lexicalTag = tNone; // the class it has on its own
    Tag tag = tNone;
    quint32 lists = 0; // the word lists below that hold the word, looked up once
};

enum WordList : quint32 {
    kDeterminer = 1u << 0,
    kPronoun = 1u << 1,
    kSubjectPronoun = 1u << 2,
    kObjectPronoun = 1u << 3,
    kPreposition = 1u << 4,
    kConjunction = 1u << 5,
    kClosedAdverb = 1u << 6,
    kAuxiliary = 1u << 7,
    kModal = 1u << 8,
    kBeForm = 1u << 9,
    kBeOnly = 1u << 10,
    kHave = 1u << 11,
    kDegree = 1u << 12,
    kPossessive = 1u << 13,
    kBareVerbLicensor = 1u << 14,
    kTimeAdverb = 1u << 15,
    kDiscourseMarker = 1u << 16,
    kLinking = 1u << 17,
    kActionLinking = 1u << 18,
    kPhrasal = 1u << 19,
    kComplement = 1u << 20,
    kFeeling = 1u << 21,
    kMotion = 1u << 22,
    kTwoObjects = 1u << 23,
    kPerception = 1u << 24,
    kResultative = 1u << 25,
};

// Whether t is a word on the list.
bool is(const Token* t, WordList list)
{
    return t && t->isWord && (t->lists & list);
}

QSet<QString> wordSet(std::initializer_list<const char*> words)
{
    QSet<QString> set;
    for (const char* word : words)
        set.insert(QString::fromLatin1(word));
    return set;
}

const QSet<QString>& determiners()
{
    static const QSet<QString> set =
        wordSet({"the",    "a",       "an",    "this",    "that", "these",     "those",   "every", "each",
                 "either", "neither", "some",  "any",     "no",   "all",       "both",    "many",  "much",
                 "few",    "several", "my",    "your",    "his",  "her",       "its",     "our",   "their",
                 "which",  "what",    "whose", "another", "such", "whichever", "whatever"});
    return set;
}

const QSet<QString>& possessives()
{
    static const QSet<QString> set = wordSet({"my", "your", "his", "her", "its", "our", "their", "whose"});
    return set;
}

const QSet<QString>& pronouns()
{
    static const QSet<QString> set = wordSet(
        {"i",       "me",      "you",      "he",        "him",        "she",        "it",      "we",       "us",
         "they",    "them",    "mine",     "yours",     "hers",       "ours",       "theirs",  "myself",   "yourself",
         "himself", "herself", "itself",   "ourselves", "yourselves", "themselves", "someone", "somebody", "something",
         "anyone",  "anybody", "anything", "everyone",  "everybody",  "everything", "nobody",  "nothing",  "none",
         "who",     "whom",    "whoever",  "this",      "that",       "these",      "those",   "which",    "what",
         "his",     "her",     "either",   "neither",   "some",       "any",        "all",     "both",     "many",
         "much",    "each",    "one",      "i'm",       "you're",     "we're",      "they're", "he's",     "she's",
         "it's",    "i'll",    "you'll",   "we'll",     "they'll",    "he'll",      "she'll",  "i've",     "you've",
         "we've",   "they've", "i'd",      "you'd",     "he'd",       "she'd",      "we'd",    "they'd",   "it'll",
         "it'd",    "who'll",  "who'd",    "that'll",   "whose"});
    return set;
}

const QSet<QString>& subjectPronouns()
{
    static const QSet<QString> set = wordSet(
        {"i",     "you",    "he",  "she",   "it",   "we",     "they",  "who",  "i'll",   "you'll", "we'll",  "they'll",
         "he'll", "she'll", "i'd", "you'd", "we'd", "they'd", "it'll", "it'd", "who'll", "who'd",  "that'll"});
    return set;
}

const QSet<QString>& prepositions()
{
    static const QSet<QString> set = wordSet(
        {"in",      "on",         "at",         "by",      "for",    "with",    "about", "against", "between", "into",
         "through", "during",     "before",     "after",   "to",     "from",    "up",    "down",    "over",    "under",
         "of",      "off",        "near",       "since",   "until",  "till",    "like",  "except",  "along",   "across",
         "behind",  "beyond",     "within",     "without", "toward", "towards", "upon",  "among",   "around",  "past",
         "despite", "inside",     "outside",    "onto",    "per",    "via",     "above", "below",   "beneath", "beside",
         "besides", "throughout", "underneath", "unlike",  "amid",   "out",     "as",    "than",    "round"});
    return set;
}

const QSet<QString>& conjunctions()
{
    static const QSet<QString> set =
        wordSet({"and",   "but",     "or",     "nor", "so",      "yet",      "because",  "although", "though",
                 "while", "whereas", "unless", "if",  "whether", "than",     "that",     "since",    "before",
                 "after", "until",   "till",   "as",  "once",    "whenever", "wherever", "when",     "where"});
    return set;
}

const QSet<QString>& closedAdverbs()
{
    static const QSet<QString> set = wordSet(
        {"not",     "very",     "too",       "also",       "just",   "only",      "even",     "again",      "already",
         "always",  "never",    "often",     "sometimes",  "soon",   "now",       "then",     "here",       "there",
         "today",   "tomorrow", "yesterday", "tonight",    "still",  "yet",       "so",       "quite",      "rather",
         "almost",  "ever",     "perhaps",   "maybe",      "please", "away",      "back",     "home",       "really",
         "usually", "instead",  "later",     "together",   "else",   "elsewhere", "anywhere", "everywhere", "somewhere",
         "nowhere", "how",      "why",       "when",       "where",  "twice",     "once",     "up",         "down",
         "out",     "off",      "along",     "around",     "before", "inside",    "outside",  "over",       "ago",
         "enough",  "n't",      "upstairs",  "downstairs", "abroad", "indoors",   "outdoors", "ahead",      "overseas",
         "nearby"});
    return set;
}

const QSet<QString>& auxiliaries()
{
    static const QSet<QString> set =
        wordSet({"am",     "is",      "are",      "was",       "were",     "be",      "been",    "being",  "have",
                 "has",    "had",     "do",       "does",      "did",      "can",     "could",   "will",   "would",
                 "shall",  "should",  "may",      "might",     "must",     "don't",   "doesn't", "didn't", "can't",
                 "cannot", "won't",   "wouldn't", "shouldn't", "couldn't", "mustn't", "needn't", "isn't",  "aren't",
                 "wasn't", "weren't", "haven't",  "hasn't",    "hadn't",   "let's",   "ought"});
    return set;
}

const QSet<QString>& modals()
{
    static const QSet<QString> set =
        wordSet({"can",      "could",     "will",     "would",   "shall",   "should", "may",    "might",  "must",
                 "do",       "does",      "did",      "don't",   "doesn't", "didn't", "can't",  "cannot", "won't",
                 "wouldn't", "shouldn't", "couldn't", "mustn't", "it'll",   "it'd",   "who'll", "who'd",  "that'll",
                 "i'll",     "you'll",    "we'll",    "they'll", "he'll",   "she'll", "let's",  "let",    "needn't"});
    return set;
}

const QSet<QString>& beForms()
{
    static const QSet<QString> set =
        wordSet({"am",     "is",     "are",     "was",    "were",   "be",     "been",    "being", "isn't",
                 "aren't", "wasn't", "weren't", "i'm",    "you're", "we're",  "they're", "he's",  "she's",
                 "it's",   "seem",   "seems",   "seemed", "become", "became", "look",    "looks", "looked",
                 "feel",   "feels",  "felt",    "get",    "got",    "gets",   "getting", "gotten"});
    return set;
}

// Verbs that link a subject to a quality ("smells sour", "grew tired").
const QSet<QString>& linkingVerbs()
{
    static const QSet<QString> set =
        wordSet({"smell", "taste", "sound", "seem", "appear", "remain", "stay", "grow",   "become",
                 "feel",  "look",  "turn",  "keep", "prove",  "fall",   "fell", "fallen", "grew",
                 "grown", "kept",  "go",    "went", "gone",   "run",    "ran"});
    return set;
}

// Linking verbs that are as often verbs of action ("grow well", "keep rising"): after them only a
// word that cannot be an adverb reads as a quality.
const QSet<QString>& actionLinkingVerbs()
{
    static const QSet<QString> set = wordSet({"remain", "stay", "grow", "turn", "keep", "prove", "grew", "grown",
                                              "kept", "go", "went", "gone", "run", "ran"});
    return set;
}

const QSet<QString>& haveForms()
{
    static const QSet<QString> set =
        wordSet({"have", "has", "had", "haven't", "hasn't", "hadn't", "i've", "you've", "we've", "they've"});
    return set;
}

const QSet<QString>& degreeWords()
{
    static const QSet<QString> set = wordSet({"very", "so", "too", "quite", "rather", "really", "more", "most", "less",
                                              "least", "extremely", "pretty", "fairly", "how"});
    return set;
}

const QSet<QString>& interjectionsAndNumbers()
{
    static const QSet<QString> set = wordSet(
        {"wow",     "oh",      "ah",        "hey",      "hello",    "hi",      "ouch",    "oops",     "hooray",
         "alas",    "yes",     "ok",        "okay",     "bye",      "two",     "three",   "four",     "five",
         "six",     "seven",   "eight",     "nine",     "ten",      "eleven",  "twelve",  "twenty",   "thirty",
         "forty",   "fifty",   "hundred",   "thousand", "million",  "billion", "zero",    "thirteen", "fourteen",
         "fifteen", "sixteen", "seventeen", "eighteen", "nineteen", "sixty",   "seventy", "eighty",   "ninety"});
    return set;
}

// Verbs that take a particle ("look up the word", "back up your files"): after them, a particle
// is an adverb even when a noun phrase follows.
const QSet<QString>& phrasalVerbs()
{
    static const QSet<QString> set =
        wordSet({"look", "pick", "give", "make", "turn", "put", "take", "set", "back", "fill", "break", "bring", "call",
                 "clean", "write", "shut", "wake", "hang", "throw", "cut", "figure", "point", "sort", "work", "switch",
                 "hand", "carry", "find", "let", "try", "wash", "pay", "sum", "tidy", "mix", "open",
                 // their irregular past forms
                 "took", "taken", "gave", "given", "made", "broke", "broken", "brought", "threw", "thrown", "wrote",
                 "written", "woke", "woken", "hung", "found", "paid"});
    return set;
}

// The forms of "be" itself: after them an -ing form is the progressive, unlike after "look".
const QSet<QString>& beOnly()
{
    static const QSet<QString> set =
        wordSet({"am", "is", "are", "was", "were", "be", "been", "being", "isn't", "aren't", "wasn't", "weren't", "i'm",
                 "you're", "we're", "they're", "he's", "she's", "it's"});
    return set;
}

const QSet<QString>& objectPronouns()
{
    static const QSet<QString> set = wordSet({"me", "him", "her", "us", "them"});
    return set;
}

// Words that open a sentence as an interjection when a comma follows ("Well, …", "No, …").
const QSet<QString>& discourseMarkers()
{
    static const QSet<QString> set =
        wordSet({"well", "no", "yes", "oh", "ok", "okay", "fine", "sure", "alright", "right"});
    return set;
}

// Words that let a bare verb follow a singular noun later in their clause ("does the film start",
// "let the dog sleep").
const QSet<QString>& bareVerbLicensors()
{
    static const QSet<QString> set =
        wordSet({"can",    "could", "will",     "would",     "shall",    "should",  "may",     "might",
                 "must",   "do",    "does",     "did",       "don't",    "doesn't", "didn't",  "can't",
                 "cannot", "won't", "wouldn't", "shouldn't", "couldn't", "mustn't", "needn't", "let",
                 "let's",  "make",  "makes",    "made",      "help",     "helps",   "helped",  "to"});
    return set;
}

const QSet<QString>& timeAdverbs()
{
    static const QSet<QString> set = wordSet({"today", "tomorrow", "yesterday", "tonight", "now", "soon", "later"});
    return set;
}

const QSet<QString>& pluralDeterminers()
{
    static const QSet<QString> set =
        wordSet({"many", "several", "few", "these", "those", "both", "all", "some", "most", "two", "three", "four"});
    return set;
}

// The dictionary forms a verb form could come from, itself first ("stopped" → stop, "worried" → worry).
QStringList verbBases(const QString& form)
{
    QStringList bases{form};
    for (const char* suffix : {"ed", "d", "s", "es", "ing"}) {
        const QLatin1String sfx(suffix);
        if (form.endsWith(sfx) && form.size() > sfx.size() + 1) {
            const QString base = form.chopped(sfx.size());
            bases << base << base + QLatin1Char('e');
            if (base.size() > 2 && base.back() == base.at(base.size() - 2))
                bases << base.chopped(1);
            if (base.endsWith(QLatin1Char('i')))
                bases << base.chopped(1) + QLatin1Char('y');
        }
    }
    return bases;
}

// Verbs of feeling caused in someone: after "be" their participles name the feeling or its cause
// ("was boring", "were worried about") unless an object or a doer follows ("is boring me").
const QSet<QString>& feelingVerbs()
{
    static const QSet<QString> set =
        wordSet({"amaze",     "annoy",     "bore",    "charm",   "confuse",   "depress",   "disappoint", "disgust",
                 "embarrass", "encourage", "excite",  "exhaust", "fascinate", "frighten",  "frustrate",  "interest",
                 "irritate",  "please",    "satisfy", "shock",   "surprise",  "terrify",   "thrill",     "tire",
                 "worry",     "astonish",  "alarm",   "amuse",   "inspire",   "overwhelm", "puzzle",     "scare",
                 "impress",   "delight",   "disturb", "upset",   "relax",     "convince",  "concern",    "insult",
                 "offend",    "bother",    "stun",    "horrify"});
    return set;
}

// Verbs that make their object into something ("found the exam hard", "painted the door green").
const QSet<QString>& complementVerbs()
{
    static const QSet<QString> set =
        wordSet({"find", "make",   "keep", "leave", "consider", "paint", "get",  "turn", "call",    "think", "like",
                 "want", "prefer", "hold", "found", "made",     "kept",  "left", "got",  "thought", "held"});
    return set;
}

// Verbs of going somewhere: after them "to" leads to a place ("went to bed", "came back to work").
const QSet<QString>& motionVerbs()
{
    static const QSet<QString> set =
        wordSet({"go",   "went", "gone",  "come",  "came",    "get",  "got",    "return", "walk",  "drive", "drove",
                 "run",  "ran",  "fly",   "flew",  "flown",   "move", "travel", "head",   "hurry", "rush",  "ride",
                 "rode", "sail", "cycle", "bring", "brought", "take", "took",   "send",   "sent",  "invite"});
    return set;
}

// Verbs that take a person and a thing ("sent her flowers", "told her stories").
const QSet<QString>& twoObjectVerbs()
{
    static const QSet<QString> set =
        wordSet({"give", "gave",  "given", "send",  "sent",   "buy",  "bought", "bring",  "brought", "show", "shown",
                 "hand", "offer", "lend",  "lent",  "owe",    "pass", "teach",  "taught", "tell",    "told", "promise",
                 "sell", "sold",  "throw", "threw", "thrown", "wish", "fetch",  "pour",   "bake",    "cook"});
    return set;
}

// Verbs whose object does something itself ("saw her leave", "let him go").
const QSet<QString>& perceptionVerbs()
{
    static const QSet<QString> set = wordSet(
        {"see", "saw", "seen", "watch", "hear", "heard", "feel", "felt", "let", "make", "made", "help", "notice"});
    return set;
}

// Verbs of acting on a thing that can leave it in a new state ("wiped the table clean", "kicked the
// door open"), though they take adverbs of manner as well ("kicked the ball hard").
const QSet<QString>& resultativeVerbs()
{
    static const QSet<QString> set =
        wordSet({"wipe",   "wash",  "scrub", "rub",     "sweep", "lick",   "push",  "pull",   "kick",  "slam",
                 "knock",  "shake", "shook", "squeeze", "boil",  "freeze", "froze", "dye",    "shave", "cut",
                 "set",    "break", "broke", "burn",    "beat",  "tie",    "fold",  "press",  "iron",  "polish",
                 "scrape", "brush", "drain", "fill",    "empty", "shut",   "open",  "bleach", "paint", "colour",
                 "color",  "sand",  "blow",  "blew",    "wring", "wrung",  "rinse", "dry",    "clean", "strip",
                 "tear",   "tore",  "torn",  "rip",     "slice", "chop",   "crush", "cook",   "fry",   "heat"});
    return set;
}

// Every list a word form is on, from one table of whole forms and one of dictionary forms of verbs.
quint32 listsOf(const QString& w)
{
    static const auto [forms, verbs] = [] {
        const std::pair<const QSet<QString>&, WordList> plain[] = {
            {determiners(), kDeterminer},
            {pronouns(), kPronoun},
            {subjectPronouns(), kSubjectPronoun},
            {objectPronouns(), kObjectPronoun},
            {prepositions(), kPreposition},
            {conjunctions(), kConjunction},
            {closedAdverbs(), kClosedAdverb},
            {auxiliaries(), kAuxiliary},
            {modals(), kModal},
            {beForms(), kBeForm},
            {beOnly(), kBeOnly},
            {haveForms(), kHave},
            {degreeWords(), kDegree},
            {possessives(), kPossessive},
            {bareVerbLicensors(), kBareVerbLicensor},
            {timeAdverbs(), kTimeAdverb},
            {discourseMarkers(), kDiscourseMarker},
        };
        const std::pair<const QSet<QString>&, WordList> verbLists[] = {
            {linkingVerbs(), kLinking},         {actionLinkingVerbs(), kActionLinking},
            {phrasalVerbs(), kPhrasal},         {complementVerbs(), kComplement},
            {feelingVerbs(), kFeeling},         {motionVerbs(), kMotion},
            {twoObjectVerbs(), kTwoObjects},    {perceptionVerbs(), kPerception},
            {resultativeVerbs(), kResultative},
        };
        std::pair<QHash<QString, quint32>, QHash<QString, quint32>> tables;
        for (const auto& [set, list] : plain) {
            for (const QString& word : set)
                tables.first[word] |= list;
        }
        for (const auto& [set, list] : verbLists) {
            for (const QString& word : set)
                tables.second[word] |= list;
        }
        return tables;
    }();
    quint32 lists = forms.value(w);
    for (const QString& base : verbBases(w))
        lists |= verbs.value(base);
    return lists;
}

bool isParticle(const QString& w)
{
    static const QSet<QString> set = wordSet({"up", "down", "out", "off", "in", "on", "over", "away", "back", "along",
                                              "around", "through", "round", "about"});
    return set.contains(w);
}

double openClassScore(std::uint16_t uses, std::uint8_t senses)
{
    if (senses == 0 && uses == 0)
        return absent;
    return 1.0 + 0.6 * std::log1p(uses) + 0.25 * std::log1p(senses);
}

bool isVowel(QChar c)
{
    return QStringLiteral("aeiou").contains(c);
}

} // namespace

struct WordNetLexicalTaggerContext
{
    const EnglishLexicon* lexicon;

    std::optional<EnglishLexiconEntry> find(const QString& form) const
    {
        return lexicon ? lexicon->entry(form) : std::nullopt;
    }

    double scoreOf(const QString& form, int cls) const
    {
        const auto e = find(form);
        if (!e || !(e->flags & isLemma))
            return absent;
        return openClassScore(e->taggedUses[cls], e->senses[cls]);
    }

    // The base forms a regular inflection could come from ("stopped" → stop, "flies" → fly).
    static QStringList stems(const QString& w, const QString& suffix, bool tryE)
    {
        QStringList result;
        if (!w.endsWith(suffix) || w.size() <= suffix.size() + 1)
            return result;
        const QString base = w.left(w.size() - suffix.size());
        result.append(base);
        if (tryE)
            result.append(base + QLatin1Char('e'));
        if (base.size() >= 3 && base.back() == base.at(base.size() - 2) && !isVowel(base.back()))
            result.append(base.chopped(1));
        if (base.endsWith(QLatin1Char('i')))
            result.append(base.chopped(1) + QLatin1Char('y'));
        return result;
    }

    // A hyphenated word WordNet does not list, by its parts: "re-read" is read again, "self-taught"
    // and "hard-working" describe like participles, "part-time" and "up-to-date" describe a noun,
    // "mother-in-law" is named by its last part.
    void analyseCompound(Token& t) const
    {
        static const QSet<QString> prefixes =
            wordSet({"re", "co", "pre", "un", "over", "under", "mis", "out", "de", "non", "anti", "post", "sub"});
        const QStringList parts = t.lower.split(QLatin1Char('-'), Qt::SkipEmptyParts);
        if (parts.size() < 2)
            return;
        Token part;
        if (parts.size() == 2 && prefixes.contains(parts.front())) {
            part.lower = parts.back();
            analyse(part);
            t.scores = part.scores;
            t.plural = part.plural;
            t.thirdPerson = part.thirdPerson;
            t.pastForm = part.pastForm;
            t.ingForm = part.ingForm;
            return;
        }
        part.lower = parts.back();
        analyse(part);
        Scores& s = t.scores;
        s.fill(absent);
        const double top = *std::max_element(part.scores.begin(), part.scores.end());
        if (top <= absent)
            return;
        if (part.ingForm || part.pastForm || part.scores[tAdjective] >= top) {
            s[tAdjective] = top + 1;
            return;
        }
        if (part.scores[tNoun] > absent) {
            s[tNoun] = part.scores[tNoun];
            s[tAdjective] = part.scores[tNoun] - 0.5;
            t.plural = part.plural;
        }
    }

    void analyse(Token& t) const
    {
        Scores& s = t.scores;
        s.fill(absent);
        const QString& w = t.lower;
        const bool numberCompound = w.contains(QLatin1Char('-')) && std::any_of(w.begin(), w.end(), [](QChar c) {
                                        return c.isLetter();
                                    }); // "10-minute"
        if (interjectionsAndNumbers().contains(w) || (!w.isEmpty() && w.front().isDigit() && !numberCompound)) {
            s[tNone] = closedClassScore + 2;
            return;
        }
        if (const auto e = find(w)) {
            for (int c = 0; c < openClassCount; ++c)
                s[c] = openClassScore(e->taggedUses[c], e->senses[c]);
            if (e->flags & irregularVerbForm) {
                t.pastForm = true;
                // "stolen bikes", "a torn page": an irregular participle describes as a regular one does.
                const bool participleShape = w.endsWith(QLatin1String("en")) || w.endsWith(QLatin1String("wn")) ||
                                             w.endsWith(QLatin1String("rn"));
                if (participleShape && w != QLatin1String("been") && s[tAdjective] <= absent && s[tVerb] > absent)
                    s[tAdjective] = s[tVerb] - 2.0;
            }
            if (e->flags & irregularPlural)
                t.plural = true;
            t.oftenAdjective = e->taggedUses[adjective] >= 10;
        }
        auto raise = [&](Tag tag, double value) { s[tag] = std::max(s[tag], value); };
        // Regular inflections, a little below the base word's own standing.
        // "-es" only after a hiss or an "o" ("boxes", "goes"), which keeps "bees" from being a form of "be".
        QStringList sBases = stems(w, QStringLiteral("s"), false);
        for (const QString& base : stems(w, QStringLiteral("es"), false)) {
            static const QLatin1String hisses[] = {QLatin1String("s"),  QLatin1String("x"),  QLatin1String("z"),
                                                   QLatin1String("ch"), QLatin1String("sh"), QLatin1String("o")};
            if (std::any_of(std::begin(hisses), std::end(hisses),
                            [&](QLatin1String end) { return base.endsWith(end); }))
                sBases.append(base);
        }
        for (const QString& base : sBases) {
            const double n = scoreOf(base, noun);
            const double v = scoreOf(base, verb);
            if (n > absent) {
                raise(tNoun, n - 0.3);
                t.plural = true;
            }
            if (v > absent) {
                raise(tVerb, v - 0.3);
                t.thirdPerson = true;
            }
        }
        if (w.endsWith(QLatin1String("ies")))
            for (const QString& base : {w.chopped(3) + QLatin1Char('y')}) {
                if (scoreOf(base, noun) > absent) {
                    raise(tNoun, scoreOf(base, noun) - 0.3);
                    t.plural = true;
                }
                if (scoreOf(base, verb) > absent) {
                    raise(tVerb, scoreOf(base, verb) - 0.3);
                    t.thirdPerson = true;
                }
            }
        // "-d" only after an "e" of the base ("used"), which keeps "bed" from being a form of "be".
        QStringList pastBases = stems(w, QStringLiteral("ed"), true);
        if (w.size() > 3 && w.endsWith(QLatin1String("ed")))
            pastBases.append(w.chopped(1));
        for (const QString& base : pastBases) {
            const double v = scoreOf(base, verb);
            if (v > absent) {
                raise(tVerb, v);
                raise(tAdjective, v - 2.0);
                t.pastForm = true;
            }
        }
        for (const QString& base : stems(w, QStringLiteral("ing"), true)) {
            const double v = scoreOf(base, verb);
            if (v > absent) {
                raise(tVerb, v);
                raise(tNoun, v - 1.5);
                raise(tAdjective, v - 2.0);
                t.ingForm = true;
            }
        }
        for (const QString& suffix : {QStringLiteral("er"), QStringLiteral("est")}) {
            for (const QString& base : stems(w, suffix, true)) {
                const double a = scoreOf(base, adjective);
                if (a > absent)
                    raise(tAdjective, a - 0.3);
                // "faster", "harder": a flat adverb compares like its adjective.
                const double r = scoreOf(base, adverb);
                if (a > absent && r > absent)
                    raise(tAdverb, r - 0.3);
            }
        }
        if (w.endsWith(QLatin1String("ly")) && w.size() > 4) {
            QString base = w.chopped(2);
            if (base.endsWith(QLatin1Char('i')))
                base = base.chopped(1) + QLatin1Char('y');
            if (scoreOf(base, adjective) > absent)
                raise(tAdverb, scoreOf(base, adjective) + 1.0);
        }
        // Closed classes outrank WordNet's occasional noun or verb sense of a function word.
        const bool functionWord = determiners().contains(w) || pronouns().contains(w) || prepositions().contains(w) ||
                                  conjunctions().contains(w) || auxiliaries().contains(w);
        if (functionWord) {
            for (int c = 0; c < openClassCount; ++c)
                s[c] -= 2.0;
        }
        if (determiners().contains(w))
            raise(tDeterminer, closedClassScore + 1);
        if (pronouns().contains(w))
            raise(tPronoun, closedClassScore + (determiners().contains(w) ? 0.5 : 1));
        if (prepositions().contains(w))
            raise(tPreposition, closedClassScore + 0.5);
        if (conjunctions().contains(w))
            raise(tConjunction, closedClassScore + (prepositions().contains(w) ? 0 : 0.5));
        if (closedAdverbs().contains(w))
            raise(tAdverb, closedClassScore + (timeAdverbs().contains(w) ? 2.0 : 0.5));
        if (auxiliaries().contains(w))
            raise(tVerb, closedClassScore + 1);
        // A particle ("come in", "ran out of") is an adverb where no object follows it.
        if (isParticle(w))
            raise(tAdverb, closedClassScore - 0.5);
        if (w.contains(QLatin1Char('-')) && !find(w))
            analyseCompound(t);
        bool any = false;
        for (double v : s)
            any = any || v > absent;
        if (!any) {
            // Not in any list: shape decides. Capitalised inside a sentence reads as a name.
            if (w.endsWith(QLatin1String("ly")))
                s[tAdverb] = 1;
            else if (w.endsWith(QLatin1String("ing")) || w.endsWith(QLatin1String("ed")))
                s[tVerb] = 1;
            else
                s[tNoun] = 1;
        }
    }
};

namespace {

Tag best(const Scores& s)
{
    int top = 0;
    for (int i = 1; i < tagCount; ++i) {
        if (s[i] > s[top])
            top = i;
    }
    return static_cast<Tag>(top);
}

std::vector<Token> tokenize(QStringView text, qsizetype offset)
{
    std::vector<Token> tokens;
    const qsizetype n = text.size();
    qsizetype i = 0;
    while (i < n) {
        const QChar c = text[i];
        if (c.isSpace()) {
            ++i;
            continue;
        }
        Token t;
        t.start = offset + i;
        if (c.isLetterOrNumber()) {
            qsizetype j = i + 1;
            while (j < n) {
                const QChar d = text[j];
                const bool apostrophe =
                    (d == QLatin1Char('\'') || d == QChar(0x2019)) && j + 1 < n && text[j + 1].isLetter();
                if (d.isLetterOrNumber() || d.category() == QChar::Mark_NonSpacing || apostrophe ||
                    (d == QLatin1Char('-') && j + 1 < n && text[j + 1].isLetter()))
                    ++j;
                else
                    break;
            }
            t.isWord = true;
            t.text = text.mid(i, j - i).toString();
            i = j;
        } else {
            t.text = QString(c);
            ++i;
        }
        t.end = offset + i;
        t.lower = t.text.toLower().replace(QChar(0x2019), QLatin1Char('\''));
        tokens.push_back(std::move(t));
    }
    return tokens;
}

bool isClauseBoundary(const Token* t)
{
    return !t || (!t->isWord && QStringLiteral(",.;:!?()\"").contains(t->text.front()));
}

bool canBe(const Token& t, Tag tag)
{
    return t.scores[tag] > absent;
}

// "children's", "the company's": a noun that owns what follows, as "their" does.
bool isPossessiveNoun(const Token* t)
{
    static const QSet<QString> contractions =
        wordSet({"that's", "what's", "there's", "here's", "who's", "where's", "how's", "let's"});
    return t && t->isWord && t->lower.endsWith(QLatin1String("'s")) && !(t->lists & (kPronoun | kAuxiliary | kModal)) &&
           !contractions.contains(t->lower);
}

bool isNumber(const Token& t)
{
    return t.isWord && t.tag == tNone && (t.lower.front().isDigit() || interjectionsAndNumbers().contains(t.lower));
}

bool nominal(Tag tag)
{
    return tag == tNoun || tag == tAdjective;
}

// What a word's clause holds beyond its immediate neighbours.
struct Surroundings
{
    const Token* afterNext = nullptr;  // the token after the right neighbour
    const Token* governor = nullptr;   // the nearest word to the left that is not an adverb ("is" in "is still wet")
    bool bareVerbLicensed = false;     // a modal, "do", "to" or "let" earlier in the clause
    bool invertedBe = false;           // the clause opens with "is", "are", … ("Is the museum open?")
    bool invertedModal = false;        // the clause opens with a modal or "do" ("Can dogs swim?")
    bool verbSinceOpening = false;     // a verb between the clause's first word and this one
    bool questionWordBefore = false;   // "what", "who", … earlier in the clause ("Who did you talk to?")
    bool thereIs = false;              // the governor is "be" after "there" ("There is still hope.")
    const Token* actionVerb = nullptr; // the last verb before the word in its clause that is not "be" or an auxiliary
};

bool isBoundaryOrFunction(const Token* t)
{
    return isClauseBoundary(t) ||
           (t->isWord && (t->tag == tPreposition || t->tag == tConjunction || t->tag == tAdverb));
}

// Adjusts one word's scores by its neighbours. prev has its final tag, next only its own best guess.
void applyContext(Token& t, const Token* prev, const Token* prevPrev, const Token* next, bool sentenceStart,
                  const Surroundings& around)
{
    Scores& s = t.scores;
    const QString& w = t.lower;
    const QString prevWord = prev && prev->isWord ? prev->lower : QString();
    const bool atEnd = isClauseBoundary(next);
    const Tag nextTag = next && next->isWord ? next->tag : tNone;
    auto add = [&](Tag tag, double value) {
        if (s[tag] > absent)
            s[tag] += value;
    };
    const QString governorWord = around.governor && around.governor->isWord ? around.governor->lower : QString();
    // Only adverbs before it in its clause: "Never touch …" is still an imperative.
    const bool clauseStart = sentenceStart || (!around.governor && prev && prev->tag == tAdverb);
    const bool adverbLike = isParticle(w) || is(&t, kClosedAdverb);
    // "went flat", "wiped the table clean": a word WordNet seldom uses as an adverb describes even
    // where an adverb could stand. The scores are still the word's own here.
    const Scores own = s;
    const bool mostlyAdjective = canBe(t, tAdjective) && own[tAdjective] - own[tAdverb] >= 1.8;
    auto settleAs = [&](Tag tag) { s[tag] = std::max(s[tag], *std::max_element(s.begin(), s.end()) + 1); };

    // "Well, …", "No, …": an interjection opening the sentence.
    const bool afterInterjection = prev && prev->isWord && prev->tag == tNone; // "Oh no, …"
    if ((sentenceStart || afterInterjection) && is(&t, kDiscourseMarker) && next && next->text == QLatin1String(",")) {
        s.fill(absent);
        s[tNone] = closedClassScore;
        return;
    }
    // "Amy and Rose": inside a sentence a capital letter marks a name.
    if (!sentenceStart && !t.text.isEmpty() && t.text.front().isUpper() && t.lists == 0 && canBe(t, tNoun) &&
        !(prev && !prev->isWord)) {
        add(tNoun, 3);
        s[tVerb] -= 2;
    }
    // "Ms Green", "Dr Lee": a title names the word after it.
    static const QSet<QString> titles =
        wordSet({"mr", "mrs", "ms", "miss", "dr", "prof", "sir", "madam", "uncle", "aunt", "saint", "st"});
    if (titles.contains(prevWord) && !t.text.isEmpty() && t.text.front().isUpper()) {
        s[tNoun] = std::max(s[tNoun], *std::max_element(s.begin(), s.end()) + 1);
        return;
    }
    // "WARNING: …": a heading names something.
    if (sentenceStart && next && next->text == QLatin1String(":") && !is(&t, kClosedAdverb)) {
        s[tNoun] = std::max(s[tNoun], *std::max_element(s.begin(), s.end()) + 1);
        return;
    }
    // "May is …", "Will has …": a modal is never the subject of a finite verb, a name or month is.
    static const QSet<QString> singularFinite =
        wordSet({"is", "was", "has", "does", "isn't", "wasn't", "hasn't", "doesn't"});
    if (is(&t, kModal) && canBe(t, tNoun) && next && singularFinite.contains(next->lower)) {
        s[tNoun] = std::max(s[tNoun], *std::max_element(s.begin(), s.end()) + 1);
        return;
    }

    // "enough money" counts a thing; "warm enough" measures a quality.
    if (w == QLatin1String("enough")) {
        const bool nounFollows = next && next->isWord && canBe(*next, tNoun) && next->lexicalTag != tPreposition &&
                                 !is(next, kClosedAdverb) && !is(next, kDeterminer) && !is(next, kPronoun);
        s[nounFollows ? tDeterminer : tAdverb] = *std::max_element(s.begin(), s.end()) + 1;
        return;
    }
    // "much colder", "thank you very much": a quantity of degree, not of things.
    if (w == QLatin1String("much") || w == QLatin1String("far")) {
        static const QSet<QString> comparatives = wordSet({"more", "less", "better", "worse", "too"});
        const bool comparativeFollows =
            next && next->isWord &&
            (comparatives.contains(next->lower) ||
             (next->lower.endsWith(QLatin1String("er")) && (canBe(*next, tAdjective) || canBe(*next, tAdverb))));
        // "far away", "far behind": how far from here.
        const bool placeFollows =
            next && next->isWord && (isParticle(next->lower) || is(next, kClosedAdverb)) && !is(next, kDegree);
        if (comparativeFollows || atEnd || placeFollows) {
            s[tAdverb] = std::max(s[tAdverb], *std::max_element(s.begin(), s.end()) + 1);
            return;
        }
    }
    // "Text me", "the dog that bit me": besides a preposition only a verb takes "me" or "them" right after
    // it, even one WordNet knows as a noun alone.
    const bool closedClass =
        t.lists & (kDeterminer | kPronoun | kPreposition | kConjunction | kClosedAdverb | kAuxiliary | kDegree);
    if (!closedClass && !canBe(t, tNone) && next && is(next, kObjectPronoun) && next->lower != QLatin1String("her")) {
        s[tVerb] = std::max(s[tVerb], *std::max_element(s.begin(), s.end()) + 1);
        return;
    }
    // "ten past six", "quarter to nine": a clock time.
    if ((w == QLatin1String("past") || w == QLatin1String("to")) && prev && next && next->isWord &&
        (isNumber(*prev) || prevWord == QLatin1String("half") || prevWord == QLatin1String("quarter")) &&
        (next->lower.front().isDigit() || interjectionsAndNumbers().contains(next->lower))) {
        settleAs(tPreposition);
        return;
    }
    // "Turn left", "went right at the lights": a direction right after a verb; "right now".
    const bool directionAfterVerb =
        prev && (prev->tag == tVerb || (canBe(*prev, tVerb) && (!prevPrev || isClauseBoundary(prevPrev))));
    if ((w == QLatin1String("left") || w == QLatin1String("right")) && directionAfterVerb && !is(prev, kAuxiliary) &&
        !is(prev, kBeForm) && !is(prev, kHave)) {
        settleAs(tAdverb);
        return;
    }
    // "Take the first left": the turning itself.
    if ((w == QLatin1String("left") || w == QLatin1String("right")) && prev && prev->tag == tAdjective && prevPrev &&
        prevPrev->tag == tDeterminer && (atEnd || nextTag == tPreposition)) {
        settleAs(tNoun);
        return;
    }
    static const QSet<QString> places = wordSet({"here", "there", "away", "back", "now", "then", "ahead", "behind"});
    if (w == QLatin1String("right") && next && (places.contains(next->lower) || is(next, kTimeAdverb)) &&
        (!prev || prev->tag != tDeterminer)) {
        settleAs(tAdverb);
        return;
    }
    // Function words whose class depends on what follows.
    if (w == QLatin1String("that")) {
        // "Is that yours?", "Was that the last bus?": the subject of a question that opens with "be".
        if (is(prev, kBeOnly) && (!prevPrev || isClauseBoundary(prevPrev))) {
            const bool nounFollows = next && next->isWord && !is(next, kPronoun) && !is(next, kDeterminer) &&
                                     canBe(*next, tNoun) && next->scores[tNoun] > next->scores[tAdjective];
            s[nounFollows ? tDeterminer : tPronoun] += 3;
            return;
        }
        // "that bird?", "that car is …": a singular noun that ends its phrase.
        const bool nounPhraseEnds =
            around.afterNext && (isBoundaryOrFunction(around.afterNext) || is(around.afterNext, kAuxiliary));
        // "That sounds like …", "that seems odd": the subject of a verb in -s.
        const bool verbFollows =
            next && next->isWord && next->thirdPerson && around.afterNext &&
            (isBoundaryOrFunction(around.afterNext) || around.afterNext->tag == tDeterminer ||
             around.afterNext->lower == QLatin1String("like") || canBe(*around.afterNext, tAdjective));
        if (verbFollows && !(prev && prev->tag == tNoun))
            s[tPronoun] += 3;
        else if (!atEnd && nominal(nextTag) && !next->plural && (!canBe(*next, tVerb) || nounPhraseEnds))
            s[tDeterminer] += 3;
        else if (atEnd)
            s[tPronoun] += 3;
        else if (prev && prev->tag == tNoun)
            s[tPronoun] += 2;
        else if (prev && prev->tag == tVerb)
            s[tConjunction] += 3;
        else if (is(next, kAuxiliary))
            s[tPronoun] += 3; // "That was fun.", "that will do"
        else if (next && next->isWord &&
                 (is(next, kSubjectPronoun) || nextTag == tDeterminer ||
                  (nextTag == tPronoun && !is(next, kObjectPronoun)))) // "so fast that nobody understood"
            s[tConjunction] += 2;                                      // "clear that he lied"
        else if (next && canBe(*next, tVerb) && !canBe(*next, tNoun))
            s[tPronoun] += 1.5;
        return;
    }
    if (w == QLatin1String("her") || w == QLatin1String("his")) {
        // "sent her flowers": a person and then a thing; "saw her leave": a person who acts.
        const bool verbBefore = prev && prev->tag == tVerb;
        const bool thingFollows = verbBefore && is(prev, kTwoObjects) && w == QLatin1String("her") && next &&
                                  next->isWord && next->plural && canBe(*next, tNoun) &&
                                  (isClauseBoundary(around.afterNext) || around.afterNext->tag == tPreposition);
        const bool actionFollows = verbBefore && is(prev, kPerception) && w == QLatin1String("her") && next &&
                                   next->isWord && next->lexicalTag == tVerb && !next->plural && !next->pastForm &&
                                   !next->ingForm;
        if (thingFollows || actionFollows) {
            s[tPronoun] += 3;
            return;
        }
        if (!atEnd && next->isWord && nextTag != tDeterminer && nextTag != tPronoun && nextTag != tPreposition &&
            nextTag != tAdverb && !is(next, kClosedAdverb) && !is(next, kAuxiliary) &&
            (canBe(*next, tNoun) || canBe(*next, tAdjective)))
            s[tDeterminer] += 2;
        else
            s[tPronoun] += 3;
        return;
    }
    // "Either you come or I leave": a pair of clauses.
    if ((w == QLatin1String("either") || w == QLatin1String("neither")) && is(next, kSubjectPronoun)) {
        settleAs(tConjunction);
        return;
    }
    // "most people", "most of them", "the most beautiful", "what I like most".
    if (w == QLatin1String("most")) {
        if (atEnd || (next->isWord && (canBe(*next, tAdjective) || canBe(*next, tAdverb)) && !canBe(*next, tNoun)))
            settleAs(tAdverb);
        else if (next->lower == QLatin1String("of"))
            settleAs(tPronoun);
        else if (next->isWord && canBe(*next, tNoun))
            settleAs(tDeterminer);
        return;
    }
    // "more time", "more slowly", "I want more.": an amount of a thing, a degree, or the amount itself.
    if ((w == QLatin1String("more") || w == QLatin1String("less") || w == QLatin1String("fewer")) && next) {
        if (next->isWord && canBe(*next, tNoun) && next->lexicalTag == tNoun && !is(next, kClosedAdverb)) {
            settleAs(tDeterminer);
            return;
        }
        if (atEnd && prev && prev->tag == tVerb && !is(prev, kBeForm)) {
            settleAs(tPronoun);
            return;
        }
    }
    // "I'm used to it": accustomed, unlike "it was used to cut bread".
    if (w == QLatin1String("used") && is(prev, kBeForm) && next && next->lower == QLatin1String("to") &&
        !(around.afterNext && around.afterNext->isWord && around.afterNext->lexicalTag == tVerb)) {
        settleAs(tAdjective);
        return;
    }
    // "What a day!", "such a pity": an exclamation about the noun.
    if ((w == QLatin1String("what") || w == QLatin1String("such")) && next &&
        (next->lower == QLatin1String("a") || next->lower == QLatin1String("an"))) {
        settleAs(tDeterminer);
        return;
    }
    if (is(&t, kDeterminer) && is(&t, kPronoun)) {
        // By what the next word mostly is: its class in context may already lean on this one.
        const Tag nextAlone = next && next->isWord ? next->lexicalTag : tNone;
        const bool followedByNominal =
            !atEnd && (nominal(nextAlone) || (next->isWord && (canBe(*next, tNoun) || canBe(*next, tAdjective)))) &&
            !is(next, kAuxiliary) && !is(next, kClosedAdverb) && nextAlone != tPreposition &&
            nextAlone != tDeterminer && nextAlone != tPronoun &&
            !(next->pastForm && isClauseBoundary(around.afterNext)) &&                // "What happened?"
            !(w == QLatin1String("this") && next->thirdPerson && nextAlone == tVerb); // "This helps a lot."
        const bool oneFollows = next && (next->lower == QLatin1String("one") || next->lower == QLatin1String("ones"));
        if (followedByNominal || oneFollows) // "this one"
            s[tDeterminer] += 2;
        else
            s[tPronoun] += 2;
        return;
    }
    // "as cold as ice": the first "as" measures the quality.
    if (w == QLatin1String("as") && next && next->isWord && (canBe(*next, tAdjective) || canBe(*next, tAdverb)) &&
        around.afterNext && around.afterNext->lower == QLatin1String("as")) {
        settleAs(tAdverb);
        return;
    }
    // "about ten pounds", "around 50 people": roughly that many.
    if ((w == QLatin1String("about") || w == QLatin1String("around")) && next && isNumber(*next)) {
        settleAs(tAdverb);
        return;
    }
    // "I'm about to leave": on the point of.
    if (w == QLatin1String("about") && is(prev, kBeForm) && next && next->lower == QLatin1String("to")) {
        settleAs(tAdjective);
        return;
    }
    if (is(&t, kConjunction) && (is(&t, kPreposition) || is(&t, kClosedAdverb))) {
        const bool clauseFollows =
            next && next->isWord &&
            (is(next, kSubjectPronoun) || (is(next, kPronoun) && (is(next, kBeOnly) || is(next, kHave)))); // "you're"
        if (w == QLatin1String("so")) {
            if (next && (nextTag == tAdjective || nextTag == tAdverb || canBe(*next, tAdjective)) && !clauseFollows)
                s[tAdverb] += 3;
            else
                s[tConjunction] += 2;
            return;
        }
        if (w == QLatin1String("yet")) {
            if (atEnd || (next && next->lower == QLatin1String("another")))
                s[tAdverb] += 3; // "not yet", "yet another"
            else if (!prev || isClauseBoundary(prev) || prevWord == QLatin1String("and") ||
                     (prev->tag == tAdjective && canBe(*next, tAdjective)))
                s[tConjunction] += 3; // "small yet comfortable"
            return;
        }
        if (clauseFollows)
            s[tConjunction] += 3;
        else if (atEnd)
            settleAs(tAdverb); // "soon after", "not seen him since"
        else
            s[tPreposition] += 1;
        return;
    }
    // "because of the rain".
    if (w == QLatin1String("because") && next && next->lower == QLatin1String("of")) {
        settleAs(tPreposition);
        return;
    }
    // A number counts what follows ("two runs") unless it labels what precedes ("Page 42 has").
    // A number counts things ("two runs"), not actions ("under ten travel free").
    const bool afterDeterminer = prev && (prev->tag == tDeterminer || isPossessiveNoun(prev) ||
                                          (isNumber(*prev) && !is(&t, kAuxiliary) &&
                                           !(prevPrev && prevPrev->tag == tNoun) && (t.plural || !canBe(t, tVerb))));
    // "the next round": inside a noun phrase a preposition's noun sense is meant.
    const bool insideNounPhrase =
        afterDeterminer || (prev && (prev->tag == tAdjective || prev->tag == tAdverb || prev->tag == tNone) &&
                            prevPrev && prevPrev->tag == tDeterminer && canBe(t, tNoun));
    // "let you down", "put your bag down here", "sit down and relax": a particle with nothing to govern.
    static const QSet<QString> timeOpeners = wordSet({"last", "next", "every"}); // "ate out last night"
    if (isParticle(w) && is(&t, kPreposition) && prev && !insideNounPhrase &&
        (atEnd || nextTag == tPreposition || nextTag == tAdverb || nextTag == tConjunction ||
         (canBe(*next, tAdverb) && isClauseBoundary(around.afterNext)) || // "hold on tight"
         (next->isWord && timeOpeners.contains(next->lower)))) {
        s[tAdverb] += 3;
        return;
    }
    const bool verbContext = is(prev, kSubjectPronoun) || is(prev, kModal) || prevWord == QLatin1String("to") ||
                             prevWord == QLatin1String("please") || (sentenceStart && canBe(t, tVerb));
    if (is(&t, kPreposition) && w != QLatin1String("like") && !verbContext && !insideNounPhrase) {
        // "ran out of milk", "came in quietly": after its verb and with no object of its own.
        const bool particleAlone = isParticle(w) && prev && prev->tag == tVerb && next && next->isWord &&
                                   (nextTag == tPreposition || nextTag == tAdverb || nextTag == tConjunction);
        // "Those days are past": a state after "be", where WordNet knows the word better so.
        if (atEnd && is(around.governor, kBeForm) && canBe(t, tAdjective) && s[tAdjective] > s[tAdverb])
            settleAs(tAdjective);
        // "The car went under", unlike "who did you talk to?".
        else if (atEnd && prev && prev->tag == tVerb && !around.questionWordBefore && w != QLatin1String("to"))
            s[tAdverb] = std::max(s[tAdverb] + 3, s[tPreposition] + 1);
        else if ((atEnd || particleAlone) && canBe(t, tAdverb))
            s[tAdverb] += 3;
        else if (isParticle(w) && prev && prev->tag == tVerb && is(prev, kPhrasal))
            s[tAdverb] += 3;
        else if (isParticle(w) && prevPrev && is(prevPrev, kPhrasal) && prev->tag == tVerb)
            s[tAdverb] += 3;
        else
            s[tPreposition] += 2;
        return;
    }
    if (w == QLatin1String("like")) {
        // "sounds like a good idea", "looks just like his father": a comparison after a linking verb.
        if (around.governor && around.governor->tag == tVerb && is(around.governor, kLinking) &&
            !is(prev, kSubjectPronoun)) {
            s[tPreposition] += 4;
            return;
        }
        if (prev &&
            (is(prev, kSubjectPronoun) || is(prev, kModal) || prevWord == QLatin1String("to") || prev->tag == tAdverb ||
             (prev->tag == tNoun && prev->plural) || (prev->tag == tPronoun && !is(prev, kObjectPronoun))))
            s[tVerb] += 6;
        else if (is(prev, kBeForm))
            s[tPreposition] += 3;
        return;
    }
    if (w == QLatin1String("home")) {
        if (prev && (prev->tag == tDeterminer || prev->tag == tAdjective))
            s[tNoun] += 4;
        else if (prev && prev->tag == tPreposition)
            s[tNoun] += 4;
        else if (prev && prev->tag == tVerb)
            s[tAdverb] += 4;
        else if (sentenceStart && is(next, kAuxiliary))
            s[tNoun] += 4; // "Home is where …"
        return;
    }

    // A degree word before an adjective or adverb modifies it.
    if (is(&t, kDegree) && next && next->isWord && (canBe(*next, tAdjective) || canBe(*next, tAdverb)) &&
        !canBe(*next, tDeterminer)) {
        s[tAdverb] += 4;
        return;
    }

    // Open-class words.
    static const QSet<QString> doForms = wordSet({"do", "does", "did"});
    // "such a", "what a", "all the": an article after a determiner is still an article.
    const bool article = w == QLatin1String("a") || w == QLatin1String("an") || w == QLatin1String("the");
    if (afterDeterminer && !article) {
        add(tNoun, 3);
        add(tAdjective, 1.5);
        s[tVerb] -= 5;
        s[tAdverb] -= 2;
        s[tPronoun] -= 4;
        s[tPreposition] -= 4;
        s[tConjunction] -= 4;
        // "the wrong answers.": a word that is mostly an adjective before a word closing the phrase.
        const bool headFollows = nextTag == tNoun || (t.lexicalTag == tAdjective && next && next->isWord &&
                                                      next->plural && isBoundaryOrFunction(around.afterNext));
        if (!atEnd && next->isWord && headFollows && !next->pastForm && !canBe(*next, tPreposition) &&
            !is(next, kAuxiliary))
            add(tAdjective, 3.5);
        else if (!atEnd && next->isWord &&
                 (nextTag == tVerb || is(next, kAuxiliary) || next->lower == QLatin1String("of")))
            add(tNoun, 3); // "the close of trading"
        else if (atEnd && prevWord == QLatin1String("the") && is(prevPrev, kBeForm) &&
                 (w == QLatin1String("best") || w == QLatin1String("worst") ||
                  (w.endsWith(QLatin1String("est")) && own[tAdjective] > own[tNoun])))
            add(tAdjective, 4); // "She is the best."
        else if (atEnd && (is(prev, kPossessive) || prevWord == QLatin1String("the") ||
                           prevWord == QLatin1String("a") || prevWord == QLatin1String("an"))) {
            add(tNoun, 2); // "went to the fair."
            s[tAdjective] -= 2;
        }
    } else if (prev && prev->tag == tAdjective && !is(prev, kBeForm) && !is(&t, kClosedAdverb) && !is(&t, kAuxiliary)) {
        add(tNoun, 2.5);
        s[tVerb] -= 3;
        // "the lovely present.": the word that closes the phrase is its noun.
        if (atEnd || isBoundaryOrFunction(next) || nextTag == tVerb) {
            add(tNoun, 2);
            s[tAdjective] -= 2;
        }
    }
    // "enough sleep", "more time".
    static const QSet<QString> quantities = wordSet({"enough", "more", "less", "fewer", "plenty"});
    if (quantities.contains(prevWord) && canBe(t, tNoun) && !canBe(t, tAdjective) && !canBe(t, tAdverb)) {
        add(tNoun, 3);
        s[tVerb] -= 3;
    }
    // "when demand grows": the word before a verb in -s is its subject.
    if (next && next->isWord && next->thirdPerson && !next->plural && canBe(t, tNoun) && !t.thirdPerson &&
        !is(prev, kSubjectPronoun) && !is(around.governor, kModal)) {
        add(tNoun, 2.5);
        s[tVerb] -= 2.5;
    }
    // After a preposition comes what it governs, not a verb ("at present", "out of reach"); an -ing
    // form that governs nothing itself is a noun ("the cost of living").
    if (prev && prev->tag == tPreposition && prevWord != QLatin1String("to")) {
        if (!t.ingForm)
            s[tVerb] -= 3;
        if (atEnd || isBoundaryOrFunction(next) || nextTag == tVerb ||
            (next->isWord && is(next, kSubjectPronoun))) { // "at present we …"
            add(tNoun, 2.5);
            s[tAdjective] -= 1;
        }
    }
    // "went to bed", "came back to work": after a verb of going, "to" leads to a place.
    const bool toPlace = prevWord == QLatin1String("to") && is(around.actionVerb, kMotion) && canBe(t, tNoun) &&
                         own[tNoun] >= own[tVerb] - (around.actionVerb->ingForm ? -0.5 : 1.5) && !t.pastForm &&
                         !t.ingForm &&
                         (atEnd || nextTag == tPreposition || nextTag == tAdverb || nextTag == tConjunction);
    if (toPlace) {
        add(tNoun, 4);
        s[tVerb] -= 3;
    } else if (prevWord == QLatin1String("to") && canBe(t, tVerb) && !t.pastForm && !t.thirdPerson)
        add(tVerb, 4);
    // "You'd better hurry", "we had better go".
    if (prevWord == QLatin1String("better") && prevPrev &&
        (prevPrev->lower == QLatin1String("had") || prevPrev->lower.endsWith(QLatin1String("'d"))) && canBe(t, tVerb) &&
        !t.pastForm && !t.thirdPerson && !t.ingForm)
        add(tVerb, 8);
    // A modal, also across an adverb ("would never lie"); a bare "did" may be the verb itself ("did well").
    // "Can dogs swim?": right after a modal opening a question comes its subject.
    const bool subjectOfQuestion = around.invertedModal && prev == around.governor && canBe(t, tNoun) &&
                                   !prevWord.contains(QLatin1Char('\'')) &&
                                   (t.plural || (!t.text.isEmpty() && t.text.front().isUpper()));
    if (is(around.governor, kModal) && !subjectOfQuestion)
        add(tVerb, doForms.contains(governorWord) ? 2 : 5);
    const bool afterInvertedBe = around.invertedBe && prev && (prev->tag == tNoun || prev->tag == tPronoun);
    // "Is it broken?": the verb of an inverted question came first.
    // "spelled it wrong": "it" and "you" right after a verb are its object, not a subject.
    const bool objectPronoun = prev == around.governor && prevPrev && prevPrev->tag == tVerb &&
                               !is(prevPrev, kAuxiliary) &&
                               (prevWord == QLatin1String("it") || prevWord == QLatin1String("you"));
    if (is(around.governor, kSubjectPronoun) && !t.ingForm && !afterInvertedBe && !is(&t, kClosedAdverb) &&
        !objectPronoun) {
        add(tVerb, 4);
        s[tNoun] -= 2;
        s[tAdjective] -= 2;
    }
    // "Kate and Tom dance": two nouns joined by "and" are as plural as one in -s.
    const bool pairBefore = prev && prev->tag == tNoun && prevPrev && prevPrev->lower == QLatin1String("and");
    if (prev && prev->tag == tNoun && (prev->plural || pairBefore) && canBe(t, tVerb) && !t.thirdPerson && !t.ingForm &&
        !around.invertedBe &&
        (!prevPrev || prevPrev->tag == tDeterminer || isClauseBoundary(prevPrev) || prevPrev->tag == tAdjective ||
         isPossessiveNoun(prevPrev) || pairBefore))
        add(tVerb, 2.5);
    // "Can dogs swim?", "Does the shop open early?": the verb after an inverted modal's subject.
    if (around.invertedModal && !around.verbSinceOpening && prev && prev->tag == tNoun && canBe(t, tVerb) &&
        !t.thirdPerson && !t.pastForm && !t.ingForm)
        add(tVerb, 3);
    // "sells second-hand books": a plural after a verb's bare object is more of the object.
    const bool moreObject =
        prevPrev && prevPrev->tag == tVerb && !is(prevPrev, kAuxiliary) && t.plural && own[tNoun] >= own[tVerb];
    if (prev && prev->tag == tNoun && !prev->plural && t.thirdPerson && canBe(t, tVerb) && !isClauseBoundary(prev) &&
        (!prevPrev || prevPrev->tag != tPreposition) && !moreObject)
        add(tVerb, 2.5);
    if (prev && prev->tag == tPronoun && !is(prev, kObjectPronoun) && t.thirdPerson && canBe(t, tVerb))
        add(tVerb, 3); // "that sounds", "everyone knows"
    // After a verb of action comes its object, not a second verb ("sent help", "sell stamps").
    if (prev && prev->tag == tVerb && !is(prev, kAuxiliary) && !is(prev, kBeForm) && !is(prev, kBareVerbLicensor) &&
        prevWord != QLatin1String("better") && canBe(t, tNoun) && !t.ingForm && !t.pastForm && !adverbLike) {
        s[tVerb] -= 2;
        add(tNoun, 1);
    }
    // Nor does a past form follow another verb as a second finite verb ("turn left", "ate boiled eggs").
    if (t.pastForm && prev && prev->tag == tVerb && !is(prev, kAuxiliary) && !is(prev, kBeForm) && !is(prev, kHave) &&
        !is(prev, kBareVerbLicensor) && (canBe(t, tAdjective) || canBe(t, tAdverb)))
        s[tVerb] -= 3;
    // "Bus passes are free": a plural before "are" or "have" is their subject.
    static const QSet<QString> pluralFinite = wordSet({"are", "were", "have", "aren't", "weren't", "haven't"});
    if (t.plural && canBe(t, tNoun) && next && next->isWord && pluralFinite.contains(next->lower)) {
        add(tNoun, 2);
        s[tVerb] -= 2;
    }
    // A singular noun is not followed by a bare present verb ("the bus stop", "the museum open")
    // unless a modal, "do" or "to" earlier in the clause asks for one.
    // Unless what follows is its object: then it is a past that looks like its present ("the car hit a tree").
    const bool objectAfter =
        next && next->isWord && (nextTag == tDeterminer || is(next, kPossessive) || is(next, kObjectPronoun));
    // "The sun set at six", "the ticket cost ten pounds": a verb whose past is its present.
    static const QSet<QString> sameFormPasts = wordSet(
        {"cost", "cut", "hit", "hurt", "let", "put", "set", "shut", "spread", "quit", "split", "burst", "read"});
    const auto pastAfterSubject = [&] {
        return next && next->isWord && !is(next, kAuxiliary) && nextTag != tVerb && nextTag != tNoun && !next->plural &&
               sameFormPasts.contains(w);
    };
    if (prev && prev->tag == tNoun && !prev->plural && !pairBefore && !around.bareVerbLicensed && canBe(t, tVerb) &&
        !t.thirdPerson && !t.pastForm && !t.ingForm && !is(&t, kAuxiliary) &&
        (canBe(t, tNoun) || canBe(t, tAdjective))) {
        if (!clauseStart && pastAfterSubject())
            add(tVerb, 2);
        else if (objectAfter && s[tVerb] >= s[tNoun] && s[tVerb] >= s[tAdjective] && !clauseStart)
            add(tVerb, 1);
        else
            s[tVerb] -= 3;
    }
    // "bread and jam is …": after "and" or "or" a list of things goes on.
    if ((prevWord == QLatin1String("and") || prevWord == QLatin1String("or")) && prevPrev && prevPrev->tag == tNoun &&
        canBe(t, tNoun) && !t.pastForm && !t.ingForm && (atEnd || is(next, kAuxiliary) || nextTag == tPreposition)) {
        add(tNoun, 2.5);
        s[tVerb] -= 2.5;
    }
    // A participle right after another verb and before a noun describes it ("ate boiled eggs").
    if (t.pastForm && prev && prev->tag == tVerb && !is(prev, kAuxiliary) && !is(prev, kBeForm) && next &&
        next->isWord && (nextTag == tNoun || next->plural))
        add(tAdjective, 5);
    // "got up early": a particle makes "get" a verb of action.
    const bool phrasalGet = !is(around.governor, kBeOnly) && prev != around.governor && prev && isParticle(prev->lower);
    const bool afterBe = (is(around.governor, kBeForm) && !phrasalGet) || afterInvertedBe;
    // "The water was still.": words that as adverbs only lead into what they modify end a clause as qualities.
    static const QSet<QString> leadingAdverbs = wordSet({"still", "even", "just"});
    if (afterBe && atEnd && leadingAdverbs.contains(w) && canBe(t, tAdjective))
        settleAs(tAdjective);
    else if (around.thereIs && canBe(t, tNoun) && !adverbLike && own[tNoun] >= own[tAdjective]) {
        add(tNoun, 3); // what there is is a thing
        s[tVerb] -= 3;
    } else if (afterBe) {
        if (adverbLike && canBe(t, tAdverb))
            add(tAdverb, 2);
        else
            add(tAdjective, 3);
        if ((t.ingForm || t.pastForm) && !is(around.governor, kBeOnly) && !afterInvertedBe)
            add(tAdjective, 3.5); // "looked exciting", "seemed surprised": no progressive or passive here
        else if (t.ingForm)
            add(tVerb, 3.5);
        else if (t.pastForm)
            add(tVerb, 2.0);
        if (t.pastForm && next && next->lower == QLatin1String("by"))
            add(tVerb, 3.5);
        else if ((t.ingForm || t.pastForm) && is(&t, kFeeling) &&
                 (atEnd || nextTag == tPreposition || nextTag == tConjunction || nextTag == tAdverb))
            add(tAdjective, 4);
        s[tNoun] -= 1;
    }
    // "fast asleep", "wide awake": a word that measures the quality after it.
    if (afterBe && canBe(t, tAdverb) && next && next->isWord && next->lexicalTag == tAdjective &&
        !canBe(*next, tNoun) && isClauseBoundary(around.afterNext))
        add(tAdverb, 5);
    const bool afterLinkingVerb =
        around.governor && around.governor->tag == tVerb && !afterBe && is(around.governor, kLinking);
    const bool actionToo = is(around.governor, kActionLinking);
    if (afterLinkingVerb && canBe(t, tAdjective) && !adverbLike && (atEnd || isBoundaryOrFunction(next)) &&
        !(actionToo && ((canBe(t, tAdverb) && !mostlyAdjective) || t.ingForm))) {
        add(tAdjective, 3);
        if (t.ingForm || t.pastForm)
            add(tAdjective, 3.5);
    }
    if (prevWord == QLatin1String("being") && t.pastForm)
        add(tVerb, 5); // "is being repaired"
    if (is(prev, kHave) && t.pastForm)
        add(tVerb, 5);
    if (is(prev, kDegree)) {
        const bool modifiesVerb = prevPrev && prevPrev->tag == tVerb && !is(prevPrev, kBeForm);
        add(tAdjective, modifiesVerb ? 1.0 : 3.0);
        add(tAdverb, modifiesVerb ? 3.5 : 1.5);
        s[tNoun] -= 3;
        s[tVerb] -= 3;
    }
    if (clauseStart || prevWord == QLatin1String("please")) {
        // An imperative: a bare verb followed by what it acts on.
        const bool objectFollows = next && (nextTag == tDeterminer || nextTag == tPronoun || nextTag == tPreposition ||
                                            nextTag == tAdverb || is(next, kPossessive) || isClauseBoundary(next));
        // "Back off!", "Back away slowly": a verb with its particle, even one mostly used as an adverb.
        const bool particleFollows =
            sentenceStart && next && next->isWord && (isParticle(next->lower) || next->lower == QLatin1String("away"));
        // "Quiet, please!": a word mostly used as a quality is no imperative when nothing follows it.
        const bool qualityAlone = isClauseBoundary(next) && own[tAdjective] > own[tVerb];
        if (canBe(t, tVerb) && !t.thirdPerson && !t.pastForm && !t.ingForm && objectFollows && !qualityAlone &&
            !(next && is(next, kAuxiliary)) &&
            (!is(&t, kClosedAdverb) || prevWord == QLatin1String("please") || particleFollows))
            add(tVerb, prevWord == QLatin1String("please") || particleFollows || is(next, kObjectPronoun) ? 5 : 3.5);
        // "Correct answers earn a point": a word before a plural subject and its verb describes it.
        const Token* verbAfter = around.afterNext;
        // "Mum likes quiet evenings": not a word seldom used to describe before one mostly a verb in -s.
        const bool describesSubject =
            next && next->isWord && next->plural && canBe(*next, tNoun) && !is(next, kAuxiliary) && verbAfter &&
            !(next->thirdPerson && next->lexicalTag == tVerb && own[tAdjective] < 2.5) && verbAfter->isWord &&
            (canBe(*verbAfter, tVerb) || is(verbAfter, kAuxiliary)) && !verbAfter->thirdPerson &&
            !is(&t, kDeterminer) && !adverbLike && !is(&t, kAuxiliary);
        if (describesSubject) {
            add(canBe(t, tAdjective) ? tAdjective : tNoun, 3);
            s[tVerb] -= 2;
        } else if (next && next->isWord && (is(next, kAuxiliary) || (nextTag == tVerb && !next->ingForm)) &&
                   !adverbLike && !is(&t, kAuxiliary)) {
            add(tNoun, 3); // the subject
            if (t.ingForm)
                add(tNoun, 2);
        }
        if (next && next->isWord && nextTag == tNoun && canBe(t, tAdjective) && !is(&t, kDeterminer))
            add(tAdjective, 2.5);
        // "Building a house takes time": an -ing form with its object opening a sentence names the activity.
        if (sentenceStart && t.ingForm && canBe(t, tNoun) && next && next->isWord &&
            (nextTag == tDeterminer || is(next, kPossessive) ||
             (is(next, kClosedAdverb) && is(around.afterNext, kAuxiliary)))) // "Living here is cheap."
            add(tNoun, 4);
        // "Change trains at York": a bare plural it acts on.
        if (sentenceStart && canBe(t, tVerb) && !t.plural && !t.pastForm && !t.ingForm &&
            own[tVerb] >= own[tNoun] - 1 && next && next->isWord && next->plural && next->lexicalTag == tNoun &&
            (isClauseBoundary(around.afterNext) || around.afterNext->tag == tPreposition ||
             around.afterNext->tag == tDeterminer))
            add(tVerb, 3.5);
    }
    // After an action verb and before the end of the clause or a preposition: how, not what
    // ("rained hard all night", "flew high above").
    static const QSet<QString> spanDeterminers = wordSet({"all", "every", "each"});
    const bool phraseEnds = atEnd || isBoundaryOrFunction(next) || spanDeterminers.contains(next->lower);
    if (phraseEnds && prev && prev->tag == tVerb && !is(prev, kBeForm) && !is(prev, kHave) && canBe(t, tAdverb) &&
        (!is(prev, kModal) || doForms.contains(prevWord)) &&
        (adverbLike || !is(prev, kLinking) || (is(prev, kActionLinking) && !mostlyAdjective)))
        add(tAdverb, 2.5);
    // "Push the door hard": how the action is done, after its object, unless the verb makes its object
    // into something ("found the exam hard", "painted the door green").
    if ((atEnd || nextTag == tPreposition) && prev && (prev->tag == tNoun || prev->tag == tPronoun) &&
        around.actionVerb && around.actionVerb != prev && canBe(t, tAdverb) && canBe(t, tAdjective) &&
        !is(around.actionVerb, kComplement) && !is(around.actionVerb, kLinking) &&
        !t.text.endsWith(QLatin1String("ly")) && !(is(around.actionVerb, kResultative) && mostlyAdjective))
        add(tAdverb, 3);
    // "wiped the table clean", "pushed the door open": what the action leaves its object as.
    if (atEnd && prev && (prev->tag == tNoun || prev->tag == tPronoun) && around.actionVerb &&
        around.actionVerb != prev && canBe(t, tAdjective) &&
        (!canBe(t, tAdverb) || is(around.actionVerb, kComplement) ||
         (is(around.actionVerb, kResultative) && mostlyAdjective)) &&
        (is(around.actionVerb, kComplement) || own[tAdjective] >= own[tVerb] - 1) && !t.pastForm && !t.ingForm &&
        (!is(prev, kSubjectPronoun) || (prevPrev && prevPrev->tag == tVerb)) &&
        (!around.bareVerbLicensed || is(around.actionVerb, kComplement)) && !is(&t, kClosedAdverb)) {
        add(tAdjective, 3);
        s[tVerb] -= 3;
        s[tNoun] -= 2;
    }
    if (prev && prev->tag == tAdverb && !is(prev, kDegree) && atEnd && canBe(t, tAdverb) && prevPrev &&
        prevPrev->tag == tVerb)
        add(tAdverb, 1);
    // "Our team is winning.": an -ing form after "be" is the progressive unless it names a feeling.
    if (atEnd && afterBe && canBe(t, tAdjective) && !(t.ingForm && is(around.governor, kBeOnly)))
        add(tAdjective, t.pastForm && t.oftenAdjective ? 2.5 : 1); // "Is it broken?": a state, no doer named
    if (t.text.endsWith(QLatin1String("ly")) && canBe(t, tAdverb))
        add(tAdverb, 1.5);
}

} // namespace

namespace {

// Gives token i its class from its lexical scores and its neighbours' classes as they stand.
void settle(std::vector<Token>& tokens, const std::vector<Scores>& lexical, qsizetype i)
{
    Token& t = tokens[static_cast<std::size_t>(i)];
    if (!t.isWord)
        return;
    t.scores = lexical[static_cast<std::size_t>(i)];
    const Token* prev = i > 0 ? &tokens[static_cast<std::size_t>(i - 1)] : nullptr;
    const Token* prevPrev = i > 1 ? &tokens[static_cast<std::size_t>(i - 2)] : nullptr;
    const Token* next =
        i + 1 < static_cast<qsizetype>(tokens.size()) ? &tokens[static_cast<std::size_t>(i + 1)] : nullptr;
    // A full stop after "Dr" or "U.S" does not end the sentence.
    static const QSet<QString> abbreviations = wordSet({"dr", "mr", "mrs", "ms", "st", "prof", "mt", "jr", "vs"});
    const bool abbreviation = prev && prev->text == QLatin1String(".") && prevPrev && prevPrev->isWord &&
                              (abbreviations.contains(prevPrev->lower) || prevPrev->lower.size() == 1);
    const bool sentenceStart =
        !prev || (!prev->isWord && QStringLiteral(".!?\"(:;").contains(prev->text) && !abbreviation);
    Surroundings around;
    around.afterNext =
        i + 2 < static_cast<qsizetype>(tokens.size()) ? &tokens[static_cast<std::size_t>(i + 2)] : nullptr;
    for (qsizetype j = i - 1; j >= 0; --j) {
        const Token& before = tokens[static_cast<std::size_t>(j)];
        if (isClauseBoundary(&before))
            break;
        if (!around.governor && before.tag != tAdverb) {
            around.governor = &before;
            around.thereIs = is(&before, kBeOnly) && j > 0 &&
                             tokens[static_cast<std::size_t>(j - 1)].lower == QLatin1String("there");
        }
        around.bareVerbLicensed = around.bareVerbLicensed || is(&before, kBareVerbLicensor);
        if (!around.actionVerb && before.tag == tVerb && !is(&before, kAuxiliary) && !is(&before, kBeForm))
            around.actionVerb = &before;
        const bool opening = j == 0 || isClauseBoundary(&tokens[static_cast<std::size_t>(j - 1)]);
        around.invertedBe = before.isWord && is(&before, kBeOnly) && opening;
        around.invertedModal = before.isWord && is(&before, kModal) && opening;
        if (!opening && before.tag == tVerb)
            around.verbSinceOpening = true;
        static const QSet<QString> questionWords = wordSet({"what", "who", "whom", "which", "where", "whose", "that"});
        around.questionWordBefore = around.questionWordBefore || questionWords.contains(before.lower);
    }
    applyContext(t, prev, prevPrev, next, sentenceStart, around);
    t.tag = best(t.scores);
}

} // namespace

WordNetLexicalTagger::WordNetLexicalTagger(const QString& lexiconPath)
    : m_lexicon(QFileInfo::exists(lexiconPath) ? EnglishLexicon::open(lexiconPath) : nullptr)
{
    // Without the lexicon only the closed classes are known: it still answers, worse, so say why.
    if (!m_lexicon)
        qCWarning(lcLexicalTagger) << "No English lexicon at"
                                   << (lexiconPath.isEmpty() ? QStringLiteral("(none found)") : lexiconPath)
                                   << "- only pronouns, determiners and other closed classes are tagged";
}

bool WordNetLexicalTagger::hasLexicon() const
{
    return m_lexicon != nullptr;
}

WordNetLexicalTagger::~WordNetLexicalTagger() = default;

QString WordNetLexicalTagger::defaultLexiconPath()
{
    const QString directory = LanguageModelRecognizer::defaultModelDirectory();
    return directory.isEmpty() ? QString() : directory + QStringLiteral("/en.lexicon");
}

std::optional<LexicalClass> WordNetLexicalTagger::lexicalClass(const QString& sentence, qsizetype wordStart,
                                                               qsizetype wordLength) const
{
    if (wordStart < 0 || wordLength <= 0 || wordStart >= sentence.size())
        return std::nullopt;
    const qsizetype from = std::max<qsizetype>(0, wordStart - contextReach);
    const qsizetype to = std::min(sentence.size(), wordStart + wordLength + contextReach);
    std::vector<Token> tokens = tokenize(QStringView(sentence).mid(from, to - from), from);

    qsizetype target = -1;
    for (qsizetype i = 0; i < static_cast<qsizetype>(tokens.size()); ++i) {
        const Token& t = tokens[static_cast<std::size_t>(i)];
        if (t.isWord && t.end > wordStart && t.start < wordStart + wordLength) {
            target = i;
            break;
        }
    }
    if (target < 0)
        return std::nullopt;

    // Words after the target's right neighbour cannot change its class.
    tokens.resize(std::min(tokens.size(), static_cast<std::size_t>(target) + 3));
    const WordNetLexicalTaggerContext context{m_lexicon.get()};
    for (Token& t : tokens) {
        if (t.isWord) {
            context.analyse(t);
            t.tag = t.lexicalTag = best(t.scores);
            t.lists = listsOf(t.lower);
        }
    }
    // Nouns that are plural without an ending WordNet marks.
    static const QSet<QString> unmarkedPlurals =
        wordSet({"people", "police", "cattle", "staff", "clergy", "sheep", "deer", "fish", "aircraft"});
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].isWord &&
            (unmarkedPlurals.contains(tokens[i].lower) || (i > 0 && pluralDeterminers().contains(tokens[i - 1].lower))))
            tokens[i].plural = true; // "people", "many days", "three days"
    }
    std::vector<Scores> lexical;
    lexical.reserve(tokens.size());
    for (const Token& t : tokens)
        lexical.push_back(t.scores);
    // Left to right, each word settles with its left neighbour settled and its right one guessed:
    // first from the words alone, then again with every right neighbour's guess from the first pass.
    const qsizetype count = static_cast<qsizetype>(tokens.size());
    for (const qsizetype last : {count - 1, target}) {
        for (qsizetype i = 0; i <= last; ++i)
            settle(tokens, lexical, i);
    }

    switch (tokens[static_cast<std::size_t>(target)].tag) {
    case tNoun:
        return LexicalClass::noun;
    case tVerb:
        return LexicalClass::verb;
    case tAdjective:
        return LexicalClass::adjective;
    case tAdverb:
        return LexicalClass::adverb;
    case tPreposition:
        return LexicalClass::preposition;
    case tConjunction:
        return LexicalClass::conjunction;
    case tPronoun:
        return LexicalClass::pronoun;
    case tDeterminer:
        return LexicalClass::determiner;
    case tNone:
    case tagCount:
        break;
    }
    return std::nullopt;
}

} // namespace tolvane
