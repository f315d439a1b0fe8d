#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Tolvane goes on the network only when the user asks for an update check. Under strace, a run
# that starts Tolvane, opens every window and looks up a word creates no internet socket (AF_INET
# or AF_INET6); then "Check for Updates…" (tolvane open updates) does create one, which shows the
# trace would have seen any.
#     no-network-socket.sh TOLVANE [GTK_WORDS_WINDOW]
# Runs inside scripts/virtual-desktop. Exit 77 (skipped) without strace.
set -euo pipefail
binary=$1
words_window=${2:-}
command -v strace >/dev/null || { echo "[no-network-socket] strace is missing: run scripts/setup" >&2; exit 77; }
[ -n "${DISPLAY:-}" ] || { echo "[no-network-socket] Run me inside scripts/virtual-desktop" >&2; exit 77; }

work=$(mktemp -d /tmp/tolvane-no-network.XXXXXX)
tracer=
words=
cleanup() {
    [ -n "$words" ] && kill "$words" 2>/dev/null || true
    if [ -n "$tracer" ]; then
        # The traced Tolvane is strace's child; ending it ends strace.
        local tracee
        tracee=$(pgrep -P "$tracer" || true)
        [ -n "$tracee" ] && kill $tracee 2>/dev/null || true
        wait "$tracer" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

export XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" OMP_THREAD_LIMIT=1
export TOLVANE_INSTANCE_NAME="tolvane-no-network-$$"
# Nothing listens on the discard port: the update check at the end fails at once, but only after
# it has made its socket.
export TOLVANE_UPDATE_FEED_URL="http://127.0.0.1:9/feed.json"
mkdir -p "$XDG_CONFIG_HOME/Tolvane"
echo '{"onboardingComplete": true, "targetLanguage": "es"}' >"$XDG_CONFIG_HOME/Tolvane/preferences.json"

strace -f -qq -tt -e trace=network -o "$work/trace" "$binary" >"$work/log" 2>&1 &
tracer=$!
for _ in $(seq 1 150); do
    "$binary" open stats >/dev/null 2>&1 && break
    sleep 0.2
done
"$binary" open stats >/dev/null || { echo "[no-network-socket] Tolvane did not start; its log:" >&2; cat "$work/log" >&2; exit 1; }

for window in settings review guide accessibility-permission screen-recording-permission stats; do
    "$binary" open "$window"
    sleep 0.4
done

if [ -n "$words_window" ] && [ -x "$words_window" ]; then
    "$words_window" --title "Reading" "The children are playing in the garden." >"$work/words" 2>/dev/null &
    words=$!
    for _ in $(seq 1 100); do grep -q '^ready$' "$work/words" && break; sleep 0.1; done
    read -r x y < <(awk '$2 == "garden" { print $3, $4; exit }' "$work/words")
    xdotool mousemove "$x" "$y"
    sleep 0.3
    "$binary" lookup
    for _ in $(seq 1 30); do
        grep -qs garden "$XDG_DATA_HOME/Tolvane/confusion_log.json" && break
        sleep 0.1
    done
    grep -qs garden "$XDG_DATA_HOME/Tolvane/confusion_log.json" ||
        { echo "[no-network-socket] The look-up of \"garden\" left no record" >&2; exit 1; }
else
    # No text window: the look-up still runs its whole way, to "no text here".
    "$binary" lookup
    sleep 2
fi

quiet_until=$(date +%H:%M:%S.%N | cut -c1-15)
"$binary" open updates
for _ in $(seq 1 50); do
    grep -Eq 'socket\(AF_INET6?,' "$work/trace" && break
    sleep 0.1
done

status=0
# Lines look like "PID HH:MM:SS.UUUUUU socket(AF_INET, …)"; the times of one day compare as text.
early=$(awk -v mark="$quiet_until" '$3 ~ /^socket\(AF_INET6?,/ && $2 < mark' "$work/trace")
if [ -n "$early" ]; then
    echo "[no-network-socket] Tolvane made internet sockets without being asked:" >&2
    echo "$early" >&2
    status=1
fi
if ! grep -q 'socket(AF_UNIX' "$work/trace"; then
    echo "[no-network-socket] The trace shows no socket at all: strace did not follow Tolvane" >&2
    status=1
fi
if ! awk -v mark="$quiet_until" '$3 ~ /^socket\(AF_INET6?,/ && $2 >= mark { found = 1 } END { exit !found }' "$work/trace"; then
    echo "[no-network-socket] The update check made no internet socket either: the trace is not to be trusted" >&2
    status=1
fi
grep -q 'Opening updates' "$work/log" || { echo "[no-network-socket] tolvane open updates did not arrive" >&2; status=1; }
[ "$status" = 0 ] && echo "[no-network-socket] No internet socket until the update check was asked for"
exit "$status"
