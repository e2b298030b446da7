#!/usr/bin/env bash
# A screenshot of the notification that sums up quiet hours, from the real app under Xvfb with
# dunst as the notification server: quiet hours that end within two minutes, GitHub going down
# and recovering and Slack turning degraded meanwhile, then the first pass after them. Written
# to shots/notification-quiet-summary.png (or the folder given). Takes up to three minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
out=$(realpath -m "${1:-shots}")
mkdir -p "$out"
if [ -z "${LANTERNIC_E2E_BUS:-}" ]; then
    scripts/install-deps.sh
    for tool in import:imagemagick dunst:dunst; do
        command -v "${tool%%:*}" >/dev/null ||
            DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${tool#*:}"
    done
    LANTERNIC_E2E_BUS=1 exec dbus-run-session --config-file=tests/support/session-bus.conf -- "$0" "$out"
fi
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target lanternic
app=$PWD/build/src/app/lanternic

# shellcheck source=../tests/e2e/lib.sh
source tests/e2e/lib.sh
start_x
dunst >"$work/dunst.log" 2>&1 &
pids+=("$!")
read -r port < <(free_ports 1)
feed() { sed "s/\"degraded\"/\"$2\"/; s/Build farm/$1/" samples/relay-feed.json >"$work/$1.json"; }
feed GitHub operational
feed Slack operational
(cd "$work" && exec python3 -m http.server "$port" --bind 127.0.0.1 >/dev/null 2>&1) &
pids+=("$!")
await curl -sf "http://127.0.0.1:$port/GitHub.json"
mkdir -p "$work/config/Lanternic"
{
    printf '[General]\nLanternic.sources="GitHub=http://127.0.0.1:%s/GitHub.json\\nSlack=http://127.0.0.1:%s/Slack.json"\n' "$port" "$port"
    printf 'Lanternic.quietHours=true\nLanternic.quietHoursStart=%s\nLanternic.quietHoursEnd=%s\n' \
        "$(date -d '-1 min' +%H:%M)" "$(date -d '+2 min' +%H:%M)"
} >"$work/config/Lanternic/Lanternic.conf"
end=$(date -d "$(date -d '+2 min' +%H:%M)" +%s)

XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" "$app" >"$work/app.log" 2>&1 &
pids+=("$!")
await lanternic_window 320
sleep 2
# A pass in quiet hours with GitHub down, then the changes that stand when they end.
feed GitHub down
xdotool key ctrl+r
sleep 3
feed GitHub operational
feed Slack degraded
while [ "$(date +%s)" -lt "$end" ]; do sleep 1; done
xdotool key ctrl+r
await xdotool search --onlyvisible --class Dunst
sleep 1
import -window "$(xdotool search --onlyvisible --class Dunst | head -1)" \
    "$out/notification-quiet-summary.png"
ls -1 "$out/notification-quiet-summary.png"
