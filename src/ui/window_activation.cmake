# SPDX-License-Identifier: GPL-3.0-or-later
# Bringing a window to the front talks to the window manager over X11 directly.
pkg_check_modules(UI_XCB REQUIRED IMPORTED_TARGET xcb)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::UI_XCB)
