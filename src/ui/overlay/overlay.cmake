# SPDX-License-Identifier: GPL-3.0-or-later
# The floating cards mark their windows through XCB.
pkg_check_modules(OVERLAY_XCB REQUIRED IMPORTED_TARGET xcb)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::OVERLAY_XCB)
