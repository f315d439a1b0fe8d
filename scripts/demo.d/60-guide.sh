# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. The first-run guide: it opens by itself while it has never been
# finished; `tolvane open guide` brings it to the front. Pictures of its window in the light and
# the dark appearance (the steps one by one are drawn by tests/x11/guide/tst_GuidePictures).
if ! window_id "Setup Guide" 5 >/dev/null; then
    "$binary" open guide
fi
set_preference appearanceMode '"light"'
"$binary" open guide
sleep 2.2 # into the demonstration's loop: the card is up
shot_window "Setup Guide" guide/window-welcome-light
set_preference appearanceMode '"dark"'
sleep 1
shot_window "Setup Guide" guide/window-welcome-dark
set_preference appearanceMode '"system"'
guide=$(window_id "Setup Guide") && xdotool windowminimize "$guide" 2>/dev/null || true
