#!/usr/bin/env bash
# Screenshots of the real app under Xvfb with a tray host: the tray with the icon and its
# badge, the open panel and the settings window, written to shots/ (or the folder given).
# The sources are recorded documents served on loopback, one of them down.
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-shots}")
mkdir -p "$out"

scripts/install-deps.sh
for tool in import:imagemagick python3:python3; do
    command -v "${tool%%:*}" >/dev/null || DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${tool#*:}"
done
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target lanternic

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
cp samples/*.json "$work/"
sed 's/"degraded"/"down"/' samples/relay-feed.json >"$work/down.json"
(cd "$work" && exec python3 -m http.server 18799 --bind 127.0.0.1 >/dev/null 2>&1) &
pids+=("$!")

unset QT_QPA_PLATFORM WAYLAND_DISPLAY
# Xvfb picks a free display itself, so that this never takes one a test run is using.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" >/dev/null 2>&1 &
pids+=("$!")
for _ in $(seq 50); do [ -s "$work/display" ] && break; sleep 0.1; done
DISPLAY=":$(head -n1 "$work/display")"
export DISPLAY
sleep 1
trayer --edge top --align right --SetDockType true --expand true --widthtype request \
    --height 24 >/dev/null 2>&1 &
pids+=("$!")
sleep 1
mkdir -p "$work/config/Lanternic" "$work/run"
chmod 700 "$work/run"
printf '[General]\nLanternic.sources="%s"\n' \
    'Build farm=http://127.0.0.1:18799/down.json\nGitHub=http://127.0.0.1:18799/statuspage-summary.json\nAWS=http://127.0.0.1:18799/updog-outages.json\nBuild farm (relay)=http://127.0.0.1:18799/relay-feed.json' \
    >"$work/config/Lanternic/Lanternic.conf"
XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" \
    dbus-run-session -- build/src/app/lanternic >/dev/null 2>&1 &
pids+=("$!")
sleep 3

import -window root "$work/screen.png"
convert "$work/screen.png" -crop 80x26+1200+0 -scale 400% "$out/tray-icon.png"
xdotool mousemove 1268 12 click 1
sleep 1
import -window root "$work/screen.png"
convert "$work/screen.png" -crop 460x340+820+0 "$out/tray-panel-open.png"
# "Settings…" is the next to last row of the panel (320 wide, and a one-pixel border).
read -r x y h < <(for w in $(xdotool search --onlyvisible --name '^Lanternic$'); do
    xwininfo -id "$w" | awk '/Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
        /Height/ { h = $NF } /Width: 322/ { wide = 1 } END { if (wide) print x, y, h }'; done)
xdotool mousemove $((x + 60)) $((y + h - 38)) click 1
sleep 1
import -window root "$work/screen.png"
convert "$work/screen.png" -crop 680x500+300+150 "$out/settings-window.png"
ls -1 "$out"/tray-icon.png "$out"/tray-panel-open.png "$out"/settings-window.png
