// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/LanguageModel.h"

#include "core/support/Logging.h"
#include "platform/linux/language/MappedFile.h"

#include <algorithm>
#include <cmath>
#include <cstring>

TOLVANE_DEFINE_LOG(lcLanguageModel, "LanguageModel")

namespace tolvane {

using namespace languagemodel;

LanguageModel::LanguageModel(std::unique_ptr<QFile> file)
    : m_file(std::move(file))
{}

std::unique_ptr<LanguageModel> LanguageModel::open(const QString& path)
{
    std::optional<MappedFile> mapped =
        MappedFile::map(path, sizeof(LanguageModelHeader), "a language model", lcLanguageModel());
    if (!mapped)
        return nullptr;
    const uchar* data = mapped->data;
    const qint64 size = mapped->size;
    const auto* header = reinterpret_cast<const LanguageModelHeader*>(data);
    const qint64 expected =
        static_cast<qint64>(sizeof(LanguageModelHeader)) + static_cast<qint64>(header->ngramBuckets) * 2 +
        static_cast<qint64>(header->wordCount) * static_cast<qint64>(sizeof(LanguageModelWord)) +
        static_cast<qint64>(header->suffixCount) * static_cast<qint64>(sizeof(LanguageModelSuffix)) +
        static_cast<qint64>(header->stripBytes);
    if (std::memcmp(header->magic, magic, sizeof magic) != 0 || header->ngramBuckets != ngramBuckets ||
        expected != size) {
        qCWarning(lcLanguageModel) << "Not a language model of this version:" << path;
        return nullptr;
    }
    std::unique_ptr<LanguageModel> model(new LanguageModel(std::move(mapped->file)));
    model->m_header = header;
    model->m_ngrams = reinterpret_cast<const std::uint16_t*>(data + sizeof(LanguageModelHeader));
    model->m_words = reinterpret_cast<const LanguageModelWord*>(data + sizeof(LanguageModelHeader) +
                                                                static_cast<std::size_t>(ngramBuckets) * 2);
    model->m_suffixes = reinterpret_cast<const LanguageModelSuffix*>(model->m_words + header->wordCount);
    model->m_strips = reinterpret_cast<const char*>(model->m_suffixes + header->suffixCount);
    for (std::uint32_t i = 0; i < header->suffixCount; ++i) {
        const LanguageModelSuffix& suffix = model->m_suffixes[i];
        if (static_cast<std::uint32_t>(suffix.stripOffset) + suffix.stripLength > header->stripBytes) {
            qCWarning(lcLanguageModel) << "Damaged suffix table in" << path;
            return nullptr;
        }
    }
    for (int order = 0; order < maxNgramOrder; ++order)
        model->m_orderOffset[order] = std::log(header->ngramTotals[order] + ngramBuckets);
    return model;
}

std::optional<LanguageModelWord> LanguageModel::word(const QString& folded) const
{
    const std::uint32_t key = wordKey(folded);
    const LanguageModelWord* end = m_words + m_header->wordCount;
    const LanguageModelWord* found = std::lower_bound(
        m_words, end, key, [](const LanguageModelWord& entry, std::uint32_t k) { return entry.key < k; });
    if (found == end || found->key != key)
        return std::nullopt;
    return *found;
}

bool LanguageModel::isInflectionOfKnownWord(const QString& folded) const
{
    const LanguageModelSuffix* end = m_suffixes + m_header->suffixCount;
    const LanguageModelWord* wordsEnd = m_words + m_header->wordCount;
    // A base word keeps at least three letters; endings are at most twelve.
    for (qsizetype length = 1; length <= 12 && length + 3 <= folded.size(); ++length) {
        const std::uint32_t key = wordKey(folded.right(length));
        const auto [first, last] = std::equal_range(
            m_suffixes, end, LanguageModelSuffix{key, 0, 0, 0},
            [](const LanguageModelSuffix& a, const LanguageModelSuffix& b) { return a.endingKey < b.endingKey; });
        if (first == last)
            continue;
        const QByteArray stem = folded.left(folded.size() - length).toUtf8();
        const std::uint32_t stemHash = fnv1a(stem.constData(), stem.size());
        for (const LanguageModelSuffix* rule = first; rule != last; ++rule) {
            if (rule->endingLength != length)
                continue;
            const std::uint32_t baseKey = fnv1a(m_strips + rule->stripOffset, rule->stripLength, stemHash);
            const LanguageModelWord* found = std::lower_bound(
                m_words, wordsEnd, baseKey, [](const LanguageModelWord& e, std::uint32_t k) { return e.key < k; });
            if (found != wordsEnd && found->key == baseKey && (found->flags & (inDictionary | isHeadword)))
                return true;
        }
    }
    return false;
}

double LanguageModel::ngramLogProbability(const QString& folded) const
{
    double sum = 0;
    int count = 0;
    forEachNgram(folded, [&](int order, std::uint32_t bucket) {
        sum += m_ngrams[bucket] / ngramScale - m_orderOffset[order - 1];
        ++count;
    });
    return count == 0 ? 0.0 : sum / count;
}

double LanguageModel::characterLogLikelihood(const QString& folded) const
{
    const QByteArray padded = (QLatin1Char(' ') + folded + QLatin1Char(' ')).toUtf8();
    constexpr qsizetype maxPoints = 64; // longer "words" are judged on their beginning
    qsizetype starts[maxPoints + 1];
    qsizetype points = 0;
    for (qsizetype i = 0; i < padded.size() && points < maxPoints; ++i) {
        if ((static_cast<unsigned char>(padded[i]) & 0xC0) != 0x80)
            starts[points++] = i;
    }
    starts[points] = points < maxPoints ? padded.size() : starts[points - 1];
    const auto count = [&](int order, qsizetype first) {
        const qsizetype from = starts[first];
        const qsizetype to = starts[first + order];
        const std::uint32_t hash = fnv1a(padded.constData() + from, to - from,
                                         2166136261u ^ (static_cast<std::uint32_t>(order) * 0x9E3779B9u));
        return std::exp(m_ngrams[hash & (ngramBuckets - 1)] / ngramScale) - 1.0;
    };
    constexpr double weights[maxNgramOrder] = {0.1, 0.2, 0.3, 0.4};
    const double floor = 0.5 / (m_header->ngramTotals[0] + ngramBuckets);
    double logLikelihood = 0;
    for (qsizetype i = 1; i < points; ++i) {
        double probability = 0;
        double weightUsed = 0;
        const double unigram = count(1, i) / std::max(1.0, m_header->ngramTotals[0]);
        probability += weights[0] * unigram;
        weightUsed += weights[0];
        for (int order = 2; order <= maxNgramOrder && i - order + 1 >= 0; ++order) {
            const qsizetype first = i - order + 1;
            const double history = count(order - 1, first);
            if (history < 1.0)
                break;
            probability += weights[order - 1] * std::min(1.0, count(order, first) / history);
            weightUsed += weights[order - 1];
        }
        logLikelihood += std::log(probability / weightUsed + floor);
    }
    return logLikelihood;
}

} // namespace tolvane
