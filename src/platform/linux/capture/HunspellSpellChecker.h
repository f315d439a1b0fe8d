// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/SpellChecker.h"

#include <QMutex>

#include <memory>

class Hunspell;

namespace tolvane {

// Hunspell with the en_US dictionary. Safe to use from several threads: the OCR fallback looks
// for suggestions on a worker while the main thread may check a word.
class HunspellSpellChecker final : public SpellChecker
{
public:
    // dictionaryFolder: where en_US.aff and en_US.dic are; empty looks in the usual places.
    explicit HunspellSpellChecker(const QString& dictionaryFolder = {});
    ~HunspellSpellChecker() override;

    // Whether a dictionary was found. Without one every word counts as correct.
    bool isLoaded() const { return m_hunspell != nullptr; }

    bool isCorrect(const QString& word) const override;
    QStringList suggestions(const QString& word) const override;

private:
    mutable QMutex m_mutex;
    std::unique_ptr<Hunspell> m_hunspell;
};

} // namespace tolvane
