#!/usr/bin/env bash
# End to end under Xvfb with a screen reader's view: the app's accessible tree, read over
# AT-SPI, has the panel's rows as a list of list items with plain-text names and
# descriptions, a named sparkline and the default action "Open status page"; the first row has
# the focus, ↓ moves it to the next, the Menu key opens the row's menu; under
# LANG=de_DE.UTF-8 the same tree speaks German. With LANTERNIC_TREE_OUT set, the English tree
# is written there as text. Exits 77 (skipped) when the tools are not installed.
set -euo pipefail
app=${1:?usage: atspi-e2e.sh PATH-TO-LANTERNIC}
if [ -z "${LANTERNIC_E2E_BUS:-}" ]; then
    command -v dbus-run-session >/dev/null || { echo "skipped: dbus-run-session is not installed"; exit 77; }
    LANTERNIC_E2E_BUS=1 exec dbus-run-session --config-file="$(dirname "$0")/../support/session-bus.conf" -- "$0" "$@"
fi
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
need Xvfb xdotool xdpyinfo curl
launcher=/usr/libexec/at-spi-bus-launcher
[ -x "$launcher" ] || { echo "skipped: at-spi2-core is not installed"; exit 77; }
/usr/bin/python3 -c 'import pyatspi' 2>/dev/null || { echo "skipped: python3-pyatspi is not installed"; exit 77; }

start_x || fail "no X session"
"$launcher" --launch-immediately >"$work/atspi.log" 2>&1 &
pids+=("$!")

# Three sources on loopback: down, degraded, operational.
read -r port < <(free_ports 1)
samples="$(dirname "$0")/../../samples"
sed 's/"degraded"/"down"/; s/Build farm/Alpha/' "$samples/relay-feed.json" >"$work/down.json"
sed 's/Build farm/Bravo/' "$samples/relay-feed.json" >"$work/degraded.json"
sed 's/"degraded"/"operational"/; s/Build farm/Charlie/' "$samples/relay-feed.json" >"$work/fine.json"
(cd "$work" && exec python3 -m http.server "$port" --bind 127.0.0.1 >/dev/null 2>&1) &
pids+=("$!")
await curl -sf "http://127.0.0.1:$port/down.json" || fail "the feeds are not served"
mkdir -p "$work/config/Lanternic"
printf '[General]\nLanternic.sources="Alpha=http://127.0.0.1:%s/down.json\\nBravo=http://127.0.0.1:%s/degraded.json\\nCharlie=http://127.0.0.1:%s/fine.json"\n' \
    "$port" "$port" "$port" >"$work/config/Lanternic/Lanternic.conf"

coproc TREE { exec /usr/bin/python3 "$(dirname "$0")/atspi-tree.py"; }
pids+=("$TREE_PID")
ask() {
    echo "$1" >&"${TREE[1]}"
    read -r -t 20 reply <&"${TREE[0]}" || { echo "no answer from the tree reader" >&2; return 1; }
    echo "$reply"
}
# A field of the last answer, by a Python expression over it named r.
field() { /usr/bin/python3 -c "import json, sys; r = json.loads(sys.argv[1]); print($2)" "$1"; }

# No tray: the panel opens as a window, and its rows come in as their checks answer.
run_app() {
    QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/run" \
        "$@" "$app" >"$work/app.log" 2>&1 &
    app_pid=$!
    pids+=("$app_pid")
}
three_rows() { [[ $(field "$(ask rows)" 'r.get("count")') == 3 ]]; }

run_app env
await three_rows || fail "the panel's list did not come with three rows: $(ask rows)"
rows=$(ask rows)
field "$rows" '"\n".join(" | ".join(str(i[k]) for k in ("index", "role", "name", "description", "sparkline", "actions")) for i in r["items"])'
[[ $(field "$rows" 'all(i["role"] == "list item" for i in r["items"]) and [i["index"] for i in r["items"]] == [0, 1, 2]') == True ]] ||
    fail "the rows are not list items in order"
[[ $(field "$rows" 'r["items"][0]["name"]') == "Alpha, Down, CI runners — down" ]] || fail "the first row's name"
[[ $(field "$rows" 'all(i["description"].startswith("https://builds.example.com/status, checked ") for i in r["items"])') == True ]] ||
    fail "a row's description is not its page and last check"
[[ $(field "$rows" 'all(i["actions"][0][1] == "Open status page" for i in r["items"])') == True ]] ||
    fail "a row's default action is not Open status page"
[[ $(field "$rows" 'r["items"][1]["sparkline"]') == "History: 1 degraded" ]] || fail "the sparkline's name"
tree=$(ask tree)
[[ $(field "$tree" 'any(t for t in r["texts"] if "<" in t or "&lt;" in t)') == False ]] ||
    fail "markup in a name or description: $(field "$tree" '[t for t in r["texts"] if "<" in t]')"
[ -z "${LANTERNIC_TREE_OUT:-}" ] || field "$tree" '"\n".join(r["lines"])' >"$LANTERNIC_TREE_OUT"
echo "the rows are a list of list items, plainly named and described"

focused_is() { [[ $(field "$(ask focused)" 'r["name"]') == "$1" ]]; }
await focused_is "Alpha, Down, CI runners — down" || fail "the first row does not have the focus: $(ask focused)"
xdotool key Down
await focused_is "Bravo, Degraded, CI runners — degraded" || fail "↓ did not move the focus: $(ask focused)"
# The menu opens, told as a popup menu shown; once it is open, ↓ puts its first item in focus.
xdotool key Menu
menu_open() { [[ $(field "$(ask menu)" 'r["items"] is not None and "Notify me" in r["items"]') == True ]]; }
await menu_open || fail "the Menu key did not open the row's menu: $(ask menu)"
xdotool key Down
item_focused() { [[ $(field "$(ask menu)" 'r["focused"]') == "Silence Bravo (ALL)" ]]; }
await item_focused || fail "↓ did not put the menu's first item in focus: $(ask menu)"
echo "menu: $(ask menu)"
xdotool key Escape
echo "the focus starts on the first row, ↓ moves it, the Menu key opens the row's menu"

kill "$app_pid"
wait "$app_pid" 2>/dev/null || true
run_app env LANG=de_DE.UTF-8 LANGUAGE= LC_ALL= LC_MESSAGES=
await three_rows || fail "no German list: $(ask rows)"
rows=$(ask rows)
[[ $(field "$rows" 'r["items"][0]["name"]') == "Alpha, Ausgefallen, CI runners — ausgefallen" ]] ||
    fail "the first row's name is not German: $(field "$rows" 'r["items"][0]["name"]')"
[[ $(field "$rows" 'r["items"][0]["actions"][0][1]') == "Statusseite öffnen" ]] || fail "the action is not German"
tree=$(ask tree)
[[ $(field "$tree" 'any("Einstellungen" in t for t in r["texts"])') == True ]] || fail "the footer is not German"
echo "under LANG=de_DE.UTF-8 the tree speaks German"
echo "AT-SPI e2e: passed"
