# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. The learner's progress: a week of look-ups with a five-day streak and a
# word looked up seven times, the Usage Stats window in light and dark, and `tolvane stats`.
stop_tolvane
mkdir -p "$XDG_DATA_HOME/Tolvane" "$out/progress"
python3 - "$XDG_DATA_HOME/Tolvane" <<'PY'
import json, sys, time, uuid
directory = sys.argv[1]
reference = 978307200  # 2001-01-01 UTC
now = time.time() - reference
day = 86400
events = []
for ago, lookups, reviews in [(40, 9, 2), (12, 5, 0), (9, 7, 3), (4, 6, 1), (3, 8, 0), (2, 4, 2), (1, 11, 4), (0, 6, 3)]:
    for i in range(lookups):
        events.append({"type": "lookup", "date": now - ago * day - 600 * (i + 1)})
    for i in range(reviews):
        events.append({"type": "review", "date": now - ago * day - 300 * (i + 1)})
events.sort(key=lambda e: e["date"])
log = [{"word": w, "translation": t, "seenCount": n, "lastSeen": now - 3600}
       for w, t, n in [("Schmetterling", "butterfly", 7), ("Haus", "house", 3), ("Baum", "tree", 2), ("Brot", "bread", 1)]]
deck = [{"id": str(uuid.uuid4()).upper(), "sourceText": w, "translation": t, "targetLanguage": "de",
         "direction": "targetToEnglish", "status": s, "nextNotificationDate": now + day, "dateAdded": now - 9 * day}
        for w, t, s in [("Schmetterling", "butterfly", "reviewAgain"), ("Haus", "house", "knowIt"),
                        ("Baum", "tree", "new"), ("Brot", "bread", "new"), ("Wolke", "cloud", "knowIt")]]
for name, records in [("usage_events.json", events), ("confusion_log.json", log), ("review_deck.json", deck)]:
    with open(f"{directory}/{name}", "w") as f:
        json.dump(records, f)
PY
set_preference successfulWordLookupCount 56
set_preference appearanceMode '"light"'
start_tolvane
sleep 1.5
"$binary" stats >"$out/progress/stats.txt" 2>&1 && echo "[demo] Saved $out/progress/stats.txt"
# scroll_stats up|down: the statistics window scrolled to its top or its end.
scroll_stats() {
    local id
    id=$(window_id "Usage Stats") || return 0
    eval "$(xdotool getwindowgeometry --shell "$id")"
    xdotool mousemove $((X + WIDTH / 2)) $((Y + HEIGHT / 2))
    for _ in $(seq 1 12); do xdotool click "$([ "$1" = up ] && echo 4 || echo 5)"; done
    sleep 0.3
}
"$binary" open stats || echo "[demo] tolvane open stats failed" >&2
shot_window "Usage Stats" progress/stats-light
scroll_stats down
shot_window "Usage Stats" progress/stats-light-end
set_preference appearanceMode '"dark"'
sleep 1
# Asked again while open: the same window comes to the front.
"$binary" open stats || true
scroll_stats up
shot_window "Usage Stats" progress/stats-dark
scroll_stats down
shot_window "Usage Stats" progress/stats-dark-end
set_preference appearanceMode '"light"'
