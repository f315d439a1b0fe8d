# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. The software update window on the desktop, against a feed served on this
# machine (under out/updates/desktop/): with the release key in TOLVANE_UPDATE_SIGNING_KEY (a PEM
# file) a newer release and "You're up to date!"; without it, a feed signed with another key, which
# Tolvane refuses, and a missing feed.
feed_dir=$(mktemp -d)
feed_port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
python3 -m http.server --bind 127.0.0.1 --directory "$feed_dir" "$feed_port" >/dev/null 2>&1 &
feed_server=$!
stop_tolvane
TOLVANE_UPDATE_FEED_URL="http://127.0.0.1:$feed_port/feed.json" start_tolvane
sleep 2

# update_shot RELEASE-VERSION KEY NAME: serve a feed of that release signed with KEY, ask for a
# check and save the window.
update_shot() {
    printf '{"version": "%s", "notes": "Look-ups in Chinese read the tones aloud.\\nThe review window remembers its size.\\nMarkup such as <b>this</b> shows as text.", "download": "https://tolvane.app/download/", "published": "2026-11-20T12:00:00Z"}' \
        "$1" >"$feed_dir/release.json"
    "$root/scripts/sign-update-feed" "$2" "$feed_dir/release.json" >"$feed_dir/feed.json"
    "$binary" open updates >>"$out/demo-tolvane.log" 2>&1
    sleep 1
    shot_window "Software Update" "updates/desktop/$3"
    # Escape answers nothing and closes the window, as its close button would.
    id=$(window_id "Software Update" 1) && xdotool windowactivate --sync "$id" key Escape 2>/dev/null || true
    sleep 0.3
}
if [ -n "${TOLVANE_UPDATE_SIGNING_KEY:-}" ]; then
    update_shot 99.0.0 "$TOLVANE_UPDATE_SIGNING_KEY" new-version
    update_shot 0.0.1 "$TOLVANE_UPDATE_SIGNING_KEY" up-to-date
else
    openssl genpkey -algorithm ed25519 -out "$feed_dir/other-key.pem" 2>/dev/null
    update_shot 99.0.0 "$feed_dir/other-key.pem" error-signature
fi
rm -f "$feed_dir/feed.json"
"$binary" open updates >>"$out/demo-tolvane.log" 2>&1
sleep 1
shot_window "Software Update" updates/desktop/error-not-found
id=$(window_id "Software Update" 1) && xdotool windowactivate --sync "$id" key Escape 2>/dev/null || true

kill "$feed_server" 2>/dev/null || true
wait "$feed_server" 2>/dev/null || true
rm -rf "$feed_dir"
stop_tolvane
start_tolvane
sleep 1
