// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Workspace.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace tolvane {

class DesktopWorkspace final : public Workspace
{
public:
    bool openUrl(const QUrl& url) override;
    // The active window's application: the Name of its desktop entry where one matches its
    // executable or its window class, else the window class, else empty. Asks only the X server
    // and /proc, never the application itself, so a frozen application costs nothing.
    QString frontmostApplicationName() const override;

    // What is known of a running application.
    struct Application
    {
        QString executable;     // the program's file name, "gedit"
        QString commandName;    // /proc's comm, "gedit"
        QString windowInstance; // WM_CLASS instance, "gedit"
        QString windowClass;    // WM_CLASS class, "Gedit"
    };
    // One entry of the installed applications.
    struct DesktopEntry
    {
        QString id; // file name without ".desktop", "org.gnome.gedit"
        QString name;
        QString executable; // Exec's program file name
        QString startupWMClass;
    };
    // The name to log for an application among the entries; empty when nothing is known.
    static QString applicationName(const Application& application, const QList<DesktopEntry>& entries);
    // The [Desktop Entry] group of a .desktop file's text; nothing for hidden entries or others.
    static std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& contents);

private:
    const QList<DesktopEntry>& desktopEntries() const;
    mutable std::optional<QList<DesktopEntry>> m_entries;
    mutable QHash<QString, QString> m_namesByProcess; // by process and window class
};

} // namespace tolvane
