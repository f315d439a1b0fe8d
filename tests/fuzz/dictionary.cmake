# SPDX-License-Identifier: GPL-3.0-or-later
# The fuzz target of the compiled dictionary reader and the look-ups on top of it, built only with
# clang and TOLVANE_FUZZ=ON (see scripts/fuzz). Seeds: tests/fuzz/dictionary-seeds. It compiles
# the translation sources itself rather than the whole Linux platform library.
if(TOLVANE_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    set(translation ${PROJECT_SOURCE_DIR}/src/platform/linux/translation)
    add_executable(fuzz_dictionary ${CMAKE_CURRENT_LIST_DIR}/fuzz_dictionary.cpp
        ${translation}/DictionaryFile.cpp ${translation}/DictionaryTranslationEngine.cpp
        ${translation}/Lemmatizer.cpp ${translation}/JapaneseAnalyzer.cpp ${translation}/ApertiumPassageTranslator.cpp)
    tolvane_target_settings(fuzz_dictionary)
    target_compile_options(fuzz_dictionary PRIVATE -fsanitize=fuzzer)
    target_link_options(fuzz_dictionary PRIVATE -fsanitize=fuzzer)
    find_library(MECAB_LIBRARY mecab REQUIRED)
    target_link_libraries(fuzz_dictionary PRIVATE tolvane_core ${MECAB_LIBRARY})
endif()
