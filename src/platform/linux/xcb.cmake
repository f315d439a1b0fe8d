# SPDX-License-Identifier: GPL-3.0-or-later
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::XCB)
