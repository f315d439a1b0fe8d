// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane {

// $XDG_CONFIG_HOME/Tolvane (default ~/.config/Tolvane): preferences.
QString configDirectory();
// $XDG_DATA_HOME/Tolvane (default ~/.local/share/Tolvane): learning records and pending reminders.
QString dataDirectory();
// The data Tolvane ships (language models, dictionaries): $TOLVANE_DATA_DIR when set, else
// share/tolvane beside the folder of the executable, which the build tree lays out the same way,
// so an installed Tolvane never looks into the tree it was built in.
QString installedDataDirectory();
// Creates dir (and parents) readable by the user alone. False when it cannot be made.
bool ensurePrivateDirectory(const QString& dir);

} // namespace tolvane
