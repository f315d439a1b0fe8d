# SPDX-License-Identifier: GPL-3.0-or-later
# Speech: the desktop's speech service (speech-dispatcher) when it runs, espeak-ng otherwise.
pkg_check_modules(SPEECH REQUIRED IMPORTED_TARGET speech-dispatcher espeak-ng)
target_link_libraries(${fragment_target} PRIVATE PkgConfig::SPEECH)
