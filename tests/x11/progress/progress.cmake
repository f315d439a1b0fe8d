# SPDX-License-Identifier: GPL-3.0-or-later
# The statistics test reads a real Tolvane through the accessibility bus.
pkg_check_modules(PROGRESS_TEST_ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0)
target_link_libraries(tst_ProgressOnDesktop PRIVATE PkgConfig::PROGRESS_TEST_ATSPI)
target_compile_definitions(tst_ProgressOnDesktop PRIVATE TOLVANE_BINARY="$<TARGET_FILE:tolvane>")
add_dependencies(tst_ProgressOnDesktop tolvane)
