# SPDX-License-Identifier: GPL-3.0-or-later
# The look-up benchmark plays the user through XTest and watches the card with Xlib.
pkg_check_modules(BENCH_LOOKUP_X11 REQUIRED IMPORTED_TARGET x11 xtst)
target_link_libraries(bench_lookup PRIVATE PkgConfig::BENCH_LOOKUP_X11)
