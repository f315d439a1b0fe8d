# SPDX-License-Identifier: GPL-3.0-or-later
# The capture benchmarks read from the test windows the capture tests use.
foreach(window IN ITEMS gtk_text_window qt_text_window)
    if(TARGET ${window} AND TARGET bench_capture)
        string(TOUPPER ${window} window_macro)
        target_compile_definitions(bench_capture PRIVATE ${window_macro}="$<TARGET_FILE:${window}>")
        add_dependencies(bench_capture ${window})
    endif()
endforeach()
