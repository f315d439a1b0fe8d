// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LexicalTagger.h"

#include <QString>

#include <memory>

namespace tolvane {

class EnglishLexicon;

// Parts of speech of English words in their sentence: what WordNet says each word is used as
// most often, the closed classes (determiners, pronouns, prepositions, conjunctions, auxiliaries)
// from our own lists, and rules about the word's clause (after "the" comes a noun or an
// adjective, after "to", a modal or "they" a verb, a particle with no object is an adverb, a
// singular noun takes no bare verb, after "be" or "seem" comes a quality, …). Words settle left
// to right twice: first against their right neighbour's class on its own, then against its class
// in context.
class WordNetLexicalTagger final : public LexicalTagger
{
public:
    // lexiconPath is the compiled WordNet lexicon; without it only the closed classes are known.
    explicit WordNetLexicalTagger(const QString& lexiconPath);
    ~WordNetLexicalTagger() override;

    // The compiled lexicon in the directory of the language models.
    static QString defaultLexiconPath();
    bool hasLexicon() const;

    std::optional<LexicalClass> lexicalClass(const QString& sentence, qsizetype wordStart,
                                             qsizetype wordLength) const override;

private:
    std::unique_ptr<EnglishLexicon> m_lexicon;
};

} // namespace tolvane
