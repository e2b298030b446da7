#!/usr/bin/env bash
# End to end under Xvfb with a real tray host (trayer): the icon docks, a click on it opens
# the panel directly under it, and a second click closes it. Exits 77 (skipped) when the
# X tools are not installed.
set -euo pipefail
app=${1:?usage: tray-e2e.sh PATH-TO-LANTERNIC}
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
need Xvfb trayer xdotool xwininfo xdpyinfo dbus-run-session
fail() {
    echo "FAILED: $*"
    xwininfo -root -tree 2>/dev/null | grep -iE 'lanternic|panel' || true
    sed 's/^/app: /' "$work/app.log" || true
    exit 1
}

start_x_with_tray || fail "no X session with a tray"
write_offline_settings
mkdir -p "$work/run"
chmod 700 "$work/run"
XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" \
    dbus-run-session -- "$app" >"$work/app.log" 2>&1 &
pids+=($!)

# The icon is a window of ours inside trayer's panel; its last field is its absolute position.
icon_line() { xwininfo -root -tree | grep -A8 '("panel" "trayer")' | grep '"Lanternic": ("lanternic"'; }
await icon_line || fail "the icon did not dock in the tray"
read -r size position < <(icon_line | awk '{ print $(NF-1), $NF }')
icon_w=${size%%x*}
rest=${size#*x}
icon_h=${rest%%+*}
position=${position#+}
icon_x=${position%%+*}
icon_y=${position#*+}
echo "icon docked at ${icon_x},${icon_y} (${icon_w}x${icon_h})"

panel_geometry() {
    for window in $(xdotool search --onlyvisible --name '^Lanternic$' 2>/dev/null); do
        local info
        info=$(xwininfo -id "$window")
        if grep -q 'Width: 320' <<<"$info"; then
            awk '/Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
                 END { print x, y }' <<<"$info"
            return 0
        fi
    done
    return 1
}

xdotool mousemove $((icon_x + icon_w / 2)) $((icon_y + icon_h / 2)) click 1
await panel_geometry || fail "a click on the icon did not open the panel"
read -r panel_x panel_y < <(panel_geometry)
expected_y=$((icon_y + icon_h + 4))
expected_x=$((icon_x + icon_w / 2 - 160))
max_x=$((1280 - 320 - 4))
((expected_x > max_x)) && expected_x=$max_x
((expected_x < 4)) && expected_x=4
echo "panel opened at ${panel_x},${panel_y}"
[ "$panel_y" -eq "$expected_y" ] || fail "panel top is at $panel_y, expected $expected_y"
[ $((panel_x - expected_x)) -le 1 ] && [ $((expected_x - panel_x)) -le 1 ] ||
    fail "panel left edge is at $panel_x, expected $expected_x"

xdotool mousemove $((icon_x + icon_w / 2)) $((icon_y + icon_h / 2)) click 1
await sh -c '! xdotool search --onlyvisible --name "^Lanternic$" | while read -r w; do
    xwininfo -id "$w" | grep -q "Width: 320" && echo open; done | grep -q open' ||
    fail "a second click on the icon did not close the panel"
echo "panel closed by a second click"
echo "tray e2e: 1 passed, 0 failed"
