// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/support/AppPaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace tolvane {

QString configDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/Tolvane");
}

QString dataDirectory()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Tolvane");
}

QString installedDataDirectory()
{
    const QString fromEnvironment = qEnvironmentVariable("TOLVANE_DATA_DIR");
    if (!fromEnvironment.isEmpty())
        return fromEnvironment;
    const QString executableDir =
        QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QDir::currentPath();
    return QDir::cleanPath(executableDir + QStringLiteral("/../share/tolvane"));
}

bool ensurePrivateDirectory(const QString& dir)
{
    QDir d(dir);
    if (!d.exists() && !d.mkpath(QStringLiteral(".")))
        return false;
    QFile::setPermissions(dir, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return QFileInfo(dir).isDir();
}

} // namespace tolvane
