// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/translation/DictionaryTranslationEngine.h"

#include "core/support/AppPaths.h"
#include "core/translation/LanguageTable.h"

#include "core/support/Logging.h"
#include "platform/linux/translation/ApertiumPassageTranslator.h"
#include "platform/linux/translation/DictionaryFile.h"
#include "platform/linux/translation/JapaneseAnalyzer.h"
#include "platform/linux/translation/Lemmatizer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>
#include <QTextBoundaryFinder>

TOLVANE_DEFINE_LOG(lcDictionaryEngine, "DictionaryTranslationEngine")

namespace tolvane {

namespace {

bool isSupportedPair(const QString& source, const QString& target)
{
    return (source == QLatin1String("en") && isLearningLanguage(target)) ||
           (target == QLatin1String("en") && isLearningLanguage(source));
}

bool writtenWithoutSpaces(const QString& language)
{
    return language == QLatin1String("zh") || language == QLatin1String("ja");
}

bool hasLetter(const QString& text)
{
    for (const QChar c : text) {
        if (c.isLetter())
            return true;
    }
    return false;
}

// Words longer than any headword are not words; refusing them early keeps hostile input cheap.
constexpr qsizetype longestWord = 64;
// A passage this long is cut: a card cannot show more, and the rest would only cost time.
constexpr qsizetype longestPassage = 20000;

} // namespace

DictionaryTranslationEngine::DictionaryTranslationEngine(QStringList directories)
    : m_directories(std::move(directories))
{}

DictionaryTranslationEngine::~DictionaryTranslationEngine() = default;

QStringList DictionaryTranslationEngine::defaultDirectories()
{
    QStringList dirs;
    // A directory named in the environment is the only one: a test or a packager means exactly it.
    const QString fromEnvironment = qEnvironmentVariable("TOLVANE_DICTIONARY_DIR");
    if (!fromEnvironment.isEmpty())
        return {fromEnvironment};
    // Beside the executable, installed or in the build tree (which links to the compiled ones).
    dirs.append(installedDataDirectory() + QStringLiteral("/dictionaries"));
    QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (dataHome.isEmpty())
        dataHome = QDir::homePath() + QStringLiteral("/.local/share");
    dirs.append(dataHome + QStringLiteral("/tolvane/dictionaries"));
    return dirs;
}

QString DictionaryTranslationEngine::dictionaryPath(const QString& sourceCode, const QString& targetCode) const
{
    const QString file = tolvane::pairKey(sourceCode, targetCode) + QStringLiteral(".tdict");
    for (const QString& dir : m_directories) {
        const QString path = QDir(dir).filePath(file);
        if (QFileInfo(path).isFile())
            return QDir::cleanPath(path);
    }
    return {};
}

LanguageAvailability DictionaryTranslationEngine::availability(const QString& sourceCode,
                                                               const QString& targetCode) const
{
    if (!isSupportedPair(languageSubtag(sourceCode), languageSubtag(targetCode)))
        return LanguageAvailability::unsupported;
    return dictionaryPath(sourceCode, targetCode).isEmpty() ? LanguageAvailability::supported
                                                            : LanguageAvailability::installed;
}

Result<DictionaryFile*> DictionaryTranslationEngine::pair(const QString& sourceCode, const QString& targetCode)
{
    const QString key = tolvane::pairKey(sourceCode, targetCode);
    if (auto it = m_pairs.constFind(key); it != m_pairs.cend())
        return it->get();
    const QString source = languageSubtag(sourceCode), target = languageSubtag(targetCode);
    if (!isSupportedPair(source, target))
        return Error{QStringLiteral("Tolvane cannot translate from %1 to %2.")
                         .arg(languageNameOfSubtag(source), languageNameOfSubtag(target))};
    const QString path = dictionaryPath(sourceCode, targetCode);
    if (path.isEmpty())
        return Error{QStringLiteral("The %1 → %2 dictionary is not installed. Run scripts/setup.")
                         .arg(languageNameOfSubtag(source), languageNameOfSubtag(target))};
    auto opened = DictionaryFile::open(path);
    if (!opened)
        return opened.error();
    DictionaryFile* file = opened.value().get();
    m_pairs.insert(key, std::shared_ptr<DictionaryFile>(std::move(opened).value()));
    qCDebug(lcDictionaryEngine) << "loaded" << key << "from" << path << "with" << file->entryCount() << "entries";
    return file;
}

Result<void> DictionaryTranslationEngine::prepare(const QString& sourceCode, const QString& targetCode)
{
    std::lock_guard lock(m_mutex);
    auto loaded = pair(sourceCode, targetCode);
    if (!loaded)
        return loaded.error();
    return {};
}

Result<QString> DictionaryTranslationEngine::translate(const QString& text, const QString& sourceCode,
                                                       const QString& targetCode)
{
    std::lock_guard lock(m_mutex);
    auto loaded = pair(sourceCode, targetCode);
    if (!loaded)
        return loaded.error();
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return Error{QStringLiteral("There is no text to translate.")};
    if (!hasLetter(trimmed))
        return Error{QStringLiteral("“%1” has no words to translate.").arg(trimmed.left(40))};
    const QString source = languageSubtag(sourceCode);
    if (auto word = lookUp(*loaded.value(), trimmed, source))
        return word->gloss();
    const QString cut = trimmed.left(longestPassage);
    if (auto sentence = ApertiumPassageTranslator::translate(cut, source, languageSubtag(targetCode)))
        return *sentence;
    const QString passage = glossPassage(*loaded.value(), cut, source, languageSubtag(targetCode));
    if (passage.isEmpty())
        return Error{QStringLiteral("No translation found for “%1”.").arg(trimmed.left(40))};
    return passage;
}

Result<WordTranslation> DictionaryTranslationEngine::lookUpWord(const QString& word, const QString& sourceCode,
                                                                const QString& targetCode)
{
    std::lock_guard lock(m_mutex);
    auto loaded = pair(sourceCode, targetCode);
    if (!loaded)
        return loaded.error();
    if (auto found = lookUp(*loaded.value(), word.trimmed(), languageSubtag(sourceCode)))
        return *found;
    return Error{QStringLiteral("No translation found for “%1”.").arg(word.trimmed().left(40))};
}

std::optional<WordTranslation> DictionaryTranslationEngine::entryFor(const DictionaryFile& file, const QString& key,
                                                                     const QString& lexicalClass, int depth) const
{
    const QByteArray utf8 = key.toUtf8();
    const auto value = file.find(std::string_view(utf8.constData(), std::size_t(utf8.size())));
    if (!value)
        return std::nullopt;
    WordTranslation result;
    result.word = key;
    result.lemma = key;
    const QStringList lines = QString::fromUtf8(value->data(), qsizetype(value->size())).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (line.startsWith(QLatin1Char('>'))) {
            // A form of another headword: follow it once, carrying the class the link names.
            if (depth > 0 || !result.senses.isEmpty())
                continue;
            const QString lemma = line.mid(1).section(QLatin1Char('\t'), 0, 0);
            const QString linkClass = line.section(QLatin1Char('\t'), 1, 1);
            if (auto target = entryFor(file, lemma, linkClass.isEmpty() ? lexicalClass : linkClass, depth + 1)) {
                target->word = key;
                return target;
            }
            continue;
        }
        WordTranslation::Sense sense;
        sense.lexicalClass = line.section(QLatin1Char('\t'), 0, 0);
        sense.translations = line.section(QLatin1Char('\t'), 1).split(QLatin1Char('|'), Qt::SkipEmptyParts);
        if (!sense.translations.isEmpty())
            result.senses.append(sense);
    }
    if (result.senses.isEmpty())
        return std::nullopt;
    // The sense of the class the caller knows comes first ("went" is the verb "go").
    if (!lexicalClass.isEmpty()) {
        for (qsizetype i = 0; i < result.senses.size(); ++i) {
            if (result.senses[i].lexicalClass == lexicalClass) {
                result.senses.move(i, 0);
                break;
            }
        }
    }
    result.lexicalClass = result.senses.first().lexicalClass;
    return result;
}

