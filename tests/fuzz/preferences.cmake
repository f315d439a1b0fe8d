# SPDX-License-Identifier: GPL-3.0-or-later
# The fuzz target of the preferences file and its typed readers, built only with clang and
# TOLVANE_FUZZ=ON (see scripts/fuzz). Seeds: tests/fuzz/preferences-seeds.
if(TOLVANE_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_executable(fuzz_preferences ${CMAKE_CURRENT_LIST_DIR}/fuzz_preferences.cpp
                                    ${PROJECT_SOURCE_DIR}/src/platform/linux/JsonFilePreferenceStore.cpp)
    tolvane_target_settings(fuzz_preferences)
    target_compile_options(fuzz_preferences PRIVATE -fsanitize=fuzzer)
    target_link_options(fuzz_preferences PRIVATE -fsanitize=fuzzer)
    target_link_libraries(fuzz_preferences PRIVATE tolvane_platform_null tolvane_core)
endif()
