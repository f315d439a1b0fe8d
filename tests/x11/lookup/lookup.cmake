# SPDX-License-Identifier: GPL-3.0-or-later
# The look-up's end-to-end test reads words from a real GTK 3 window (and the capture tests' Qt
# window stand-in for an application without accessible text: xterm).
pkg_check_modules(LOOKUP_GTK3 IMPORTED_TARGET gtk+-3.0)
if(LOOKUP_GTK3_FOUND)
    add_executable(gtk_words_window ${CMAKE_CURRENT_LIST_DIR}/gtk_words_window.cpp)
    target_link_libraries(gtk_words_window PRIVATE PkgConfig::LOOKUP_GTK3)
    if(TARGET tst_LookupEndToEnd)
        target_compile_definitions(tst_LookupEndToEnd PRIVATE GTK_WORDS_WINDOW="$<TARGET_FILE:gtk_words_window>")
        add_dependencies(tst_LookupEndToEnd gtk_words_window tolvane)
    endif()
endif()