QStringList DictionaryTranslationEngine::lemmaCandidates(const QString& word, const QString& sourceLanguage)
{
    QStringList candidates = Lemmatizer::guesses(word, sourceLanguage);
    if (sourceLanguage == QLatin1String("ja")) {
        if (!m_japanese)
            m_japanese = std::make_unique<JapaneseAnalyzer>();
        // One word with its endings ("食べた", "読んでいる"): the first token carries the meaning
        // and the rest only grammar. A phrase with further content words is no single word.
        const auto tokens = m_japanese->tokens(word);
        bool oneWord = !tokens.isEmpty();
        for (qsizetype i = 1; i < tokens.size() && oneWord; ++i) {
            const QString& pos = tokens[i].partOfSpeech;
            oneWord = pos == QStringLiteral("助動詞") || pos == QStringLiteral("助詞") ||
                      (pos == QStringLiteral("動詞") && tokens[i].baseForm.size() <= 2);
        }
        if (oneWord)
            candidates.prepend(tokens.first().baseForm);
    }
    return candidates;
}

std::optional<WordTranslation> DictionaryTranslationEngine::lookUp(const DictionaryFile& file, const QString& typed,
                                                                   const QString& sourceLanguage)
{
    if (typed.isEmpty() || typed.size() > longestWord * 3)
        return std::nullopt;
    // Headwords are composed: Korean typed as separate jamo becomes syllables, "é" one letter.
    const QString word = typed.normalized(QString::NormalizationForm_C);
    if (word.size() > longestWord)
        return std::nullopt;
    if (const QString irregular = Lemmatizer::irregularLemma(word, sourceLanguage); !irregular.isEmpty()) {
        if (auto found = entryFor(file, irregular, {}, 0)) {
            found->word = word;
            return found;
        }
    }
    if (auto exact = entryFor(file, word, {}, 0))
        return exact;
    const QString lower = word.toLower();
    if (lower != word) {
        if (auto folded = entryFor(file, lower, {}, 0)) {
            folded->word = word;
            return folded;
        }
    }
    // German nouns are written with a capital; a lower-cased noun from a heading still finds its
    // entry. A lower-case German word is first read as an inflected verb or adjective ("kleine"
    // is "klein", not "die Kleine"), then as a noun.
    const QString capitalised = lower.left(1).toUpper() + lower.mid(1);
    const bool lowerCaseGerman = sourceLanguage == QLatin1String("de") && word.at(0).isLower();
    auto tryCapitalised = [&]() -> std::optional<WordTranslation> {
        if (capitalised == word)
            return std::nullopt;
        if (auto capital = entryFor(file, capitalised, {}, 0)) {
            capital->word = word;
            return capital;
        }
        return std::nullopt;
    };
    if (!lowerCaseGerman) {
        if (auto found = tryCapitalised())
            return found;
    }
    const QStringList lemmas = lemmaCandidates(word, sourceLanguage);
    if (lowerCaseGerman) {
        for (const QString& lemma : lemmas) {
            if (lemma == word || lemma.isEmpty())
                continue;
            if (auto found = entryFor(file, lemma, {}, 0)) {
                found->word = word;
                return found;
            }
        }
        if (auto found = tryCapitalised())
            return found;
    }
    for (const QString& lemma : lemmas) {
        if (lemma.isEmpty() || lemma == word)
            continue;
        if (auto found = entryFor(file, lemma, {}, 0)) {
            found->word = word;
            return found;
        }
        const QString lemmaCapitalised = lemma.left(1).toUpper() + lemma.mid(1);
        if (sourceLanguage == QLatin1String("de") && lemmaCapitalised != lemma) {
            if (auto found = entryFor(file, lemmaCapitalised, {}, 0)) {
                found->word = word;
                return found;
            }
        }
    }
    return std::nullopt;
}

