// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/support/Result.h"

#include <QByteArray>
#include <QString>

namespace tolvane {

// Start at login: the desktop starts every entry of $XDG_CONFIG_HOME/autostart when the session
// begins. Tolvane's entry there is the whole state; nothing else remembers the choice.
class Autostart final
{
public:
    // directory: the autostart folder (the user's unless a test names another); executable: what
    // the entry starts.
    Autostart(QString directory, QString executable);
    // The user's folder and this executable.
    static Autostart forThisUser();

    QString entryPath() const;
    bool isEnabled() const;
    // Writes the entry (atomically) or removes it; on failure nothing changed, and the error says
    // why in words a user can act on.
    Result<void> setEnabled(bool enabled);

    static QByteArray entry(const QString& executable);

private:
    QString m_directory;
    QString m_executable;
};

} // namespace tolvane
