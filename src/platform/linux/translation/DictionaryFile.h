// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <string_view>

namespace tolvane {

// One compiled direction (".tdict"), mapped read-only: loading costs a map and a header check, and
// a look-up is a binary search over the sorted index. The file is validated once, on open, so a
// truncated or corrupt file is refused instead of being read out of bounds later.
class DictionaryFile final
{
public:
    ~DictionaryFile();
    DictionaryFile(const DictionaryFile&) = delete;
    DictionaryFile& operator=(const DictionaryFile&) = delete;

    static Result<std::unique_ptr<DictionaryFile>> open(const QString& path);

    // The raw entry of a headword (UTF-8 bytes, exact match), or nothing.
    std::optional<std::string_view> find(std::string_view key) const;
    // The longest headword that starts text (bytes), for scripts written without spaces.
    std::optional<std::string_view> longestPrefix(std::string_view text, std::size_t* matchedBytes) const;

    quint32 entryCount() const { return m_count; }
    std::size_t sizeInBytes() const { return m_size; }
    // "direction", "source" and the like, as written by the compiler.
    QStringList metadata(const QString& name) const;

private:
    DictionaryFile() = default;
    std::string_view keyAt(quint32 i) const;
    std::string_view valueAt(quint32 i) const;

    const unsigned char* m_data = nullptr;
    std::size_t m_size = 0;
    quint32 m_count = 0;
    const unsigned char* m_index = nullptr;
    const char* m_blob = nullptr;
    std::string_view m_meta;
};

} // namespace tolvane
