# shellcheck shell=bash
# Shared by the end-to-end scripts and the tray benchmark: a work folder and background
# processes that go when the script ends, tools to check for, waiting, and an X session with
# a real tray host.

work=$(mktemp -d)
# The app's runtime folder, private as XDG wants it.
mkdir -m 700 "$work/run"
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

# Says what failed, then shows the window tree under X and the logs ($fail_logs, app*.log unless
# set; only the lines matching $fail_lines when set) and the X server's, and exits 1.
fail() {
    echo "FAILED: $*"
    [ -z "${DISPLAY:-}" ] || xwininfo -root -tree 2>/dev/null | grep -iE 'lanternic|panel' || true
    [ -s "$work/xvfb.log" ] && sed "s|^|xvfb.log: |" "$work/xvfb.log" | tail -20
    for log in "$work"/${fail_logs:-app*.log}; do
        [ -f "$log" ] && grep -hE "${fail_lines:-.}" "$log" | sed "s|^|$(basename "$log"): |" | tail -40
    done
    exit 1
}

# Exits 77 (skipped) unless every tool given is installed.
need() {
    for tool in "$@"; do
        command -v "$tool" >/dev/null || { echo "skipped: $tool is not installed"; exit 77; }
    done
}

# Waits up to fifteen seconds for a command to succeed.
await() { for _ in $(seq 300); do "$@" >/dev/null 2>&1 && return 0; sleep 0.05; done; return 1; }

# N free loopback ports, below the range the kernel gives outgoing connections: the clients of
# tests running alongside cannot take them before our servers bind them.
free_ports() {
    python3 - "$1" <<'PY'
import random, socket, sys
top = int(open("/proc/sys/net/ipv4/ip_local_port_range").read().split()[0])
held = []
while len(held) < int(sys.argv[1]):
    candidate = socket.socket()
    try:
        candidate.bind(("127.0.0.1", random.randrange(20000, top)))
        held.append(candidate)
    except OSError:
        candidate.close()
print(*(s.getsockname()[1] for s in held))
PY
}

# Xvfb at 1280×800, whatever the caller's display, on a display number it finds free itself:
# scripts running side by side must never share one. Without -noreset the server resets each
# time its last client leaves (xdpyinfo below, or the app between two runs), and a client
# connecting during the reset is refused.
start_x() {
    unset QT_QPA_PLATFORM WAYLAND_DISPLAY
    Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$work/display" >"$work/xvfb.log" 2>&1 &
    pids+=("$!")
    await test -s "$work/display" || { echo "Xvfb did not start"; return 1; }
    DISPLAY=":$(head -n1 "$work/display")"
    export DISPLAY
    await xdpyinfo || { echo "Xvfb did not start"; return 1; }
}

# trayer docked at the top right; its pid in $tray_pid.
start_tray() {
    trayer --edge top --align right --SetDockType true --expand true --widthtype request \
        --height 24 >"$work/trayer.log" 2>&1 &
    tray_pid=$!
    pids+=("$tray_pid")
    await sh -c 'xwininfo -root -tree | grep -q "(\"panel\" \"trayer\")"' ||
        { echo "trayer did not start"; return 1; }
}

start_x_with_tray() { start_x && start_tray; }

# Our icon's line in the window tree: a window of ours inside trayer's panel, whose last field
# is its absolute position.
icon_line() { xwininfo -root -tree | grep -A8 '("panel" "trayer")' | grep '"Lanternic": ("lanternic"'; }

# The visible window titled Lanternic that is $1 pixels wide: "id x y", its absolute position.
lanternic_window() {
    local window info
    for window in $(xdotool search --onlyvisible --name '^Lanternic$' 2>/dev/null); do
        info=$(xwininfo -id "$window") && grep -q "Width: $1\$" <<<"$info" || continue
        awk -v id="$window" '/Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
                             END { print id, x, y }' <<<"$info"
        return 0
    done
    return 1
}
no_lanternic_window() { ! lanternic_window "$1" >/dev/null; }

# Our StatusNotifierItem watcher and host (sni-host.py) on the session bus; event reads the
# next line it prints, host_says sends it a command.
start_sni_host() {
    coproc HOST { exec /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/sni-host.py"; }
    pids+=("$HOST_PID")
    [[ $(event) == *'"ready"'* ]] || { echo "the watcher did not start"; return 1; }
}
event() { read -r -t 15 line <&"${HOST[0]}" || { echo "no answer from the host" >&2; return 1; }; echo "$line"; }
host_says() { echo "$*" >&"${HOST[1]}"; }

# A settings folder whose one source is unreachable on loopback: the app runs for real
# without leaving the machine.
write_offline_settings() {
    mkdir -p "$work/config/Lanternic"
    printf '[General]\nLanternic.sources=Local=http://127.0.0.1:1/status.json\n' \
        >"$work/config/Lanternic/Lanternic.conf"
}
