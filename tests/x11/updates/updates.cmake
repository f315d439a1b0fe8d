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

