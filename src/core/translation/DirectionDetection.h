// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/translation/DetectedDirection.h"

#include <QString>

#include <optional>

namespace tolvane {

class LanguageRecognizer;
class Transliterator;

// The two languages of a translation, as language codes ("en", "fr", "zh-Hans").
struct LanguagePair
{
    QString source;
    QString target;
    bool operator==(const LanguagePair&) const = default;
};

// Which way to translate text the user pointed at. English wins whenever the evidence is short,
// weak or ambiguous; Chinese, Japanese and Korean targets always translate from English.
DetectedDirection detectDirection(const QString& text, const QString& targetCode, const LanguageRecognizer& recognizer);

// "EN → FR" or "FR → EN".
QString makeDirectionLabel(DetectedDirection direction, const QString& targetCode);
// Before any text has been seen: always the English-to-target form.
QString makeDirectionLabel(const QString& targetCode);

LanguagePair languagePair(DetectedDirection direction, const QString& targetCode);

// Characters as the user sees them (grapheme clusters), not UTF-16 units.
qsizetype userPerceivedLength(const QString& text);

bool containsHanCharacters(const QString& text);

// Pinyin for Chinese, hiragana for Japanese, shown under a translation; nothing when the text
// has no Han character or the reading would only repeat it.
std::optional<QString> pronunciationReading(const QString& text, const QString& targetCode,
                                            const Transliterator& transliterator);

} // namespace tolvane
