// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/linux/language/EnglishLexiconFormat.h"

#include <QFile>
#include <QString>

#include <memory>
#include <optional>

namespace tolvane {

// WordNet's view of English words, mapped read-only from the compiled lexicon file.
class EnglishLexicon final
{
public:
    // Nothing when the file is missing or damaged (with one log line).
    static std::unique_ptr<EnglishLexicon> open(const QString& path);

    // The entry of a lower-case word form.
    std::optional<englishlexicon::EnglishLexiconEntry> entry(const QString& lowerCaseForm) const;

private:
    explicit EnglishLexicon(std::unique_ptr<QFile> file);

    std::unique_ptr<QFile> m_file;
    const englishlexicon::EnglishLexiconEntry* m_entries = nullptr;
    std::uint32_t m_count = 0;
};

} // namespace tolvane
