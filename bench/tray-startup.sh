#!/usr/bin/env bash
# How long the tray app takes from exec to its icon docked in a real tray (Xvfb + trayer):
# the median of RUNS starts (default 10), once with the app started directly on a session
# bus that is already running (the app's own part) and once under dbus-run-session (its bus's
# start-up included). The icon counts as docked when a window is mapped inside trayer's panel.
# Usage: bench/tray-startup.sh PATH-TO-LANTERNIC [RUNS]
set -euo pipefail
app=$(realpath "${1:?usage: tray-startup.sh PATH-TO-LANTERNIC [RUNS]}")
runs=${2:-10}
for tool in Xvfb trayer xwininfo xdpyinfo xev setsid dbus-daemon dbus-run-session; do
    command -v "$tool" >/dev/null || { echo "$tool is not installed" >&2; exit 1; }
done

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
await() { for _ in $(seq 300); do "$@" >/dev/null 2>&1 && return 0; sleep 0.05; done; return 1; }

unset QT_QPA_PLATFORM WAYLAND_DISPLAY
export DISPLAY=:$((100 + $$ % 400))
Xvfb "$DISPLAY" -screen 0 1280x800x24 -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
await xdpyinfo
trayer --edge top --align right --SetDockType true --expand true --widthtype request \
    --height 24 >/dev/null 2>&1 &
pids+=($!)
await sh -c 'xwininfo -root -tree | grep -q "(\"panel\" \"trayer\")"'

mkdir -p "$work/config/Lanternic"
printf '[General]\nLanternic.sources=Local=http://127.0.0.1:1/status.json\n' \
    >"$work/config/Lanternic/Lanternic.conf"

# Docking shows as a window mapped inside trayer's panel. Polling xwininfo takes about 70 ms a
# look here, so xev reports the panel's child windows as they come, each line stamped with
# the moment it arrived.
panel=$(xwininfo -root -tree | awk '/\("panel" "trayer"\)/ { print $1; exit }')
xev -id "$panel" -event substructure | while IFS= read -r line; do
    case $line in *MapNotify*) date +%s%N >>"$work/mapped" ;; esac
done &
pids+=($!)
sleep 0.5

# Prints the milliseconds from exec to the docked icon of one start.
one_start() {
    local run_dir start pid
    run_dir=$(mktemp -d "$work/run.XXXX")
    chmod 700 "$run_dir"
    : >"$work/mapped"
    start=$(date +%s%N)
    # In a process group of its own, so that dbus-run-session goes with its child.
    XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$run_dir" setsid "$@" >/dev/null 2>&1 &
    pid=$!
    await test -s "$work/mapped" || { echo "the icon did not dock" >&2; exit 1; }
    echo $((($(head -1 "$work/mapped") - start) / 1000000))
    kill -- -"$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    sleep 0.3
}

median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

dbus-daemon --session --fork --print-address=3 --print-pid=4 3>"$work/bus" 4>"$work/bus.pid"
DBUS_SESSION_BUS_ADDRESS=$(head -1 "$work/bus")
export DBUS_SESSION_BUS_ADDRESS
pids+=("$(cat "$work/bus.pid")")
direct=$(for _ in $(seq "$runs"); do one_start "$app"; done | tee "$work/direct" | median)
with_bus=$(for _ in $(seq "$runs"); do one_start dbus-run-session -- "$app"; done |
    tee "$work/with-bus" | median)
echo "exec to docked icon, ms (on a running session bus): $(tr '\n' ' ' <"$work/direct")"
echo "exec to docked icon, ms (under dbus-run-session):   $(tr '\n' ' ' <"$work/with-bus")"
echo "median: ${direct} ms for the app's part, ${with_bus} ms with dbus-run-session"
