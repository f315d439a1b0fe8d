// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/records/JsonRecordFile.h"

#include "core/support/AppPaths.h"
#include "core/support/AtomicFile.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonParseError>

namespace tolvane {

namespace {

// A year of heavy use is a few megabytes; a file this large is not one of ours, and parsing it
// would take the memory of several times its size.
constexpr qint64 largestReadableFile = qint64(64) * 1024 * 1024;

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
    const Result<QString> copy = setFileAside(m_path, recoveryCopySuffix(), SetAside::move);
    if (copy.ok()) {
        qCWarning(m_log).noquote() << QStringLiteral("Could not decode JSON; preserved the original at %1. Error: %2")
                                          .arg(copy.value(), problem.message);
        return;
    }
    qCWarning(m_log).noquote()
        << QStringLiteral("Could not decode JSON or create a recovery copy. Decode error: %1; backup error: %2")
               .arg(problem.message, copy.error().message);
}

void JsonRecordFile::persistBytes(const QByteArray& json) const
{
    const Result<void> written = write(json);
    if (!written.ok())
        qCWarning(m_log).noquote() << QStringLiteral("Failed to persist JSON: %1").arg(written.error().message);
}

Result<void> JsonRecordFile::write(const QByteArray& json) const
{
    return writeFileAtomically(m_path, json);
}

} // namespace tolvane
