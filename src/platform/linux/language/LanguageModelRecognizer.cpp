// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/LanguageModelRecognizer.h"

#include "core/support/AppPaths.h"

#include "core/support/Logging.h"
#include "platform/linux/language/LanguageModel.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>
#include <vector>

TOLVANE_DEFINE_LOG(lcLanguageModelRecognizer, "LanguageModelRecognizer")

namespace tolvane {

using namespace languagemodel;

namespace {

// A look-up examines a word, a sentence or at most a short paragraph. Longer input (a whole
// page pasted by accident) is judged on its beginning so that a call stays within microseconds.
constexpr qsizetype examinedLength = 1000;
constexpr int examinedWords = 64;

// A word both languages confirm cannot decide between them.
constexpr double sharedWordCeiling = 0.55;

// How much the spelling of a word (its letter sequence) counts next to dictionary evidence, and
// the most one word's spelling can count against a language.
constexpr double ngramWeight = 0.4;
constexpr double ngramSpread = 10.0;
constexpr double scriptMismatchPenalty = 8.0;
constexpr double ocrVariantDiscount = 0.6;
// A word nobody lists, but which is a listed word with one of the language's endings.
constexpr double inflectionStrength = 0.5;

enum class Script { latin, cyrillic, han, kana, hangul, other };

Script scriptOf(char32_t c)
{
    if (c < 0x250 && QChar::isLetter(c))
        return Script::latin;
    if (c >= 0x1E00 && c <= 0x1EFF)
        return Script::latin;
    if (c >= 0x400 && c <= 0x52F)
        return Script::cyrillic;
    if (c >= 0x3040 && c <= 0x30FF)
        return Script::kana;
    if ((c >= 0x3400 && c <= 0x4DBF) || (c >= 0x4E00 && c <= 0x9FFF) || (c >= 0x20000 && c <= 0x2FA1F))
        return Script::han;
    if ((c >= 0xAC00 && c <= 0xD7AF) || (c >= 0x1100 && c <= 0x11FF) || (c >= 0x3130 && c <= 0x318F))
        return Script::hangul;
    return Script::other;
}

bool writes(const QString& code, Script script)
{
    if (code == QLatin1String("ru"))
        return script == Script::cyrillic;
    if (code == QLatin1String("ja"))
        return script == Script::kana || script == Script::han;
    if (code == QLatin1String("zh-Hans") || code == QLatin1String("zh"))
        return script == Script::han;
    if (code == QLatin1String("ko"))
        return script == Script::hangul || script == Script::han;
    return script == Script::latin;
}

// How firmly a language claims a word: each source that lists it adds to the claim, running text
// the more the more often the word occurs. A claim of confirmedStrength or more is a word of
// everyday use in that language.
constexpr double confirmedStrength = 2.5;

double lexicalStrength(const std::optional<LanguageModelWord>& entry, bool* confirmed)
{
    *confirmed = false;
    if (!entry)
        return 0.0;
    double strength = 0;
    if (entry->flags & inDictionary)
        strength += 1.0;
    if (entry->flags & isHeadword)
        strength += 1.5;
    if (entry->flags & isRareHeadword)
        strength += 0.5;
    if (entry->corpusCount > 0)
        strength += std::min(2.5, 0.8 + 0.8 * std::log10(static_cast<double>(entry->corpusCount)));
    *confirmed = strength >= confirmedStrength;
    return strength;
}

// Misreadings a text recogniser makes ("rn" for "m", "l" for "i", "b" for "h"): a word nobody
// knows is tried again as each of them.
QStringList misreadingVariants(const QString& folded)
{
    static const QList<QPair<QString, QString>> confusions = {
        {QStringLiteral("rn"), QStringLiteral("m")}, {QStringLiteral("cl"), QStringLiteral("d")},
        {QStringLiteral("vv"), QStringLiteral("w")}, {QStringLiteral("ii"), QStringLiteral("u")},
        {QStringLiteral("li"), QStringLiteral("h")}, {QStringLiteral("m"), QStringLiteral("rn")},
        {QStringLiteral("l"), QStringLiteral("i")},  {QStringLiteral("i"), QStringLiteral("l")},
        {QStringLiteral("b"), QStringLiteral("h")},  {QStringLiteral("h"), QStringLiteral("b")},
        {QStringLiteral("c"), QStringLiteral("e")},  {QStringLiteral("e"), QStringLiteral("c")},
    };
    QStringList variants;
    for (const auto& [from, to] : confusions) {
        for (qsizetype at = folded.indexOf(from); at >= 0; at = folded.indexOf(from, at + 1)) {
            QString variant = folded;
            variant.replace(at, from.size(), to);
            variants.append(variant);
            if (variants.size() >= 24)
                return variants;
        }
    }
    return variants;
}

} // namespace

LanguageModelRecognizer::LanguageModelRecognizer(QString modelDirectory)
    : m_directory(std::move(modelDirectory))
{
    if (m_directory.isEmpty())
        qCWarning(lcLanguageModelRecognizer) << "No language models found; text will be told apart by script only";
}

LanguageModelRecognizer::~LanguageModelRecognizer() = default;

QString LanguageModelRecognizer::defaultModelDirectory()
{
    const QStringList places = {
        qEnvironmentVariable("TOLVANE_LANGUAGE_MODEL_DIR"),
        installedDataDirectory() + QStringLiteral("/language"),
    };
    for (const QString& place : places) {
        if (!place.isEmpty() && QFileInfo::exists(place + QStringLiteral("/en.langmodel")))
            return place;
    }
    return {};
}

const LanguageModel* LanguageModelRecognizer::model(const QString& code) const
{
    // Models are read-only once mapped and never unloaded, so only the cache itself needs a lock.
    const QMutexLocker locker(&m_modelsMutex);
    auto found = m_models.constFind(code);
    if (found == m_models.cend()) {
        std::shared_ptr<LanguageModel> loaded;
        if (!m_directory.isEmpty() && !code.contains(QLatin1Char('/'))) {
            const QString path = QDir(m_directory).filePath(code + QStringLiteral(".langmodel"));
            if (QFileInfo::exists(path))
                loaded = LanguageModel::open(path);
        }
        found = m_models.insert(code, loaded);
    }
    return found->get();
}

LanguageHypotheses LanguageModelRecognizer::recognize(const QString& text, const QStringList& candidates) const
{
    LanguageHypotheses result;
    if (candidates.isEmpty())
        return result;
    const qsizetype n = candidates.size();
    std::vector<const LanguageModel*> models(static_cast<std::size_t>(n));
    for (qsizetype i = 0; i < n; ++i)
        models[static_cast<std::size_t>(i)] = model(candidates[i]);

    const QStringView examined = QStringView(text).left(examinedLength);
    std::vector<double> scores(static_cast<std::size_t>(n), 0.0);

    // Script: every letter a candidate does not write counts against it.
    int letters = 0;
    std::vector<int> foreignLetters(static_cast<std::size_t>(n), 0);
    int cjkLetters = 0;
    int kanaLetters = 0;
    for (const char32_t c : examined.toUcs4()) {
        const Script script = scriptOf(c);
        if (script == Script::other)
            continue;
        ++letters;
        cjkLetters += script == Script::han || script == Script::kana || script == Script::hangul;
        kanaLetters += script == Script::kana;
        for (qsizetype i = 0; i < n; ++i)
            foreignLetters[static_cast<std::size_t>(i)] += !writes(candidates[i], script);
    }
    if (letters == 0)
        return result; // emoji, digits, punctuation: nothing to tell

    // Words: dictionary evidence and character n-grams, for the candidates that have a model.
    int words = 0;
    int lastConfirmedCount = 0;
    std::vector<bool> lastConfirmed(static_cast<std::size_t>(n), false);
    forEachWord(examined, [&](QStringView word) {
        const Script script = scriptOf(word.front().unicode());
        if (script != Script::latin && script != Script::cyrillic)
            return ++words < examinedWords; // the models know alphabetic languages only
        const QString folded = foldWord(word);
        std::vector<double> strength(static_cast<std::size_t>(n), 0.0);
        std::vector<double> ngram(static_cast<std::size_t>(n), 0.0);
        double strongest = 0;
        double lowestNgram = 0;
        bool anyNgram = false;
        lastConfirmedCount = 0;
        for (qsizetype i = 0; i < n; ++i) {
            const auto k = static_cast<std::size_t>(i);
            lastConfirmed[k] = false;
            if (!models[k])
                continue;
            bool confirmed = false;
            strength[k] = lexicalStrength(models[k]->word(folded), &confirmed);
            if (strength[k] == 0 && models[k]->isInflectionOfKnownWord(folded))
                strength[k] = inflectionStrength;
            lastConfirmed[k] = confirmed;
            lastConfirmedCount += confirmed;
            strongest = std::max(strongest, strength[k]);
            ngram[k] = models[k]->characterLogLikelihood(folded);
            lowestNgram = anyNgram ? std::min(lowestNgram, ngram[k]) : ngram[k];
            anyNgram = true;
        }
        // Only a word no candidate knows as such is tried as a misreading.
        if (strongest <= 1.0 && folded.size() > 2) {
            for (const QString& variant : misreadingVariants(folded)) {
                for (qsizetype i = 0; i < n; ++i) {
                    const auto k = static_cast<std::size_t>(i);
                    if (!models[k])
                        continue;
                    bool confirmed = false;
                    const double s = lexicalStrength(models[k]->word(variant), &confirmed) * ocrVariantDiscount;
                    strength[k] = std::max(strength[k], s);
                }
            }
        }
        double highestNgram = lowestNgram;
        for (qsizetype i = 0; i < n; ++i) {
            if (models[static_cast<std::size_t>(i)])
                highestNgram = std::max(highestNgram, ngram[static_cast<std::size_t>(i)]);
        }
        for (qsizetype i = 0; i < n; ++i) {
            const auto k = static_cast<std::size_t>(i);
            // A language without a model is scored as the least likely of those with one.
            const double likelihood = models[k] ? ngram[k] : lowestNgram - 1.0;
            scores[k] += strength[k] + ngramWeight * std::max(likelihood - highestNgram, -ngramSpread);
        }
        return ++words < examinedWords;
    });

    for (qsizetype i = 0; i < n; ++i) {
        const auto k = static_cast<std::size_t>(i);
        const double foreignShare = static_cast<double>(foreignLetters[k]) / letters;
        scores[k] -= scriptMismatchPenalty * foreignShare * std::max(1, words);
    }
    // Kana marks Japanese; Han alone is read as Chinese first.
    if (cjkLetters > 0) {
        for (qsizetype i = 0; i < n; ++i) {
            const QString& code = candidates[i];
            if (code == QLatin1String("ja") && kanaLetters > 0)
                scores[static_cast<std::size_t>(i)] += 2.0;
            if ((code == QLatin1String("zh-Hans") || code == QLatin1String("zh")) && kanaLetters == 0)
                scores[static_cast<std::size_t>(i)] += 1.0;
        }
    }

    const double best = *std::max_element(scores.cbegin(), scores.cend());
    double sum = 0;
    std::vector<double> probabilities(static_cast<std::size_t>(n));
    for (std::size_t k = 0; k < probabilities.size(); ++k) {
        probabilities[k] = std::exp(scores[k] - best);
        sum += probabilities[k];
    }
    std::size_t dominant = 0;
    for (std::size_t k = 0; k < probabilities.size(); ++k) {
        probabilities[k] /= sum;
        if (probabilities[k] > probabilities[dominant])
            dominant = k;
    }

    // One word that two candidates both use every day: neither may claim it.
    if (words == 1 && lastConfirmedCount >= 2 && lastConfirmed[dominant] &&
        probabilities[dominant] > sharedWordCeiling) {
        const double excess = probabilities[dominant] - sharedWordCeiling;
        probabilities[dominant] = sharedWordCeiling;
        double othersConfirmed = 0;
        for (std::size_t k = 0; k < probabilities.size(); ++k)
            othersConfirmed += (k != dominant && lastConfirmed[k]) ? 1 : 0;
        for (std::size_t k = 0; k < probabilities.size(); ++k) {
            if (k != dominant && lastConfirmed[k])
                probabilities[k] += excess / othersConfirmed;
        }
    }

    result.dominant = candidates[static_cast<qsizetype>(dominant)];
    for (qsizetype i = 0; i < n; ++i)
        result.probability.insert(candidates[i], probabilities[static_cast<std::size_t>(i)]);
    return result;
}

} // namespace tolvane
