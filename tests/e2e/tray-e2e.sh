#!/usr/bin/env bash
# End to end under Xvfb with a real tray host (trayer): the icon docks, a click on it opens
# the panel directly under it, and a second click closes it. Exits 77 (skipped) when the
# X tools are not installed.
set -euo pipefail
app=${1:?usage: tray-e2e.sh PATH-TO-LANTERNIC}
for tool in Xvfb trayer xdotool xwininfo xdpyinfo dbus-run-session; do
    command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
done

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
fail() {
    echo "FAILED: $*"
    xwininfo -root -tree 2>/dev/null | grep -iE 'lanternic|panel' || true
    sed 's/^/app: /' "$work/app.log" || true
    exit 1
}
# Waits up to fifteen seconds for a command to succeed.
await() { for _ in $(seq 300); do "$@" >/dev/null 2>&1 && return 0; sleep 0.05; done; return 1; }

# A real X session, whatever the other tests run on.
unset QT_QPA_PLATFORM WAYLAND_DISPLAY
export DISPLAY=:$((100 + $$ % 400))
Xvfb "$DISPLAY" -screen 0 1280x800x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
pids+=($!)
await xdpyinfo || fail "Xvfb did not start"
trayer --edge top --align right --SetDockType true --expand true --widthtype request \
    --height 24 >"$work/trayer.log" 2>&1 &
pids+=($!)
await sh -c 'xwininfo -root -tree | grep -q "(\"panel\" \"trayer\")"' || fail "trayer did not start"

mkdir -p "$work/config/Lanternic" "$work/run"
chmod 700 "$work/run"
# An unreachable loopback source: the app runs for real without leaving the machine.
printf '[General]\nLanternic.sources=Local=http://127.0.0.1:1/status.json\n' \
    >"$work/config/Lanternic/Lanternic.conf"
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
