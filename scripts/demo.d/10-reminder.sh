# SPDX-License-Identifier: GPL-3.0-or-later
# Sourced by scripts/demo. A flashcard reminder. Two reminders came due while Tolvane was not running; at
# the next start only the latest is shown, with its answer buttons.
stop_tolvane
due=$(($(date +%s) - 978307200 - 60)) # seconds since 2001-01-01 UTC, a minute ago
reminder() { # reminder ID WORD TRANSLATION DUE
    printf '{"identifier":"vantor-flashcard-slot-%s-4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08","title":"%s","body":"%s",' "$1" "$2" "$3"
    printf '"sound":true,"userInfo":{"cardId":"4F1C9A2E-2B7D-4C41-9E0A-6D5B3C2A1F08"},"categoryIdentifier":"FLASHCARD_REMINDER",'
    printf '"actions":[{"identifier":"FLASHCARD_KNOW_IT","title":"I know this"},'
    printf '{"identifier":"FLASHCARD_REVIEW_AGAIN","title":"Review again"}],"timeInterval":14400,"dueDate":%s}' "$4"
}
mkdir -p "$XDG_DATA_HOME/Tolvane"
printf '{"version":1,"requests":[%s,%s]}\n' "$(reminder 0 house дом $((due - 14400)))" \
    "$(reminder 1 bread хлеб "$due")" >"$XDG_DATA_HOME/Tolvane/pending_reminders.json"
start_tolvane
bubble=
for _ in $(seq 1 100); do
    bubble=$(xwininfo -root -tree 2>/dev/null | grep '"Notification": ("notification-daemon"' | head -n 1 || true)
    [ -n "$bubble" ] && break
    sleep 0.1
done
if [ -n "$bubble" ]; then
    sleep 0.5
    read -r w h x y < <(echo "$bubble" | sed -E 's/.* ([0-9]+)x([0-9]+)\+-?[0-9]+\+-?[0-9]+ +\+(-?[0-9]+)\+(-?[0-9]+).*/\1 \2 \3 \4/')
    import -window root -crop "$((w + 24))x$((h + 24))+$((x - 12))+$((y - 12))" +repage "$out/reminder.png" &&
        echo "[demo] Saved $out/reminder.png"
else
    echo "[demo] No reminder appeared; see $out/demo-tolvane.log" >&2
fi
