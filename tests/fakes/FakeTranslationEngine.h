// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/TranslationEngine.h"

#include <QHash>
#include <QList>
#include <QPair>

namespace tolvane {

class FakeTranslationEngine final : public TranslationEngine
{
public:
    LanguageAvailability availabilityAnswer = LanguageAvailability::installed;
    QHash<QString, QString> translations; // by source text
    QString prepareError;                 // non-empty: prepare fails with it
    QList<QPair<QString, QString>> prepared;
    QList<QString> translated;

    LanguageAvailability availability(const QString&, const QString&) const override { return availabilityAnswer; }
    Result<void> prepare(const QString& source, const QString& target) override
    {
        prepared.append({source, target});
        if (!prepareError.isEmpty())
            return Error{prepareError};
        return {};
    }
    Result<QString> translate(const QString& text, const QString&, const QString&) override
    {
        translated.append(text);
        if (auto it = translations.constFind(text); it != translations.cend())
            return *it;
        return Error{QStringLiteral("No translation for ") + text};
    }
    // One sense of the comma-separated translation.
    Result<WordTranslation> lookUpWord(const QString& word, const QString& source, const QString& target) override
    {
        const Result<QString> gloss = translate(word, source, target);
        if (!gloss.ok())
            return gloss.error();
        return WordTranslation{word, word, {}, {{{}, gloss.value().split(QStringLiteral(", "))}}};
    }
};

} // namespace tolvane
