// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace tolvane {

// Shows a window (creating its native window if needed), raises it and gives it the keyboard
// focus. Tolvane lives in the tray and has no window the user clicked last, so on X11 a plain
// activation request loses to focus-stealing prevention; this one asks the window manager the
// way a pager or taskbar does, with a current server time.
void bringToFront(QWidget* window);

} // namespace tolvane
