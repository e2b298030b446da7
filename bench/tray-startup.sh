#!/usr/bin/env bash
# How long the tray app takes from exec to its icon docked in a real tray (Xvfb + trayer):
# the median of RUNS starts (default 10), once with the app started directly on a session
# bus that is already running (the app's own part) and once under dbus-run-session (its bus's
# start-up included). The icon counts as docked when a window is mapped inside trayer's panel.
# Usage: bench/tray-startup.sh PATH-TO-LANTERNIC [RUNS]
set -euo pipefail
app=$(realpath "${1:?usage: tray-startup.sh PATH-TO-LANTERNIC [RUNS]}")
runs=${2:-10}
# shellcheck source=../tests/e2e/lib.sh
source "$(dirname "$0")/../tests/e2e/lib.sh"
need Xvfb trayer xwininfo xdpyinfo xev setsid dbus-daemon dbus-run-session
start_x_with_tray
write_offline_settings

# Docking shows as a window mapped inside trayer's panel. Polling xwininfo takes about 70 ms a
# look here, so xev reports the panel's child windows as they come, each line stamped with
# the moment it arrived.
panel=$(xwininfo -root -tree | awk '/\("panel" "trayer"\)/ { print $1; exit }')
xev -id "$panel" -event substructure | while IFS= read -r line; do
    case $line in *MapNotify*) date +%s%N >>"$work/mapped" ;; esac
done &
pids+=("$!")
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
