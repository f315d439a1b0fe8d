# SPDX-License-Identifier: GPL-3.0-or-later
# The offline translation engine: MeCab for Japanese words.
find_library(MECAB_LIBRARY mecab REQUIRED)
target_link_libraries(${fragment_target} PRIVATE ${MECAB_LIBRARY})
