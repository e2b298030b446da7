# Shared by the end-to-end scripts and the tray benchmark: a work folder and background
# processes that go when the script ends, tools to check for, waiting, and an X session with
# a real tray host.

work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# Exits 77 (skipped) unless every tool given is installed.
need() {
    for tool in "$@"; do
        command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
    done
}

# Waits up to fifteen seconds for a command to succeed.
await() { for _ in $(seq 300); do "$@" >/dev/null 2>&1 && return 0; sleep 0.05; done; return 1; }

# Xvfb at 1280×800 with trayer docked at the top right, whatever the caller's display.
start_x_with_tray() {
    unset QT_QPA_PLATFORM WAYLAND_DISPLAY
    export DISPLAY=:$((100 + $$ % 400))
    Xvfb "$DISPLAY" -screen 0 1280x800x24 -nolisten tcp >"$work/xvfb.log" 2>&1 &
    pids+=($!)
    await xdpyinfo || { echo "Xvfb did not start"; return 1; }
    trayer --edge top --align right --SetDockType true --expand true --widthtype request \
        --height 24 >"$work/trayer.log" 2>&1 &
    pids+=($!)
    await sh -c 'xwininfo -root -tree | grep -q "(\"panel\" \"trayer\")"' ||
        { echo "trayer did not start"; return 1; }
}

# A settings folder whose one source is unreachable on loopback: the app runs for real
# without leaving the machine.
write_offline_settings() {
    mkdir -p "$work/config/Lanternic"
    printf '[General]\nLanternic.sources=Local=http://127.0.0.1:1/status.json\n' \
        >"$work/config/Lanternic/Lanternic.conf"
}
