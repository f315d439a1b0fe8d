// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpellChecker.h"

#include <QHash>
#include <QStringList>

namespace tolvane {

class FakeSpellChecker final : public SpellChecker
{
public:
    QStringList knownWords;
    QHash<QString, QStringList> suggestionTable;
    mutable int suggestionCalls = 0;
    bool isCorrect(const QString& word) const override { return knownWords.contains(word, Qt::CaseInsensitive); }
    QStringList suggestions(const QString& word) const override
    {
        ++suggestionCalls;
        return suggestionTable.value(word);
    }
};

} // namespace tolvane
