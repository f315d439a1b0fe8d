// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace tolvane {

// Guesses at the dictionary form of an inflected word, most likely first. The compiled
// dictionaries already link the forms the Apertium analysers know to their lemmas; these rules
// catch what is left (German, which has no analyser, Korean endings and particles, Chinese aspect
// particles) and are only ever trusted when the dictionary has the guess.
class Lemmatizer final
{
public:
    static QStringList guesses(const QString& word, const QString& language);
    // A form so irregular that it must be read as its lemma even when the dictionary has a
    // look-alike headword (German "bin" is "sein", not the English word).
    static QString irregularLemma(const QString& word, const QString& language);

private:
    static QStringList english(const QString& word);
    static QStringList german(const QString& word);
    static QStringList romance(const QString& word, const QString& language);
    static QStringList russian(const QString& word);
    static QStringList korean(const QString& word);
    static QStringList chinese(const QString& word);
};

} // namespace tolvane
