// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>

namespace tolvane {

// Tolvane's mark: a speech bubble holding a letter, drawn at every size the tray asks for.
QIcon appIcon();
// The same mark in one colour for the tray: a light bubble with a dark rim and a cut-out letter,
// which reads on light and dark panels alike.
QIcon trayIcon();

} // namespace tolvane
