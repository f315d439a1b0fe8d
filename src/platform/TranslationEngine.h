// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tolvane {

enum class LanguageAvailability { installed, supported, unsupported };

// What a dictionary says about one word: the form that was found, its lemma and lexical class,
// and the ranked senses, best first.
struct WordTranslation
{
    struct Sense
    {
        QString lexicalClass; // "n", "v", "adj", … or empty
        QStringList translations;
    };
    QString word;
    QString lemma;
    QString lexicalClass;
    QList<Sense> senses;

    // What a card shows: the first sense's first three translations.
    QString gloss() const
    {
        return senses.isEmpty() ? QString() : senses.first().translations.mid(0, 3).join(QStringLiteral(", "));
    }
};

// On-device translation between English and one learning language. Calls may block; the
// translation service makes them off the main thread, one at a time per engine.
class TranslationEngine
{
public:
    virtual ~TranslationEngine() = default;

    virtual LanguageAvailability availability(const QString& sourceCode, const QString& targetCode) const = 0;
    // Makes the pair ready (loads or installs what it needs).
    virtual Result<void> prepare(const QString& sourceCode, const QString& targetCode) = 0;
    virtual Result<QString> translate(const QString& text, const QString& sourceCode, const QString& targetCode) = 0;
    // The whole answer for one word; an error when the pair is missing or the word unknown.
    virtual Result<WordTranslation> lookUpWord(const QString& word, const QString& sourceCode,
                                               const QString& targetCode) = 0;
};

} // namespace tolvane
