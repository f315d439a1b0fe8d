# SPDX-License-Identifier: GPL-3.0-or-later
# The settings test drives the real tolvane binary through the accessibility bus.
pkg_check_modules(SETUP_TEST_ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0)
target_link_libraries(tst_SettingsThroughAccessibility PRIVATE PkgConfig::SETUP_TEST_ATSPI)
target_compile_definitions(tst_SettingsThroughAccessibility PRIVATE TOLVANE_EXECUTABLE="$<TARGET_FILE:tolvane>")
add_dependencies(tst_SettingsThroughAccessibility tolvane)
