# SPDX-License-Identifier: GPL-3.0-or-later
# Text recognition for the OCR fallback.
pkg_check_modules(TESSERACT REQUIRED IMPORTED_TARGET tesseract lept)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::TESSERACT)
