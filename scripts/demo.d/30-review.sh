# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. The review window: a card's front and back (with its pinyin), the share
# menu and the picture it saves, the completion and empty screens, and the Export tab.
review_deck() { # review_deck STATUS: three cards, all with that status
    local now=$(($(date +%s) - 978307200))
    card() { # card ID WORD TRANSLATION LANGUAGE CONTEXT
        printf '{"id":"7A0C3E51-1B2D-4E6F-8A9B-0C1D2E3F40%s","sourceText":"%s","translation":"%s",' "$1" "$2" "$3"
        printf '"targetLanguage":"%s","direction":"englishToTarget",%s"status":"%s",' "$4" "$5" "$status"
        printf '"nextNotificationDate":%s,"dateAdded":%s}' "$now" "$((now - 86400 * 10#$1))"
    }
    local status=$1
    mkdir -p "$XDG_DATA_HOME/Tolvane"
    printf '[%s,%s,%s]\n' "$(card 01 water 水 zh-Hans '"context":"A glass of water, please.",')" \
        "$(card 02 library 图书馆 zh-Hans '')" "$(card 03 house дом ru '')" >"$XDG_DATA_HOME/Tolvane/review_deck.json"
}
review_window() { window_id "Review Deck" 10; }
# review_click X Y: a click at a point of the review window, in its own coordinates.
review_click() {
    local id
    id=$(review_window) || return 0
    xdotool mousemove --window "$id" "$1" "$2" click 1
    sleep 0.6
}
review_keys() { # review_keys KEY…: keys typed into the review window
    local id
    id=$(review_window) || return 0
    xdotool windowactivate --sync "$id" key --delay 300 "$@"
    sleep 0.8
}
review_close() {
    local id
    id=$(review_window 2>/dev/null) || return 0
    xdotool windowactivate --sync "$id" key alt+F4
    sleep 0.5
}

stop_tolvane
set_preference targetLanguage '"zh-Hans"'
review_deck new
start_tolvane
sleep 2
# Light, then dark while the window stays open: the window follows the switch.
"$binary" open review
for mode in light dark; do
    set_preference appearanceMode "\"$mode\""
    sleep 0.8
    review_click 157 23
    shot_window "Review Deck" "review/front-$mode"
    review_keys space
    shot_window "Review Deck" "review/back-$mode"
    review_keys space
    review_click 219 23
    shot_window "Review Deck" "review/export-$mode"
done
review_close
set_preference appearanceMode '"system"'

# The share button under the card's back: its menu at the pointer, then "Save Image…".
"$binary" open review
review_keys space
review_click 246 393
shot review/share-menu
xdotool key Up Return
sleep 1.5
# A picture left by an earlier run would make the dialog ask before replacing it.
rm -f "$out/review/share-flashcard.png"
xdotool type --delay 10 "$out/review/share-flashcard.png"
xdotool key Return
sleep 1
for dialog in $(xdotool search --onlyvisible --name '^Save Image' 2>/dev/null); do
    echo "[demo] The save dialog is still open; closing it" >&2
    xdotool windowactivate --sync "$dialog" key Escape 2>/dev/null || true
done
# "I know this" (Return) on every card: the first is already turned over.
review_keys Return space Return space Return
shot_window "Review Deck" review/complete
review_close
# Every card is known now: nothing to review.
"$binary" open review
shot_window "Review Deck" review/empty
review_close
# The milestone and application pictures come from the benchmark, which draws all three.
bench_review="$(dirname "$binary")/../bench/bench_review"
if [ -x "$bench_review" ]; then
    QT_QPA_PLATFORM=offscreen "$bench_review" --pictures "$out/review" 2>/dev/null | grep '^saved' || true
fi
