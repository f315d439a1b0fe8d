// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/PartOfSpeech.h"

namespace tolvane {

QString partOfSpeechAbbreviation(LexicalClass lexicalClass)
{
    switch (lexicalClass) {
    case LexicalClass::noun:
        return QStringLiteral("n.");
    case LexicalClass::verb:
        return QStringLiteral("v.");
    case LexicalClass::adjective:
        return QStringLiteral("adj.");
    case LexicalClass::adverb:
        return QStringLiteral("adv.");
    case LexicalClass::preposition:
        return QStringLiteral("prep.");
    case LexicalClass::conjunction:
        return QStringLiteral("conj.");
    case LexicalClass::pronoun:
        return QStringLiteral("pron.");
    case LexicalClass::determiner:
        return QStringLiteral("det.");
    }
    return {};
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
