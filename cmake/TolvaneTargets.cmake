# SPDX-License-Identifier: GPL-3.0-or-later
# Shared compile settings for every Tolvane target.

function(tolvane_target_settings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wnon-virtual-dtor)
    if(TOLVANE_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    # GLib headers use 'signals' as an identifier.
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS
        TOLVANE_VERSION="${PROJECT_VERSION}")
endfunction()

# A static library made of every source file below DIR (recursively, re-globbed at build time so
# a new file needs no edit here). Extra settings go in DIR/*.cmake fragments, which are included
# with the variable fragment_target naming the target.
function(tolvane_glob_library target dir)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${dir}/*.cpp" "${dir}/*.h")
    add_library(${target} STATIC ${sources})
    tolvane_target_settings(${target})
endfunction()

macro(tolvane_include_fragments fragment_target_name dir)
    set(fragment_target ${fragment_target_name})
    file(GLOB _fragments CONFIGURE_DEPENDS "${dir}/*.cmake")
    foreach(_fragment IN LISTS _fragments)
        include(${_fragment})
    endforeach()
endmacro()
