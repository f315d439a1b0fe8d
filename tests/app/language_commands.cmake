# SPDX-License-Identifier: GPL-3.0-or-later
# The command-line test runs the application binary.
if(TARGET tst_LanguageCommands)
    add_dependencies(tst_LanguageCommands tolvane)
endif()
