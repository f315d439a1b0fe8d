// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <map>

namespace tolvane::testing {

inline void appendU32(QByteArray& out, quint32 v)
{
    for (int i = 0; i < 4; ++i)
        out.append(char((v >> (8 * i)) & 0xFF));
}

// A dictionary in the compiler's format: headword -> value lines. std::map keeps the byte order
// the file must have.
inline QByteArray buildDictionary(const std::map<QByteArray, QByteArray>& entries,
                                  const QByteArray& meta = "direction: xx-yy")
{
    QByteArray index, blob;
    for (const auto& [key, value] : entries) {
        appendU32(index, quint32(blob.size()));
        appendU32(index, quint32(key.size()));
        blob += key;
        appendU32(index, quint32(blob.size()));
        appendU32(index, quint32(value.size()));
        blob += value;
    }
    QByteArray file("TDICT\x01\x00\x00", 8);
    const quint32 indexOffset = 32, blobOffset = indexOffset + quint32(index.size());
    appendU32(file, quint32(entries.size()));
    appendU32(file, indexOffset);
    appendU32(file, blobOffset);
    appendU32(file, quint32(blob.size()));
    appendU32(file, blobOffset + quint32(blob.size()));
    appendU32(file, quint32(meta.size()));
    return file + index + blob + meta;
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

} // namespace tolvane::testing
