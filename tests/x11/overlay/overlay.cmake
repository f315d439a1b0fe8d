# SPDX-License-Identifier: GPL-3.0-or-later
# The cards' window checks again under a second window manager, xfwm4, which also composites, so
# the translucent card is tried too. It runs in a private desktop of its own; skipped without xfwm4.
if(TARGET tst_OverlayWindows)
    add_test(NAME tst_OverlayWindows_xfwm4
             COMMAND sh -c "command -v xfwm4 >/dev/null || { echo 'xfwm4 is missing: run scripts/setup'; exit 77; }; \
exec \"$0\" --wm xfwm4 -- \"$1\"" ${PROJECT_SOURCE_DIR}/scripts/virtual-desktop $<TARGET_FILE:tst_OverlayWindows>)
    set_tests_properties(tst_OverlayWindows_xfwm4 PROPERTIES LABELS "full;x11" RUN_SERIAL TRUE TIMEOUT 300
                         SKIP_RETURN_CODE 77 ENVIRONMENT "QT_QPA_PLATFORM=xcb")
endif()
