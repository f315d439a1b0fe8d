# SPDX-License-Identifier: GPL-3.0-or-later
# The accessibility bus client, and GSettings to switch the desktop's accessibility setting on.
pkg_check_modules(ATSPI REQUIRED IMPORTED_TARGET atspi-2 gio-2.0)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::ATSPI)
