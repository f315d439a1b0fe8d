// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/AtomicFile.h"

#include <QFile>
#include <QSaveFile>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tolvane {

Result<void> writeFileAtomically(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    const auto failed = [&] { return Error{QStringLiteral("%1: %2").arg(path, file.errorString())}; };
    if (!file.open(QIODevice::WriteOnly))
        return failed();
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    // commit() syncs the data to the disk before the rename: without it a power cut soon after
    // can leave an empty file in place of both the old content and the new.
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        const Error error = failed();
        file.cancelWriting();
        return error;
    }
    if (!file.commit())
        return failed();
    return {};
}

QString recoveryCopySuffix()
{
    return QStringLiteral(".corrupt-") + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

Result<QString> setFileAside(const QString& path, const QString& suffix, SetAside how)
{
    const QString copy = path + suffix;
    if (how == SetAside::copy) {
        QFile original(path);
        if (!original.copy(copy))
            return Error{original.errorString()};
        return copy;
    }
    // rename(2) moves files and folders alike, never copies, and replaces an older copy whole.
    if (std::rename(QFile::encodeName(path).constData(), QFile::encodeName(copy).constData()) != 0)
        return Error{QString::fromLocal8Bit(std::strerror(errno))};
    return copy;
}

} // namespace tolvane
