# SPDX-License-Identifier: GPL-3.0-or-later
# The walk through the guide drives the real program.
if(TARGET tst_GuideWalkthrough)
    add_dependencies(tst_GuideWalkthrough tolvane)
    target_compile_definitions(tst_GuideWalkthrough PRIVATE TOLVANE_PROGRAM="$<TARGET_FILE:tolvane>")
endif()
