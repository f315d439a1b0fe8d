# SPDX-License-Identifier: GPL-3.0-or-later
# The capture benchmarks read from the test windows the capture tests use.
foreach(helper IN ITEMS gtk_text_window qt_text_window)
    if(TARGET ${helper} AND TARGET bench_capture)
        string(TOUPPER ${helper} helper_macro)
        target_compile_definitions(bench_capture PRIVATE ${helper_macro}="$<TARGET_FILE:${helper}>")
        add_dependencies(bench_capture ${helper})
    endif()
endforeach()
