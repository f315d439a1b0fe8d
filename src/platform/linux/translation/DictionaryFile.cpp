// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/translation/DictionaryFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace tolvane {

namespace {

constexpr std::size_t headerSize = 32;
constexpr std::size_t indexRecordSize = 16;
constexpr char magic[8] = {'T', 'D', 'I', 'C', 'T', 1, 0, 0};

quint32 readU32(const unsigned char* p)
{
    return quint32(p[0]) | quint32(p[1]) << 8 | quint32(p[2]) << 16 | quint32(p[3]) << 24;
}

Error corrupt(const QString& path, const char* why)
{
    return Error{QStringLiteral("The dictionary file %1 is damaged (%2). Run scripts/setup to rebuild it.")
                     .arg(path, QLatin1String(why))};
}

} // namespace

DictionaryFile::~DictionaryFile()
{
    if (m_data)
        munmap(const_cast<unsigned char*>(m_data), m_size);
}

Result<std::unique_ptr<DictionaryFile>> DictionaryFile::open(const QString& path)
{
    const QByteArray native = path.toLocal8Bit();
    const int fd = ::open(native.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return Error{QStringLiteral("Cannot open the dictionary file %1: %2")
                         .arg(path, QString::fromLocal8Bit(strerror(errno)))};
    struct stat info
    {};
    if (fstat(fd, &info) != 0 || info.st_size < off_t(headerSize)) {
        ::close(fd);
        return corrupt(path, "too short");
    }
    const auto size = std::size_t(info.st_size);
    void* mapped = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    ::close(fd);
    if (mapped == MAP_FAILED)
        return Error{QStringLiteral("Cannot map the dictionary file %1").arg(path)};

    std::unique_ptr<DictionaryFile> file(new DictionaryFile);
    file->m_data = static_cast<const unsigned char*>(mapped);
    file->m_size = size;
    const unsigned char* d = file->m_data;
    if (std::memcmp(d, magic, sizeof magic) != 0)
        return corrupt(path, "not a Tolvane dictionary");
    const quint32 count = readU32(d + 8);
    const quint64 indexOffset = readU32(d + 12);
    const quint64 blobOffset = readU32(d + 16);
    const quint64 blobLength = readU32(d + 20);
    const quint64 metaOffset = readU32(d + 24);
    const quint64 metaLength = readU32(d + 28);
    if (indexOffset < headerSize || indexOffset + quint64(count) * indexRecordSize > blobOffset ||
        blobOffset + blobLength > size || metaOffset < blobOffset + blobLength || metaOffset + metaLength > size)
        return corrupt(path, "truncated");
    file->m_count = count;
    file->m_index = d + indexOffset;
    file->m_blob = reinterpret_cast<const char*>(d + blobOffset);
    file->m_meta = std::string_view(reinterpret_cast<const char*>(d + metaOffset), metaLength);

    // Every record must point inside the text and the keys must be sorted, or the binary search
    // could wander; checking now keeps every later look-up free of checks.
    std::string_view previous;
    for (quint32 i = 0; i < count; ++i) {
        const unsigned char* r = file->m_index + std::size_t(i) * indexRecordSize;
        const quint64 keyOffset = readU32(r), keyLength = readU32(r + 4);
        const quint64 valueOffset = readU32(r + 8), valueLength = readU32(r + 12);
        if (keyOffset + keyLength > blobLength || valueOffset + valueLength > blobLength)
            return corrupt(path, "an entry points outside the file");
        const std::string_view key = file->keyAt(i);
        if (i > 0 && !(previous < key))
            return corrupt(path, "the index is out of order");
        previous = key;
    }
    return file;
}

std::string_view DictionaryFile::keyAt(quint32 i) const
{
    const unsigned char* r = m_index + std::size_t(i) * indexRecordSize;
    return {m_blob + readU32(r), readU32(r + 4)};
}

std::string_view DictionaryFile::valueAt(quint32 i) const
{
    const unsigned char* r = m_index + std::size_t(i) * indexRecordSize;
    return {m_blob + readU32(r + 8), readU32(r + 12)};
}

std::optional<std::string_view> DictionaryFile::find(std::string_view key) const
{
    quint32 low = 0, high = m_count;
    while (low < high) {
        const quint32 mid = low + (high - low) / 2;
        const std::string_view candidate = keyAt(mid);
        if (candidate < key)
            low = mid + 1;
        else if (key < candidate)
            high = mid;
        else
            return valueAt(mid);
    }
    return std::nullopt;
}

std::optional<std::string_view> DictionaryFile::longestPrefix(std::string_view text, std::size_t* matchedBytes) const
{
    // Try ever shorter prefixes at UTF-8 character boundaries; words in such scripts are short.
    std::size_t length = std::min<std::size_t>(text.size(), 48);
    while (length > 0) {
        while (length > 0 && length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80)
            --length;
        if (length == 0)
            break;
        if (auto value = find(text.substr(0, length))) {
            if (matchedBytes)
                *matchedBytes = length;
            return value;
        }
        --length;
    }
    return std::nullopt;
}

QStringList DictionaryFile::metadata(const QString& name) const
{
    QStringList values;
    const QString prefix = name + QStringLiteral(": ");
    const auto lines = QString::fromUtf8(m_meta.data(), qsizetype(m_meta.size())).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        if (line.startsWith(prefix))
            values.append(line.mid(prefix.size()));
    }
    return values;
}

} // namespace tolvane
