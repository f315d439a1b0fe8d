# SPDX-License-Identifier: GPL-3.0-or-later
# The hotkey benchmark plays the user through XTest.
pkg_check_modules(BENCH_HOTKEYS_XTEST REQUIRED IMPORTED_TARGET x11 xtst)
target_link_libraries(bench_hotkeys PRIVATE PkgConfig::BENCH_HOTKEYS_XTEST)
