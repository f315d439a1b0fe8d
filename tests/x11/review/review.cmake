# SPDX-License-Identifier: GPL-3.0-or-later
# The review window test drives a real Tolvane through the accessibility bus.
pkg_check_modules(REVIEW_TEST_ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0)
target_link_libraries(tst_ReviewWindow PRIVATE PkgConfig::REVIEW_TEST_ATSPI)
target_compile_definitions(tst_ReviewWindow PRIVATE TOLVANE_BINARY="$<TARGET_FILE:tolvane>")
add_dependencies(tst_ReviewWindow tolvane)
