// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LexicalTagger.h"

#include <QString>

#include <optional>

namespace tolvane {

// "n.", "v.", "adj.", "adv.", "prep.", "conj.", "pron.", "det.".
QString partOfSpeechAbbreviation(LexicalClass lexicalClass);

// The abbreviation for a word as used in its sentence (or alone when there is none): the class of
// the first word at the word's first case-insensitive occurrence; nothing when the word does not
// occur or the tagger has no class for it.
std::optional<QString> partOfSpeechOf(const QString& word, const std::optional<QString>& sentence,
                                      const LexicalTagger& tagger);

} // namespace tolvane
