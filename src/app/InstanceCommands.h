// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>

namespace tolvane {

// What the running Tolvane does for the commands another `tolvane` process hands it: open a
// window by name, perform a look-up. Each feature registers its own entries when it is wired.
class InstanceCommands final
{
public:
    // The names `tolvane open` accepts, whether or not this build has wired them yet.
    static const QStringList& windowNames();

    void addWindow(const QString& name, std::function<void()> open);
    // The tray menu shows an item for a window only when the window is wired.
    bool hasWindow(const QString& name) const { return m_windows.contains(name); }
    void setLookup(std::function<void()> lookup) { m_lookup = std::move(lookup); }

    // Carries out words ("open" NAME, or "lookup"); an empty text when done, else why not.
    QString handle(const QStringList& words) const;

private:
    QHash<QString, std::function<void()>> m_windows;
    std::function<void()> m_lookup;
};

// `tolvane open NAME` and `tolvane lookup`: hand the command to the running Tolvane.
int runOpenCommand(const QStringList& arguments);
int runLookupCommand(const QStringList& arguments);

} // namespace tolvane
