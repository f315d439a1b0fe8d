// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace tolvane {

enum class LexicalClass { noun, verb, adjective, adverb, preposition, conjunction, pronoun, determiner };

// The part of speech of an English word in its sentence.
class LexicalTagger
{
public:
    virtual ~LexicalTagger() = default;

    // wordStart and wordLength are in UTF-16 units of sentence.
    virtual std::optional<LexicalClass> lexicalClass(const QString& sentence, qsizetype wordStart,
                                                     qsizetype wordLength) const = 0;
};

} // namespace tolvane
