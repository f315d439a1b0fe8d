// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The layout of a compiled language model file, shared by the builder that writes it and the
// recogniser that maps it. Everything is little-endian and fixed-size so the file can be used in
// place, without parsing:
//
//   LanguageModelHeader
//   quint16 ngramWeight[ngramBuckets]   ln(count + 1) * ngramScale, character 1- to 4-grams
//   LanguageModelWord word[wordCount]   sorted by key, one per accent-folded lower-case form
//   LanguageModelSuffix suffix[suffixCount]  the spelling dictionary's suffix rules, sorted by key
//   char strips[stripBytes]             UTF-8 texts the suffix rules strip from a base word

#include <QString>
#include <QStringView>

#include <cstdint>

namespace tolvane::languagemodel {

inline constexpr char magic[8] = {'T', 'L', 'V', 'L', 'A', 'N', 'G', '4'};
inline constexpr std::uint32_t ngramBuckets = 1u << 18;
inline constexpr double ngramScale = 2000.0;
inline constexpr int maxNgramOrder = 4;

// What is known about a word in one language.
enum WordFlag : std::uint16_t {
    inDictionary = 1u << 0,   // a spelling dictionary accepts it
    isHeadword = 1u << 1,     // a bilingual dictionary lists it as an entry of this language
    inCorpus = 1u << 2,       // it occurs in running text of this language
    isRareHeadword = 1u << 3, // a large dictionary lists it: a word, but perhaps an unusual one
};

struct LanguageModelHeader
{
    char magic[8];
    std::uint32_t ngramBuckets;
    std::uint32_t wordCount;
    double ngramTotals[maxNgramOrder]; // grams counted per order
    std::uint32_t suffixCount;
    std::uint32_t stripBytes;
};

// A word ending in the text whose key is endingKey may be a base word, minus the strip text at
// strips[stripOffset], plus that ending ("mangeons" = "manger" - "er" + "ons").
struct LanguageModelSuffix
{
    std::uint32_t endingKey;
    std::uint16_t stripOffset;
    std::uint8_t stripLength;
    std::uint8_t endingLength; // in UTF-16 units of the folded ending
};

struct LanguageModelWord
{
    std::uint32_t key;
    std::uint16_t flags;
    std::uint16_t corpusCount; // saturating
};

static_assert(sizeof(LanguageModelHeader) == 56);
static_assert(sizeof(LanguageModelSuffix) == 8);
static_assert(sizeof(LanguageModelWord) == 8);

inline std::uint32_t fnv1a(const char* data, qsizetype size, std::uint32_t seed = 2166136261u)
{
    std::uint32_t hash = seed;
    for (qsizetype i = 0; i < size; ++i) {
        hash ^= static_cast<unsigned char>(data[i]);
        hash *= 16777619u;
    }
    return hash;
}

// The form a word is filed under: lower case, accents dropped (so "eglise" finds "église"),
// ß and ё written as ss and е.
inline QString foldWord(QStringView word)
{
    const QString decomposed = word.toString().toLower().normalized(QString::NormalizationForm_D);
    QString folded;
    folded.reserve(decomposed.size());
    for (const QChar c : decomposed) {
        if (c.category() == QChar::Mark_NonSpacing)
            continue;
        if (c == QChar(0x00DF))
            folded.append(QStringLiteral("ss"));
        else if (c == QChar(0x2019))
            folded.append(QLatin1Char('\''));
        else
            folded.append(c);
    }
    // Cyrillic ё decomposes to е + diaeresis, which the loop above already drops.
    return folded;
}

inline std::uint32_t wordKey(const QString& folded)
{
    const QByteArray utf8 = folded.toUtf8();
    return fnv1a(utf8.constData(), utf8.size());
}

inline bool isWordCharacter(QChar c)
{
    return c.isLetter() || c.category() == QChar::Mark_NonSpacing || c.category() == QChar::Mark_SpacingCombining;
}

inline bool isApostrophe(QChar c)
{
    return c == QLatin1Char('\'') || c == QChar(0x2019);
}

// Splits text into words: runs of letters, keeping an apostrophe between two letters ("j'ai").
template <typename Visitor> void forEachWord(QStringView text, Visitor&& visit)
{
    qsizetype start = -1;
    const qsizetype size = text.size();
    for (qsizetype i = 0; i <= size; ++i) {
        const bool letter = i < size && isWordCharacter(text[i]);
        const bool joiner =
            i < size && start >= 0 && isApostrophe(text[i]) && i + 1 < size && isWordCharacter(text[i + 1]);
        if (letter || joiner) {
            if (start < 0)
                start = i;
            continue;
        }
        if (start >= 0) {
            if (!visit(text.mid(start, i - start)))
                return;
            start = -1;
        }
    }
}

// Calls visit(bucket) for every 1- to 4-gram of the padded word (" word ").
template <typename Visitor> void forEachNgram(const QString& folded, Visitor&& visit)
{
    const QByteArray padded = (QLatin1Char(' ') + folded + QLatin1Char(' ')).toUtf8();
    // Work on code points so a gram never splits a UTF-8 sequence.
    qsizetype starts[256];
    qsizetype count = 0;
    for (qsizetype i = 0; i < padded.size() && count < 255; ++i) {
        if ((static_cast<unsigned char>(padded[i]) & 0xC0) != 0x80)
            starts[count++] = i;
    }
    starts[count] = padded.size();
    for (int order = 1; order <= maxNgramOrder; ++order) {
        for (qsizetype i = 0; i + order <= count; ++i) {
            const qsizetype from = starts[i];
            const qsizetype to = starts[i + order];
            const std::uint32_t hash = fnv1a(padded.constData() + from, to - from,
                                             2166136261u ^ (static_cast<std::uint32_t>(order) * 0x9E3779B9u));
            visit(order, hash & (ngramBuckets - 1));
        }
    }
}

} // namespace tolvane::languagemodel
