# SPDX-License-Identifier: GPL-3.0-or-later
# The fuzz target of the record-file loaders, built only with clang and TOLVANE_FUZZ=ON (see
# scripts/fuzz records). Seeds: tests/fuzz/records-seeds.
if(TOLVANE_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    add_executable(fuzz_records ${CMAKE_CURRENT_LIST_DIR}/fuzz_records.cpp)
    tolvane_target_settings(fuzz_records)
    target_compile_options(fuzz_records PRIVATE -fsanitize=fuzzer)
    target_link_options(fuzz_records PRIVATE -fsanitize=fuzzer)
    target_link_libraries(fuzz_records PRIVATE tolvane_core)
endif()
