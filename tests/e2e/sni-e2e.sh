#!/usr/bin/env bash
# End to end with the StatusNotifierItem protocol, as KDE Plasma, GNOME's AppIndicator
# extension and waybar speak it: our own minimal watcher and host (sni-host.py) on a private
# session bus, Lanternic on Xvfb. The item registers; its title, tooltip, status and icon are
# right after an operational and after a degraded pass; Activate(x, y), sent as a host does
# when the icon is clicked at (x, y), opens the panel at that point, and SecondaryActivate
# toggles it as well. Exits 77 (skipped) when the tools are not installed.
set -euo pipefail
app=${1:?usage: sni-e2e.sh PATH-TO-LANTERNIC}
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
need Xvfb xdotool xwininfo xdpyinfo curl
/usr/bin/python3 -c 'import dbus, gi' 2>/dev/null ||
    { echo "skipped: python3-dbus or python3-gi is not installed"; exit 77; }

start_x || fail "no X session"

read -r port < <(free_ports 1)
mkdir -p "$work/feeds" "$work/config/Lanternic"
(cd "$work/feeds" && exec /usr/bin/python3 -m http.server "$port" --bind 127.0.0.1 >/dev/null 2>&1) &
pids+=("$!")
# Up before the app's first pass asks it: a loaded machine starts Python slowly.
await curl -sf -o /dev/null "http://127.0.0.1:$port/" || fail "the feed server did not start"
printf '[General]\nLanternic.sources=Build farm=http://127.0.0.1:%s/feed.json\n' "$port" \
    >"$work/config/Lanternic/Lanternic.conf"

# field JSON KEY...: one value of an event.
field() {
    /usr/bin/python3 -c 'import json, sys
value = json.loads(sys.argv[1])
for key in sys.argv[2:]:
    value = value[int(key) if key.isdigit() else key]
print(value)' "$@"
}
start_sni_host || fail "no StatusNotifierItem host"

# One run of the app over a feed in the given state; leaves its properties in $properties.
run() {
    local state=$1 summary=$2
    sed "s/\"degraded\"/\"$state\"/" "$here/../../samples/relay-feed.json" >"$work/feeds/feed.json"
    XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" "$app" >"$work/app-$state.log" 2>&1 &
    app_pid=$!
    pids+=("$app_pid")
    local registered
    registered=$(event)
    [ "$(field "$registered" event)" = registered ] || fail "$state: the item did not register: $registered"
    # The tooltip follows the pass once it has finished.
    for _ in $(seq 100); do
        host_says read
        properties=$(event)
        [ "$(field "$properties" tooltip 0)" = "Lanternic — $summary" ] && break
        sleep 0.1
    done
    echo "$state: $properties"
    [ "$(field "$properties" tooltip 0)" = "Lanternic — $summary" ] ||
        fail "$state: the tooltip is not the summary"
    [ "$(field "$properties" title)" = Lanternic ] || fail "$state: wrong title"
    [ "$(field "$properties" status)" = Active ] || fail "$state: wrong status"
}

# The icon's opaque pixels, by colour.
colour() { field "$properties" icon colours "$1"; }

run operational "All systems operational"
(($(colour green) > 50 && $(colour amber) == 0 && $(colour red) == 0)) ||
    fail "operational: the icon is not green"
kill "$app_pid"
wait "$app_pid" 2>/dev/null || true

run degraded "1 degraded"
(($(colour amber) > 50 && $(colour green) == 0 && $(colour red) == 0)) ||
    fail "degraded: the icon is not amber"
# A badge: the count is drawn in dark digits on the amber pill.
(($(colour other) > 5)) || fail "degraded: the icon has no badge"

# A host sends Activate with the point that was clicked, where the pointer is.
xdotool mousemove 600 30
host_says activate 600 30
[ "$(field "$(event)" event)" = activated ] || fail "Activate failed"
await lanternic_window 322 || fail "Activate did not open the panel"
read -r _ panel_x panel_y < <(lanternic_window 322)
echo "Activate(600, 30) opened the panel at $panel_x,$panel_y"
[ "$panel_x" -eq $((600 - 161)) ] && [ "$panel_y" -eq 34 ] ||
    fail "the panel is not centred under the point"
# SecondaryActivate (a middle click on most hosts) toggles it too: closed, then open again.
host_says secondary 600 30
[ "$(field "$(event)" event)" = activated ] || fail "SecondaryActivate failed"
await no_lanternic_window 322 || fail "SecondaryActivate did not close the panel"
sleep 0.3
host_says secondary 600 30
[ "$(field "$(event)" event)" = activated ] || fail "SecondaryActivate failed"
await lanternic_window 322 || fail "SecondaryActivate did not open the panel"
echo "SecondaryActivate closed and opened the panel"
echo "StatusNotifierItem e2e: passed"
