// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The layout of the compiled English lexicon: how often each word form is used as a noun, verb,
// adjective and adverb, from WordNet's sense-tagged counts. Fixed-size and sorted so the file is
// used in place:
//
//   EnglishLexiconHeader
//   EnglishLexiconEntry entry[entryCount]   sorted by key (languagemodel::wordKey of the lower-case form)

#include <cstdint>

namespace tolvane::englishlexicon {

inline constexpr char magic[8] = {'T', 'L', 'V', 'L', 'E', 'X', 'N', '1'};

enum OpenClass { noun = 0, verb = 1, adjective = 2, adverb = 3, openClassCount = 4 };

enum FormFlag : std::uint8_t {
    isLemma = 1u << 0,             // the form is a dictionary form itself
    irregularPlural = 1u << 1,     // "children"
    irregularVerbForm = 1u << 2,   // "saw", "written"
    irregularComparison = 1u << 3, // "better"
};

struct EnglishLexiconHeader
{
    char magic[8];
    std::uint32_t entryCount;
    std::uint32_t reserved;
};

struct EnglishLexiconEntry
{
    std::uint32_t key;
    std::uint16_t taggedUses[openClassCount]; // sense-tagged occurrences per class, saturating
    std::uint8_t senses[openClassCount];      // number of senses per class, saturating
    std::uint8_t flags;
    std::uint8_t reserved[3];
};

static_assert(sizeof(EnglishLexiconHeader) == 16);
static_assert(sizeof(EnglishLexiconEntry) == 20);

} // namespace tolvane::englishlexicon
