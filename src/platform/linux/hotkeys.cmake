# SPDX-License-Identifier: GPL-3.0-or-later
# Global hotkeys: key grabs, detectable auto-repeat (XKB), raw key events (XInput 2) and keysyms.
pkg_check_modules(XCB_HOTKEYS REQUIRED IMPORTED_TARGET xcb-xkb xcb-xinput xcb-keysyms)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::XCB_HOTKEYS)
