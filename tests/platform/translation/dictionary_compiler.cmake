# SPDX-License-Identifier: GPL-3.0-or-later
# The dictionary compiler is Python; its tests run with Debian's interpreter.
add_test(NAME tst_DictionaryCompiler
         COMMAND /usr/bin/python3 ${CMAKE_CURRENT_LIST_DIR}/tst_DictionaryCompiler.py
                 ${PROJECT_SOURCE_DIR}/tools/dictionaries)
set_tests_properties(tst_DictionaryCompiler PROPERTIES LABELS full TIMEOUT 120)
