// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/JsonRecordFile.h"

#include "core/support/AppPaths.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonParseError>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace tolvane {

namespace {

// A year of heavy use is a few megabytes; a file this large is not one of ours, and parsing it
// would take the memory of several times its size.
constexpr qint64 largestReadableFile = qint64(64) * 1024 * 1024;

QString systemError(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

QString recordsDirectory()
{
    return dataDirectory();
}

JsonRecordFile::JsonRecordFile(const QString& directory, const QString& fileName, LogCategory log)
    : m_path(directory + QLatin1Char('/') + fileName)
    , m_log(log)
{
    ensurePrivateDirectory(directory);
}

std::optional<Result<QByteArray>> JsonRecordFile::read() const
{
    const QFileInfo info(m_path);
    if (!info.exists() && !info.isSymLink())
        return std::nullopt;
    // Opening a named pipe or a device would wait for a writer that may never come.
    if (!info.isFile())
        return Result<QByteArray>(Error{QStringLiteral("%1 is not a regular file").arg(m_path)});
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return Result<QByteArray>(Error{file.errorString()});
    if (file.size() > largestReadableFile)
        return Result<QByteArray>(Error{QStringLiteral("the file is too large (%1 bytes)").arg(file.size())});
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Result<QByteArray>(Error{file.errorString()});
    return Result<QByteArray>(std::move(bytes));
}

Result<QJsonArray> JsonRecordFile::parseArray(const QByteArray& json)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Error{QStringLiteral("%1 at offset %2").arg(parseError.errorString()).arg(parseError.offset)};
    if (!document.isArray())
        return Error{QStringLiteral("expected an array of records")};
    return document.array();
}

void JsonRecordFile::setAside(const Error& problem) const
{
    const QString copy = m_path + QStringLiteral(".corrupt-") + RecordJson::uuidText(QUuid::createUuid());
    // rename(2) moves files and directories alike and never copies; a fresh identifier means no
    // earlier recovery copy can be in the way.
    if (std::rename(QFile::encodeName(m_path).constData(), QFile::encodeName(copy).constData()) == 0) {
        qCWarning(m_log).noquote() << QStringLiteral("Could not decode JSON; preserved the original at %1. Error: %2")
                                          .arg(copy, problem.message);
        return;
    }
    const QString moveError = systemError(errno);
    qCWarning(m_log).noquote()
        << QStringLiteral("Could not decode JSON or create a recovery copy. Decode error: %1; backup error: %2")
               .arg(problem.message, moveError);
}

void JsonRecordFile::persistBytes(const QByteArray& json) const
{
    const Result<void> written = write(json);
    if (!written.ok())
        qCWarning(m_log).noquote() << QStringLiteral("Failed to persist JSON: %1").arg(written.error().message);
}

Result<void> JsonRecordFile::write(const QByteArray& json) const
{
    const QString temporaryPath = m_path + QStringLiteral(".tmp");
    QFile file(temporaryPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return Error{QStringLiteral("%1: %2").arg(temporaryPath, file.errorString())};
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    const auto fail = [&](const QString& what) {
        file.close();
        QFile::remove(temporaryPath);
        return Error{QStringLiteral("%1: %2").arg(temporaryPath, what)};
    };
    if (file.write(json) != json.size() || !file.flush())
        return fail(file.errorString());
    // Without this, a power cut soon after the rename can leave an empty file in place of both
    // the old content and the new.
    if (::fdatasync(file.handle()) != 0)
        return fail(systemError(errno));
    file.close();
    if (std::rename(QFile::encodeName(temporaryPath).constData(), QFile::encodeName(m_path).constData()) != 0) {
        const QString error = systemError(errno);
        QFile::remove(temporaryPath);
        return Error{QStringLiteral("%1: %2").arg(m_path, error)};
    }
    return {};
}

} // namespace tolvane
