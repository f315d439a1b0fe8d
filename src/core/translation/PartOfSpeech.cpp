// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/PartOfSpeech.h"

#include "core/support/EnumNames.h"

namespace tolvane {

namespace {
constexpr EnumNames abbreviations{std::array{
    std::pair{LexicalClass::noun, "n."},
    std::pair{LexicalClass::verb, "v."},
    std::pair{LexicalClass::adjective, "adj."},
    std::pair{LexicalClass::adverb, "adv."},
    std::pair{LexicalClass::preposition, "prep."},
    std::pair{LexicalClass::conjunction, "conj."},
    std::pair{LexicalClass::pronoun, "pron."},
    std::pair{LexicalClass::determiner, "det."},
}};
} // namespace

QString partOfSpeechAbbreviation(LexicalClass lexicalClass)
{
    return abbreviations.text(lexicalClass);
}

std::optional<QString> partOfSpeechOf(const QString& word, const std::optional<QString>& sentence,
                                      const LexicalTagger& tagger)
{
    if (word.isEmpty())
        return std::nullopt;
    const QString& text = sentence ? *sentence : word;
    const qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive);
    if (at < 0)
        return std::nullopt;
    const std::optional<LexicalClass> lexicalClass = tagger.lexicalClass(text, at, word.size());
    if (!lexicalClass)
        return std::nullopt;
    return partOfSpeechAbbreviation(*lexicalClass);
}

} // namespace tolvane
