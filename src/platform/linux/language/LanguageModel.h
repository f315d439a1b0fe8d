// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/language/LanguageModelFormat.h"

#include <QFile>
#include <QString>

#include <memory>
#include <optional>

namespace tolvane {

// One language's compiled model, mapped read-only from its file: nothing is parsed or copied,
// so loading costs a few system calls and only the pages a look-up touches become resident.
class LanguageModel final
{
public:
    // Nothing when the file is missing, truncated or of another format (with one log line).
    static std::unique_ptr<LanguageModel> open(const QString& path);

    // What the model knows about a word already folded with languagemodel::foldWord.
    std::optional<languagemodel::LanguageModelWord> word(const QString& folded) const;

    // Whether the word is a known word with one of the spelling dictionary's endings put on it.
    bool isInflectionOfKnownWord(const QString& folded) const;

    // Mean log-probability of the word's character n-grams; higher is more typical.
    double ngramLogProbability(const QString& folded) const;

    // Log-likelihood of the word's letters one after another, each predicted from the up to three
    // before it (orders interpolated), word boundaries included.
    double characterLogLikelihood(const QString& folded) const;

private:
    explicit LanguageModel(std::unique_ptr<QFile> file);

    std::unique_ptr<QFile> m_file;
    const languagemodel::LanguageModelHeader* m_header = nullptr;
    const std::uint16_t* m_ngrams = nullptr;
    const languagemodel::LanguageModelWord* m_words = nullptr;
    const languagemodel::LanguageModelSuffix* m_suffixes = nullptr;
    const char* m_strips = nullptr;
    double m_orderOffset[languagemodel::maxNgramOrder] = {};
};

} // namespace tolvane
