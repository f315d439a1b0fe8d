// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace tolvane {

// The English spell checker.
class SpellChecker
{
public:
    virtual ~SpellChecker() = default;

    virtual bool isCorrect(const QString& word) const = 0;
    // Best first. Slow: call only for words that are not correct.
    virtual QStringList suggestions(const QString& word) const = 0;
};

} // namespace tolvane
