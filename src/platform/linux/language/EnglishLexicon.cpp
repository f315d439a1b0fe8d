// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/EnglishLexicon.h"

#include "core/support/Logging.h"
#include "platform/linux/language/LanguageModelFormat.h"
#include "platform/linux/language/MappedFile.h"

#include <algorithm>
#include <cstring>

TOLVANE_DEFINE_LOG(lcEnglishLexicon, "EnglishLexicon")

namespace tolvane {

using namespace englishlexicon;

EnglishLexicon::EnglishLexicon(std::unique_ptr<QFile> file)
    : m_file(std::move(file))
{}

std::unique_ptr<EnglishLexicon> EnglishLexicon::open(const QString& path)
{
    std::optional<MappedFile> mapped =
        MappedFile::map(path, sizeof(EnglishLexiconHeader), "an English lexicon", lcEnglishLexicon());
    if (!mapped)
        return nullptr;
    const uchar* data = mapped->data;
    const qint64 size = mapped->size;
    const auto* header = reinterpret_cast<const EnglishLexiconHeader*>(data);
    if (std::memcmp(header->magic, magic, sizeof magic) != 0 ||
        static_cast<qint64>(sizeof(EnglishLexiconHeader) + header->entryCount * sizeof(EnglishLexiconEntry)) != size) {
        qCWarning(lcEnglishLexicon) << "Not an English lexicon of this version:" << path;
        return nullptr;
    }
    std::unique_ptr<EnglishLexicon> lexicon(new EnglishLexicon(std::move(mapped->file)));
    lexicon->m_entries = reinterpret_cast<const EnglishLexiconEntry*>(data + sizeof(EnglishLexiconHeader));
    lexicon->m_count = header->entryCount;
    return lexicon;
}

std::optional<EnglishLexiconEntry> EnglishLexicon::entry(const QString& lowerCaseForm) const
{
    const std::uint32_t key = languagemodel::wordKey(lowerCaseForm);
    const EnglishLexiconEntry* end = m_entries + m_count;
    const EnglishLexiconEntry* found =
        std::lower_bound(m_entries, end, key, [](const EnglishLexiconEntry& e, std::uint32_t k) { return e.key < k; });
    if (found == end || found->key != key)
        return std::nullopt;
    return *found;
}

} // namespace tolvane
