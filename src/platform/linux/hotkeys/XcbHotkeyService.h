// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/GlobalHotkeyService.h"

#include <memory>

namespace tolvane {

// Global hotkeys on an X11 desktop: passive key grabs on the root window for a key combination,
// XInput 2 raw key events for combinations of modifier keys alone. Nothing when Tolvane does not
// run on X11.
std::unique_ptr<GlobalHotkeyService> createXcbHotkeyService();

} // namespace tolvane
