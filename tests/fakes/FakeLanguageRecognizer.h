// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/LanguageRecognizer.h"

#include <QHash>
#include <QList>
#include <QPair>
#include <QStringList>

namespace tolvane {

class FakeLanguageRecognizer final : public LanguageRecognizer
{
public:
    // Answers by exact text; anything else is English.
    QHash<QString, LanguageHypotheses> answers;
    mutable QList<QPair<QString, QStringList>> queries;

    LanguageHypotheses recognize(const QString& text, const QStringList& candidates) const override
    {
        queries.append({text, candidates});
        if (auto it = answers.constFind(text); it != answers.cend())
            return *it;
        LanguageHypotheses english;
        english.dominant = QStringLiteral("en");
        for (const QString& c : candidates)
            english.probability.insert(c, c == QLatin1String("en") ? 1.0 : 0.0);
        return english;
    }
};

} // namespace tolvane
