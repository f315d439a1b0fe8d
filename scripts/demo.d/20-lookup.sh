# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. Real look-ups over a real GTK 3 window: a word held under the hotkey
# (the card with its reading and example), and a selected passage (its card says "Translating…",
# then the translation marked "Live").
words_window="$(dirname "$binary")/../tests/gtk_words_window"
if [ ! -x "$words_window" ]; then
    echo "[demo] $words_window is not built; skipping the look-up pictures" >&2
else
    # The window manager keeps Alt+Space for its window menu here: look up with Ctrl+Alt+Space.
    stop_tolvane
    set_preference customHotkeyKeyCode 49
    set_preference customHotkeyModifiers 6144
    start_tolvane
    sleep 2
    lookup_text="I read the books yesterday. The children are playing in the garden."
    # open_words [--select TEXT]: the window, and the screen position of each word in $positions.
    open_words() {
        positions=$(mktemp)
        "$words_window" --title "Reading" "$@" "$lookup_text" >"$positions" 2>/dev/null &
        words_pid=$!
        for _ in $(seq 1 100); do grep -q '^ready$' "$positions" && break; sleep 0.1; done
    }
    close_words() {
        kill "$words_pid" 2>/dev/null || true
        wait "$words_pid" 2>/dev/null || true
        rm -f "$positions"
    }
    word_at() { awk -v w="$1" '$2 == w { print $3, $4; exit }' "$positions"; }
    # card_shot NAME: the screen around the pointer, where the card is.
    card_shot() {
        local x y
        eval "$(xdotool getmouselocation --shell)"
        x=$((X - 20 < 0 ? 0 : X - 20))
        y=$((Y - 20 < 0 ? 0 : Y - 20))
        mkdir -p "$(dirname "$out/$1.png")"
        import -window root -crop "520x300+$x+$y" +repage "$out/$1.png" && echo "[demo] Saved $out/$1.png"
    }

    # Chinese shows the reading under the translation.
    set_preference targetLanguage '"zh-Hans"'
    sleep 1.5 # the new pair is prepared in the background
    open_words
    read -r wx wy < <(word_at books)
    xdotool mousemove "$wx" "$wy"
    sleep 0.3
    xdotool keydown ctrl+alt+space
    sleep 1.5 # the example follows the word
    card_shot lookup/word-card
    xdotool keyup space keyup alt keyup ctrl
    sleep 5.5
    close_words

    # A passage through Apertium: Spanish.
    set_preference targetLanguage '"es"'
    sleep 1.5
    open_words --select "The children are playing in the garden."
    read -r wx wy < <(word_at garden)
    xdotool mousemove "$wx" "$((wy + 30))"
    sleep 0.3
    xdotool key ctrl+alt+space
    sleep 0.6
    card_shot lookup/passage-card
    sleep 3.5
    close_words

    # The word card again in the dark appearance.
    set_preference appearanceMode '"dark"'
    set_preference targetLanguage '"ja"'
    sleep 1.5
    open_words
    read -r wx wy < <(word_at children)
    xdotool mousemove "$wx" "$wy"
    sleep 0.3
    xdotool keydown ctrl+alt+space
    sleep 1.5
    card_shot lookup/word-card-dark
    xdotool keyup space keyup alt keyup ctrl
    sleep 5.5
    close_words
    set_preference appearanceMode '"system"'
fi
