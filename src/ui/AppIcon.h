// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace tolvane {

// Tolvane's mark: a speech bubble holding a letter, drawn at every size the tray asks for.
QIcon appIcon();

} // namespace tolvane
