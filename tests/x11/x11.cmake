# SPDX-License-Identifier: GPL-3.0-or-later
# The walk-throughs drive the real tolvane binary (x11/TolvaneProcess.h starts it).
foreach(walkthrough IN ITEMS tst_GuideWalkthrough tst_ProgressOnDesktop tst_ReviewWindow
                             tst_SettingsThroughAccessibility tst_UpdateWindowThroughAccessibility)
    if(TARGET ${walkthrough})
        target_compile_definitions(${walkthrough} PRIVATE TOLVANE_EXECUTABLE="$<TARGET_FILE:tolvane>")
        add_dependencies(${walkthrough} tolvane)
    endif()
endforeach()
