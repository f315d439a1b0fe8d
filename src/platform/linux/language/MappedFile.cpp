// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/language/MappedFile.h"

namespace tolvane {

std::optional<MappedFile> MappedFile::map(const QString& path, qint64 minimumSize, const char* kind,
                                          const QLoggingCategory& log)
{
    MappedFile mapped{std::make_unique<QFile>(path)};
    if (!mapped.file->open(QIODevice::ReadOnly)) {
        qCWarning(log) << "Cannot open" << path << mapped.file->errorString();
        return std::nullopt;
    }
    mapped.size = mapped.file->size();
    if (mapped.size < minimumSize) {
        qCWarning(log) << "Not" << kind << "of this version:" << path;
        return std::nullopt;
    }
    mapped.data = mapped.file->map(0, mapped.size);
    if (!mapped.data) {
        qCWarning(log) << "Cannot map" << path << mapped.file->errorString();
        return std::nullopt;
    }
    return mapped;
}

} // namespace tolvane
