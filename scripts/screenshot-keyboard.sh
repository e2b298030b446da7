#!/usr/bin/env bash
# Screenshots of the real app under Xvfb without a tray (the panel opens as a window), driven
# from the keyboard: the focus ring on the second row, the row's "Notify me" menu, and the
# panel and settings in German. Written to shots/ (or the folder given). The sources are
# relay feeds served on loopback.
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-shots}")
mkdir -p "$out"

if [ -z "${LANTERNIC_E2E_BUS:-}" ]; then
    scripts/install-deps.sh
    # On a session bus of its own, with no tray on it.
    LANTERNIC_E2E_BUS=1 exec dbus-run-session --config-file=tests/support/session-bus.conf -- "$0" "$out"
fi
command -v import >/dev/null || DEBIAN_FRONTEND=noninteractive apt-get install -y -qq imagemagick
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target lanternic
app=$PWD/build/src/app/lanternic

# shellcheck source=../tests/e2e/lib.sh
source tests/e2e/lib.sh
start_x
read -r port < <(free_ports 1)
sed 's/"degraded"/"down"/; s/Build farm/GitHub/' samples/relay-feed.json >"$work/down.json"
sed 's/Build farm/Slack/' samples/relay-feed.json >"$work/degraded.json"
sed 's/"degraded"/"operational"/; s/Build farm/Stripe/' samples/relay-feed.json >"$work/fine.json"
(cd "$work" && exec python3 -m http.server "$port" --bind 127.0.0.1 >/dev/null 2>&1) &
pids+=("$!")
await curl -sf "http://127.0.0.1:$port/down.json"
mkdir -p "$work/config/Lanternic"
printf '[General]\nLanternic.sources="GitHub=http://127.0.0.1:%s/down.json\\nSlack=http://127.0.0.1:%s/degraded.json\\nStripe=http://127.0.0.1:%s/fine.json"\n' \
    "$port" "$port" "$port" >"$work/config/Lanternic/Lanternic.conf"

run_app() {
    XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" "$@" "$app" >"$work/app.log" 2>&1 &
    app_pid=$!
    pids+=("$app_pid")
    await lanternic_window 320
    sleep 3
}
shoot() { import -window root "$work/screen.png" && convert "$work/screen.png" -crop "$2" "$out/$1"; }

run_app env
read -r _ x y < <(lanternic_window 320)
xdotool key Down
sleep 0.5
shoot pane-focus-ring.png "340x300+$((x - 10))+$((y - 10))"
xdotool key Menu
sleep 0.5
xdotool key Up Right
sleep 0.5
shoot pane-notify-menu.png "760x420+$((x - 10))+$((y - 10))"
xdotool key Escape Escape
kill "$app_pid"
wait "$app_pid" 2>/dev/null || true

run_app env LANG=de_DE.UTF-8 LANGUAGE= LC_ALL= LC_MESSAGES=
read -r id x y < <(lanternic_window 320)
shoot pane-german.png "340x300+$((x - 10))+$((y - 10))"
# "Einstellungen…" is the next to last row of the panel.
h=$(xwininfo -id "$id" | awk '/Height/ { print $NF }')
xdotool mousemove $((x + 60)) $((y + h - 38)) click 1
await xdotool search --onlyvisible --name '^Lanternic-Einstellungen$'
sleep 1
import -window "$(xdotool search --onlyvisible --name '^Lanternic-Einstellungen$' | head -1)" \
    "$out/settings-german.png"
ls -1 "$out"/pane-focus-ring.png "$out"/pane-notify-menu.png "$out"/pane-german.png "$out"/settings-german.png
