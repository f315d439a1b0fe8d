// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/setup/Autostart.h"

#include "core/support/AtomicFile.h"
#include "core/support/Logging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

TOLVANE_DEFINE_LOG(lcAutostart, "Autostart")

namespace tolvane {

namespace {
const QString entryName = QStringLiteral("tolvane.desktop");

// A path in an Exec line: quoted, with the characters the desktop-entry format reserves escaped.
QString quotedExec(const QString& path)
{
    QString escaped = path;
    for (const QChar reserved : {u'\\', u'"', u'`', u'$'})
        escaped.replace(reserved, QStringLiteral("\\") + reserved);
    return u'"' + escaped + u'"';
}
} // namespace

Autostart::Autostart(QString directory, QString executable)
    : m_directory(std::move(directory))
    , m_executable(std::move(executable))
{}

Autostart Autostart::forThisUser()
{
    const QString config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return Autostart(config + QStringLiteral("/autostart"), QCoreApplication::applicationFilePath());
}

QString Autostart::entryPath() const
{
    return m_directory + u'/' + entryName;
}

bool Autostart::isEnabled() const
{
    return QFileInfo(entryPath()).isFile();
}

QByteArray Autostart::entry(const QString& executable)
{
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Tolvane\n"
                          "Comment=Translate the word under the pointer and learn it with flashcards\n"
                          "Exec=%1\n"
                          "Icon=tolvane\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(quotedExec(executable))
        .toUtf8();
}

Result<void> Autostart::setEnabled(bool enabled)
{
    if (!enabled) {
        QFile entryFile(entryPath());
        if (entryFile.exists() && !entryFile.remove()) {
            qCWarning(lcAutostart).noquote() << "Could not remove" << entryPath() + ":" << entryFile.errorString();
            return Error{QStringLiteral("Tolvane could not remove %1: %2").arg(entryPath(), entryFile.errorString())};
        }
        qCInfo(lcAutostart).noquote() << "Tolvane no longer starts at login";
        return {};
    }
    if (!QDir().mkpath(m_directory) || !QFileInfo(m_directory).isDir()) {
        qCWarning(lcAutostart).noquote() << "Could not create" << m_directory;
        return Error{QStringLiteral("Tolvane could not create the folder %1.").arg(m_directory)};
    }
    if (const Result<void> written = writeFileAtomically(entryPath(), entry(m_executable)); !written.ok()) {
        qCWarning(lcAutostart).noquote() << "Could not write the login entry:" << written.error().message;
        return Error{QStringLiteral("Tolvane could not write %1 (%2).").arg(entryPath(), written.error().message)};
    }
    qCInfo(lcAutostart).noquote() << "Tolvane starts at login:" << entryPath();
    return {};
}

} // namespace tolvane
