# SPDX-License-Identifier: GPL-3.0-or-later
# Tolvane opens no internet socket unless asked for an update check: the real binary under strace.
set(_words_window "")
if(TARGET gtk_words_window)
    set(_words_window "$<TARGET_FILE:gtk_words_window>")
endif()
add_test(NAME NoNetworkSocketUntilAsked
         COMMAND ${CMAKE_CURRENT_LIST_DIR}/no-network-socket.sh $<TARGET_FILE:tolvane> ${_words_window})
set_tests_properties(NoNetworkSocketUntilAsked PROPERTIES LABELS "full;x11" ENVIRONMENT "QT_QPA_PLATFORM=xcb"
                     RUN_SERIAL TRUE TIMEOUT 60 SKIP_RETURN_CODE 77)

# The software update window through the accessibility bus, on the real binary.
pkg_check_modules(UPDATES_TEST_ATSPI REQUIRED IMPORTED_TARGET atspi-2 gobject-2.0)
target_link_libraries(tst_UpdateWindowThroughAccessibility PRIVATE PkgConfig::UPDATES_TEST_ATSPI)
target_compile_definitions(tst_UpdateWindowThroughAccessibility PRIVATE TOLVANE_EXECUTABLE="$<TARGET_FILE:tolvane>")
add_dependencies(tst_UpdateWindowThroughAccessibility tolvane)
