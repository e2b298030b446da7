#!/usr/bin/env bash
# End to end under Xvfb with a real tray host (trayer): the icon docks, a click on it opens
# the panel directly under it, and a second click closes it; again once a compositing manager
# (xcompmgr) runs, when the panel has a shadow. Exits 77 (skipped) when the X tools are not
# installed.
set -euo pipefail
app=${1:?usage: tray-e2e.sh PATH-TO-LANTERNIC}
# The app's session bus is the script's own, which ends with it: a bus started for the app
# alone outlives it when the app is killed.
if [ -z "${LANTERNIC_E2E_BUS:-}" ]; then
    command -v dbus-run-session >/dev/null || { echo "skipped: dbus-run-session is not installed"; exit 77; }
    LANTERNIC_E2E_BUS=1 exec dbus-run-session --config-file="$(dirname "$0")/../support/session-bus.conf" -- "$0" "$@"
fi
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
need Xvfb trayer xcompmgr xdotool xwininfo xdpyinfo

start_x_with_tray || fail "no X session with a tray"
write_offline_settings
XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" "$app" >"$work/app.log" 2>&1 &
pids+=("$!")

await icon_line || fail "the icon did not dock in the tray"
read -r size position < <(icon_line | awk '{ print $(NF-1), $NF }')
icon_w=${size%%x*}
rest=${size#*x}
icon_h=${rest%%+*}
position=${position#+}
icon_x=${position%%+*}
icon_y=${position#*+}
echo "icon docked at ${icon_x},${icon_y} (${icon_w}x${icon_h})"

# Opens the panel with a click on the icon, checks that the panel proper (window less shadow)
# hangs centred under the icon, and closes it with a second click. The panel's window: with no
# compositing manager, the 320-pixel column and a one-pixel border; with one, the column with a
# shadow of 14 pixels around it (10 above, 18 below).
click_open_and_close() {
    local what=$1 window_w=$2 panel_w=$3 shadow_x=$4 shadow_y=$5
    # A click within 250 ms of the panel closing is the one that closed it, and is ignored.
    sleep 0.3
    xdotool mousemove $((icon_x + icon_w / 2)) $((icon_y + icon_h / 2)) click 1
    await lanternic_window "$window_w" || fail "$what: a click on the icon did not open the panel"
    read -r _ window_x window_y < <(lanternic_window "$window_w")
    local panel_x=$((window_x + shadow_x)) panel_y=$((window_y + shadow_y))
    local expected_y=$((icon_y + icon_h + 4))
    local expected_x=$((icon_x + icon_w / 2 - panel_w / 2))
    local max_x=$((1280 - panel_w - 4))
    ((expected_x > max_x)) && expected_x=$max_x
    ((expected_x < 4)) && expected_x=4
    echo "$what: panel opened at ${panel_x},${panel_y}"
    [ "$panel_y" -eq "$expected_y" ] || fail "$what: panel top is at $panel_y, expected $expected_y"
    [ $((panel_x - expected_x)) -le 1 ] && [ $((expected_x - panel_x)) -le 1 ] ||
        fail "$what: panel left edge is at $panel_x, expected $expected_x"

    xdotool mousemove $((icon_x + icon_w / 2)) $((icon_y + icon_h / 2)) click 1
    await no_lanternic_window "$window_w" ||
        fail "$what: a second click on the icon did not close the panel"
    echo "$what: panel closed by a second click"
}

click_open_and_close plain 322 322 0 0
# The same app, once a compositing manager has started: rounded, with a shadow.
xcompmgr >"$work/xcompmgr.log" 2>&1 &
pids+=("$!")
# Its selection window shows that it has taken the compositing manager's selection.
await sh -c 'xwininfo -root -tree | grep -q "\"xcompmgr\""' || fail "xcompmgr did not start"
click_open_and_close composited 348 320 14 10
echo "tray e2e: passed"
