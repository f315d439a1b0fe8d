# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. The tray menu, the settings window (light and dark) and both permission
# windows, under out/settings/.
tolvane_command() { "$binary" "$@" >>"$out/demo-tolvane.log" 2>&1; }
set_preference onboardingComplete true
set_preference appearanceMode '"light"'
sleep 0.5

# The tray menu, opened with a click on Tolvane's icon in the tray host (found afresh: an earlier
# step may have restarted Tolvane).
icon=
for _ in $(seq 1 100); do
    icon=$(xwininfo -root -tree 2>/dev/null | grep '("tolvane" "Tolvane")' | grep -E ' [0-9]+x[0-9]+\+' | head -n 1 || true)
    [ -n "$icon" ] && break
    sleep 0.1
done
read -r w h x y < <(echo "$icon" | sed -E 's/.* ([0-9]+)x([0-9]+)\+-?[0-9]+\+-?[0-9]+ +\+(-?[0-9]+)\+(-?[0-9]+).*/\1 \2 \3 \4/')
xdotool mousemove $((x + w / 2)) $((y + h / 2)) click 1
sleep 1
shot settings/tray-menu
xdotool key Escape
sleep 0.3

for mode in light dark; do
    set_preference appearanceMode "\"$mode\""
    sleep 0.5
    tolvane_command open settings
    id=$(window_id Settings) && xdotool windowsize "$id" 480 860 && xdotool windowmove "$id" 60 30
    shot_window Settings "settings/settings-$mode"
    # The lower sections: the wheel over the window scrolls it to the end.
    xdotool mousemove 300 500 click --repeat 15 5
    shot_window Settings "settings/settings-$mode-end"
    if [ "$mode" = light ]; then
        # What the notification row offers when the desktop does not let Tolvane notify.
        set_preference notificationPermissionGranted false
        sleep 0.5
        shot_window Settings settings/settings-notifications-not-permitted
    fi
    xdotool click --repeat 15 4
    tolvane_command open accessibility-permission
    shot_window "Accessibility Permission" "settings/accessibility-permission-$mode"
    tolvane_command open screen-recording-permission
    shot_window "Screen Recording Permission" "settings/screen-recording-permission-$mode"
done
# Accessibility switched off for the session: the window follows within a poll and offers the
# buttons; switched on again afterwards.
a11y_enabled() {
    gdbus call --session --dest org.a11y.Bus --object-path /org/a11y/bus \
        --method org.freedesktop.DBus.Properties.Set org.a11y.Status IsEnabled "<$1>" >/dev/null 2>&1
}
set_preference appearanceMode '"light"'
if a11y_enabled false; then
    sleep 2
    tolvane_command open accessibility-permission
    shot_window "Accessibility Permission" settings/accessibility-permission-not-granted
    tolvane_command open settings
    shot_window Settings settings/settings-accessibility-not-granted
    a11y_enabled true
    sleep 2
fi
# Every window follows the appearance at once: all three, side by side, just switched to light.
set_preference appearanceMode '"light"'
sleep 0.8
shot settings/all-windows-light
set_preference appearanceMode '"system"'
for title in Settings "Accessibility Permission" "Screen Recording Permission"; do
    id=$(window_id "$title" 1) && xdotool windowclose "$id" 2>/dev/null || true
done
