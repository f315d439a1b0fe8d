// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdlib>

namespace tolvane::fuzz {

// A finding is an abort, so libFuzzer keeps the input that broke the rule.
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

// One scratch folder for the whole run, in memory where the system offers it: every write is
// synced to the disk, which on a real disk would be nearly all the time the run takes.
inline QTemporaryDir* workDirectory(const char* target)
{
    static QTemporaryDir dir(
        QDir(QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm") : QDir::tempPath())
            .filePath(QStringLiteral("tolvane-fuzz-%1-XXXXXX").arg(QLatin1String(target))));
    return &dir;
}

} // namespace tolvane::fuzz
