// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace tolvane {

// One learning language as the pickers show it.
struct LanguageOption
{
    QString name; // display name, "Chinese (Simplified)"
    QString code; // the value stored as the target language, "zh-Hans"
    QString flag; // flag emoji
};

// The learning languages in picker order.
const QList<LanguageOption>& languageOptions();

// The option with this code, or nullptr for a code outside the table.
const LanguageOption* findLanguageOption(const QString& code);

inline QString englishLanguageCode()
{
    return QStringLiteral("en");
}
inline QString defaultTargetLanguageCode()
{
    return QStringLiteral("ru");
}

// Chinese, Japanese and Korean: their text is never taken for target-language text, so these
// targets always translate from English.
bool isDetectionExcluded(const QString& code);

// "Chinese", "French", …; the code in upper case outside the table.
QString languageShortName(const QString& code);

// The language alone, in lower case: "zh-Hans" → "zh", "pt_BR" → "pt"; "?" for no code.
QString languageSubtag(const QString& code);
// The one key of a pair of languages, as translation sessions and dictionary files are named:
// "en-zh" for English → "zh-Hans".
QString pairKey(const QString& sourceCode, const QString& targetCode);
// Whether a language subtag ("zh", "fr", …) is one of the learning languages.
bool isLearningLanguage(const QString& subtag);
// "English", "Chinese", …, by language subtag; the subtag in upper case outside the table.
QString languageNameOfSubtag(const QString& subtag);
// "ZH" for "zh-Hans", otherwise the code in upper case.
QString labelCode(const QString& code);
// "fr-FR", "pt-BR", …; a code outside the table passes through.
QString speechLocaleCode(const QString& code);
// The languages the screen text recogniser is asked for, English first.
QStringList recognitionLanguages(const QString& code);

} // namespace tolvane
