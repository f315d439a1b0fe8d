// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace tolvane {

// How Tolvane's own windows look, independent of the desktop's setting.
enum class AppearanceMode { system, light, dark };

QString rawValue(AppearanceMode mode);
// Any text other than "light" or "dark" follows the desktop.
AppearanceMode appearanceModeFromRawValue(const QString& raw);

} // namespace tolvane
