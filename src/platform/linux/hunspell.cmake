# SPDX-License-Identifier: GPL-3.0-or-later
# The English spell checker.
pkg_check_modules(HUNSPELL REQUIRED IMPORTED_TARGET hunspell)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::HUNSPELL)
