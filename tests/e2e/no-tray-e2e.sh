#!/usr/bin/env bash
# End to end under Xvfb with no tray at all: after two seconds the panel opens as an
# ordinary window and says so on stderr; starting Lanternic again shows the window; a tray
# that starts later takes over (the icon docks, the window goes); and closing the window
# (as a window manager's close button does) quits. Exits 77 (skipped) when the tools are
# not installed.
set -euo pipefail
app=${1:?usage: no-tray-e2e.sh PATH-TO-LANTERNIC}
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
need Xvfb trayer xdotool xwininfo xdpyinfo xprop
/usr/bin/python3 -c 'import Xlib' 2>/dev/null || { echo "skipped: python3-xlib is not installed"; exit 77; }

# No session bus either, so that no StatusNotifierItem watcher can count as a tray. With
# $limit set, the app is stopped after that many seconds.
run_app() {
    exec ${limit:+timeout "$limit"} env -u DBUS_SESSION_BUS_ADDRESS XDG_CONFIG_HOME="$work/config" \
        XDG_RUNTIME_DIR="$work/run" "$app" >"$work/app$1.log" 2>&1
}
# The panel as a window: 320 wide, and a normal window.
pane_window() {
    local id _
    read -r id _ < <(lanternic_window 320) &&
        xprop -id "$id" _NET_WM_WINDOW_TYPE | grep -q _NET_WM_WINDOW_TYPE_NORMAL && echo "$id"
}
# What a window manager's close button does: a WM_DELETE_WINDOW message to the window.
close_window() {
    /usr/bin/python3 - "$1" <<'PY'
import sys
from Xlib import X, display
from Xlib.protocol import event
d = display.Display()
window = d.create_resource_object('window', int(sys.argv[1]))
protocols, delete = d.intern_atom('WM_PROTOCOLS'), d.intern_atom('WM_DELETE_WINDOW')
window.send_event(event.ClientMessage(window=window, client_type=protocols,
                                      data=(32, [delete, X.CurrentTime, 0, 0, 0])))
d.flush()
PY
}

start_x || fail "no X session"
write_offline_settings

run_app 1 &
app_pid=$!
pids+=("$app_pid")
await pane_window || fail "no window appeared without a tray"
grep -q "no system tray found; showing the panel as a window" "$work/app1.log" ||
    fail "stderr does not say why the panel is a window"
echo "without a tray the panel opened as a window, and stderr said so"

window=$(pane_window)
xdotool windowunmap "$window"
await no_lanternic_window 320 || fail "the window could not be hidden"
(limit=10 run_app 2) || fail "a second start did not hand over to the first and exit"
await pane_window || fail "a second start did not show the window"
echo "a second start showed the window"

start_tray || fail "no tray"
await icon_line || fail "the icon did not dock when a tray started"
await no_lanternic_window 320 || fail "the window stayed open after the icon docked"
kill -0 "$app_pid" || fail "Lanternic quit when the tray appeared"
echo "a tray that started later took over from the window"

kill "$app_pid" "$tray_pid"
wait "$app_pid" 2>/dev/null || true
wait "$tray_pid" 2>/dev/null || true
run_app 3 &
app_pid=$!
pids+=("$app_pid")
await pane_window || fail "no window on the second run"
close_window "$(pane_window)"
for _ in $(seq 100); do kill -0 "$app_pid" 2>/dev/null || break; sleep 0.05; done
kill -0 "$app_pid" 2>/dev/null && fail "closing the window did not quit"
wait "$app_pid" || fail "Lanternic exited with status $? after its window was closed"
echo "closing the window quit"
echo "no-tray e2e: passed"
