// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane {

// $XDG_CONFIG_HOME/Tolvane (default ~/.config/Tolvane): preferences.
QString configDirectory();
// $XDG_DATA_HOME/Tolvane (default ~/.local/share/Tolvane): learning records and pending reminders.
QString dataDirectory();
// Creates dir (and parents) readable by the user alone. False when it cannot be made.
bool ensurePrivateDirectory(const QString& dir);

} // namespace tolvane
