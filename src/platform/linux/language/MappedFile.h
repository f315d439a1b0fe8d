// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QLoggingCategory>
#include <QString>

#include <memory>
#include <optional>

namespace tolvane {

// A compiled data file mapped whole, read-only; the mapping lives as long as `file`.
struct MappedFile
{
    std::unique_ptr<QFile> file;
    const uchar* data = nullptr;
    qint64 size = 0;

    // Nothing, after one warning under `log`, when the file cannot be opened or mapped, or is
    // shorter than `minimumSize` (then it is "not <kind> of this version").
    static std::optional<MappedFile> map(const QString& path, qint64 minimumSize, const char* kind,
                                         const QLoggingCategory& log);
};

} // namespace tolvane
