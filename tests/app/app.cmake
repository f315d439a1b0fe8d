# SPDX-License-Identifier: GPL-3.0-or-later
# The start-up test runs the real executable.
if(TARGET tst_Startup)
    add_dependencies(tst_Startup tolvane)
endif()
