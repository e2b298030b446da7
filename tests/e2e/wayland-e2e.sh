#!/usr/bin/env bash
# End to end under a headless Weston: without a tray the panel opens as a window, and with a
# StatusNotifierItem host, Activate opens the panel as a window the compositor places (a
# Wayland client cannot place its own). What the app asks of the compositor is read from its
# protocol log (WAYLAND_DEBUG). Exits 77 (skipped) when Weston, Qt's Wayland plugin or the
# Python D-Bus bindings are not installed.
set -euo pipefail
app=${1:?usage: wayland-e2e.sh PATH-TO-LANTERNIC}
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=lib.sh
source "$here/lib.sh"
need weston
plugin=$(find /usr/lib/*/qt6/plugins/platforms -name 'libqwayland-generic.so' 2>/dev/null | head -1)
[ -n "$plugin" ] || { echo "skipped: Qt's Wayland platform plugin (qt6-wayland) is not installed"; exit 77; }
/usr/bin/python3 -c 'import dbus, gi' 2>/dev/null ||
    { echo "skipped: python3-dbus or python3-gi is not installed"; exit 77; }
fail_lines='lanternic:|get_toplevel|get_popup|set_title|min_size'

unset DISPLAY
export XDG_RUNTIME_DIR="$work/run" WAYLAND_DISPLAY=lanternic-e2e QT_QPA_PLATFORM=wayland
weston --backend=headless-backend.so --socket="$WAYLAND_DISPLAY" --width=1280 --height=800 \
    >"$work/weston.log" 2>&1 &
pids+=("$!")
await test -S "$XDG_RUNTIME_DIR/$WAYLAND_DISPLAY" || fail "Weston did not start"
write_offline_settings

# No tray, no bus: a window of the pane's width, as tall as the user likes.
XDG_CONFIG_HOME="$work/config" WAYLAND_DEBUG=1 env -u DBUS_SESSION_BUS_ADDRESS "$app" \
    >"$work/app-window.log" 2>&1 &
app_pid=$!
pids+=("$app_pid")
await grep -q 'set_title("Lanternic")' "$work/app-window.log" || fail "no window without a tray"
grep -q 'lanternic: no system tray found; showing the panel as a window' "$work/app-window.log" ||
    fail "stderr does not say why"
grep -q 'set_min_size(320, ' "$work/app-window.log" && grep -q 'set_max_size(320, 0)' "$work/app-window.log" ||
    fail "the window is not the pane's width and free in height"
kill "$app_pid"
echo "without a tray: a window titled Lanternic, 320 wide, resizable in height"

# A StatusNotifierItem host: Activate opens the panel as a toplevel (no popup without a parent).
start_sni_host || fail "no StatusNotifierItem host"
XDG_CONFIG_HOME="$work/config" WAYLAND_DEBUG=1 "$app" >"$work/app-tray.log" 2>&1 &
pids+=("$!")
[[ $(event) == *'"registered"'* ]] || fail "the item did not register"
grep -q 'set_title("Lanternic")' "$work/app-tray.log" && fail "a window opened although there is a tray"
host_says activate 600 30
[[ $(event) == *'"activated"'* ]] || fail "Activate failed"
await grep -q 'set_title("Lanternic")' "$work/app-tray.log" || fail "Activate did not open the panel"
grep -q 'get_popup' "$work/app-tray.log" && fail "the panel asked for a popup without a parent"
echo "with a StatusNotifierItem host: Activate opened the panel as a window the compositor places"
echo "wayland e2e: passed"