namespace {

// Words a word-by-word gloss leaves out: articles, the copula and auxiliaries, and grammatical
// particles. They have no translation of their own a learner could use, and shown word for word
// ("die Kind sein spielen") they make the gloss read as broken grammar.
bool isFunctionWord(const QString& word, const QString& language)
{
    static const QHash<QString, QSet<QString>> words = {
        {QStringLiteral("en"),
         {QStringLiteral("the"), QStringLiteral("a"), QStringLiteral("an"), QStringLiteral("am"), QStringLiteral("is"),
          QStringLiteral("are"), QStringLiteral("was"), QStringLiteral("were"), QStringLiteral("be"),
          QStringLiteral("been"), QStringLiteral("being"), QStringLiteral("do"), QStringLiteral("does"),
          QStringLiteral("did")}},
        {QStringLiteral("de"),
         {QStringLiteral("der"), QStringLiteral("die"), QStringLiteral("das"), QStringLiteral("den"),
          QStringLiteral("dem"), QStringLiteral("des"), QStringLiteral("ein"), QStringLiteral("eine"),
          QStringLiteral("einen"), QStringLiteral("einem"), QStringLiteral("einer"), QStringLiteral("eines"),
          QStringLiteral("ist"), QStringLiteral("sind"), QStringLiteral("bin"), QStringLiteral("bist"),
          QStringLiteral("seid"), QStringLiteral("war"), QStringLiteral("waren")}},
        {QStringLiteral("fr"),
         {QStringLiteral("le"), QStringLiteral("la"), QStringLiteral("les"), QStringLiteral("l"), QStringLiteral("un"),
          QStringLiteral("une"), QStringLiteral("des"), QStringLiteral("du")}},
        {QStringLiteral("it"),
         {QStringLiteral("il"), QStringLiteral("lo"), QStringLiteral("la"), QStringLiteral("i"), QStringLiteral("gli"),
          QStringLiteral("le"), QStringLiteral("l"), QStringLiteral("un"), QStringLiteral("uno"),
          QStringLiteral("una")}},
        {QStringLiteral("es"),
         {QStringLiteral("el"), QStringLiteral("la"), QStringLiteral("los"), QStringLiteral("las"),
          QStringLiteral("un"), QStringLiteral("una"), QStringLiteral("unos"), QStringLiteral("unas")}},
        {QStringLiteral("pt"),
         {QStringLiteral("o"), QStringLiteral("a"), QStringLiteral("os"), QStringLiteral("as"), QStringLiteral("um"),
          QStringLiteral("uma"), QStringLiteral("uns"), QStringLiteral("umas")}},
        {QStringLiteral("zh"),
         {QStringLiteral("的"), QStringLiteral("了"), QStringLiteral("着"), QStringLiteral("过"), QStringLiteral("吗"),
          QStringLiteral("呢"), QStringLiteral("吧"), QStringLiteral("啊"), QStringLiteral("地"),
          QStringLiteral("得")}},
    };
    const auto it = words.constFind(language);
    return it != words.cend() && it->contains(word.toLower());
}

bool endsSentence(const QString& text)
{
    static const QString marks = QStringLiteral(".!?。！？…");
    for (const QChar c : text) {
        if (marks.contains(c))
            return true;
    }
    return false;
}

// A gloss a learner can read: the content words in their order, each as "translation
// (original)", joined by " · "; sentence ends are kept, other punctuation and function words go.
// A word without a translation is shown as it is.
class LearnerGloss
{
public:
    void word(const QString& original, const QString& translation)
    {
        if (!m_text.isEmpty())
            m_text += m_sentenceEnded ? QStringLiteral(" ") : QStringLiteral(" · ");
        m_sentenceEnded = false;
        if (translation.isEmpty() || translation.compare(original, Qt::CaseInsensitive) == 0) {
            m_text += original;
        } else {
            m_text += translation + QStringLiteral(" (") + original + QLatin1Char(')');
            m_translated = true;
        }
    }
    void punctuation(const QString& text)
    {
        if (m_text.isEmpty() || m_sentenceEnded || !endsSentence(text))
            return;
        const QString trimmed = text.trimmed();
        m_text += trimmed.isEmpty() ? QStringLiteral(".") : trimmed.left(1);
        m_sentenceEnded = true;
    }
    QString text() const { return m_translated ? m_text : QString(); }

private:
    QString m_text;
    bool m_sentenceEnded = false;
    bool m_translated = false;
};

} // namespace

