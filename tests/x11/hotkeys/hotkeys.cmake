# SPDX-License-Identifier: GPL-3.0-or-later
# A second X client that holds a key combination, or tells whether it could.
add_executable(hotkey_holder ${CMAKE_CURRENT_LIST_DIR}/HotkeyHolder.cpp)
tolvane_target_settings(hotkey_holder)
pkg_check_modules(HOTKEY_HOLDER_XCB REQUIRED IMPORTED_TARGET xcb xcb-keysyms)
target_link_libraries(hotkey_holder PRIVATE PkgConfig::HOTKEY_HOLDER_XCB)
foreach(test_target IN ITEMS tst_XcbHotkeyService)
    add_dependencies(${test_target} hotkey_holder)
    target_compile_definitions(${test_target} PRIVATE HOTKEY_HOLDER="$<TARGET_FILE:hotkey_holder>")
endforeach()