QString DictionaryTranslationEngine::glossPassage(const DictionaryFile& file, const QString& text,
                                                  const QString& sourceLanguage, const QString& targetLanguage)
{
    Q_UNUSED(targetLanguage)
    LearnerGloss gloss;
    auto translationOf = [&](const QString& word) -> QString {
        if (auto found = lookUp(file, word, sourceLanguage); found && !found->senses.isEmpty())
            return found->senses.first().translations.first();
        return {};
    };

    if (sourceLanguage == QLatin1String("ja")) {
        if (!m_japanese)
            m_japanese = std::make_unique<JapaneseAnalyzer>();
        for (const auto& token : m_japanese->tokens(text)) {
            // Particles and auxiliaries carry grammar, not words a gloss can show.
            if (token.partOfSpeech == QStringLiteral("記号")) {
                gloss.punctuation(token.surface);
                continue;
            }
            // Suffixes (たち) and dependent words (the いる of 遊んでいる) are grammar too.
            if (token.partOfSpeech == QStringLiteral("助詞") || token.partOfSpeech == QStringLiteral("助動詞") ||
                token.subclass == QStringLiteral("接尾") || token.subclass == QStringLiteral("非自立") ||
                !hasLetter(token.surface))
                continue;
            QString translation = translationOf(token.baseForm);
            if (translation.isEmpty())
                translation = translationOf(token.surface);
            gloss.word(token.surface, translation);
        }
        return gloss.text();
    }

    if (writtenWithoutSpaces(sourceLanguage)) {
        // Longest match from each position; characters no headword starts with pass through.
        const QByteArray utf8 = text.toUtf8();
        std::string_view rest(utf8.constData(), std::size_t(utf8.size()));
        while (!rest.empty()) {
            std::size_t matched = 0;
            const QChar first = QString::fromUtf8(rest.data(), qsizetype(std::min<std::size_t>(rest.size(), 4))).at(0);
            if (first.isLetter() && file.longestPrefix(rest, &matched)) {
                const QString word = QString::fromUtf8(rest.data(), qsizetype(matched));
                if (!isFunctionWord(word, sourceLanguage))
                    gloss.word(word, translationOf(word));
            } else {
                matched = 1;
                while (matched < rest.size() && (static_cast<unsigned char>(rest[matched]) & 0xC0) == 0x80)
                    ++matched;
                const QString ch = QString::fromUtf8(rest.data(), qsizetype(matched));
                if (hasLetter(ch))
                    gloss.word(ch, {});
                else
                    gloss.punctuation(ch);
            }
            rest.remove_prefix(matched);
        }
        return gloss.text();
    }

    QTextBoundaryFinder finder(QTextBoundaryFinder::Word, text);
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = finder.toNextBoundary();
        if (end < 0 || end <= start)
            end = text.size();
        const QString segment = text.mid(start, end - start);
        start = end;
        if (!hasLetter(segment)) {
            gloss.punctuation(segment);
            continue;
        }
        // English contractions keep their negation: "don't" is "do" (grammar) and "not".
        if (sourceLanguage == QLatin1String("en") && segment.size() > 3 &&
            (segment.endsWith(QLatin1String("n't"), Qt::CaseInsensitive) ||
             segment.endsWith(QStringLiteral("n\u2019t"), Qt::CaseInsensitive))) {
            static const QHash<QString, QString> irregular = {{QStringLiteral("ca"), QStringLiteral("can")},
                                                              {QStringLiteral("wo"), QStringLiteral("will")},
                                                              {QStringLiteral("sha"), QStringLiteral("shall")}};
            QString base = segment.chopped(3).toLower();
            base = irregular.value(base, base);
            if (!isFunctionWord(base, sourceLanguage))
                gloss.word(base, translationOf(base));
            gloss.word(QStringLiteral("not"), translationOf(QStringLiteral("not")));
            continue;
        }
        if (!isFunctionWord(segment, sourceLanguage))
            gloss.word(segment, translationOf(segment));
    }
    return gloss.text();
}

} // namespace tolvane
