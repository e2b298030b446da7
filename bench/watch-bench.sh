#!/usr/bin/env bash
# The watcher (lanternic-serve's server and loop) measured: its resident memory after PASSES
# passes (default 1000) over 100 loopback sources against after 10, and serving /metrics and
# /lanternic.json to 200 concurrent clients (two ab runs of 100 each, 10,000 requests a round,
# six rounds) while it starts a pass every 2 s, so that some rounds meet a pass. Each round is
# also run against baseline_server, the least a server can do, serving the same bytes: on a
# machine whose load generator shares its cores, that says what the machine itself allows.
# Last comes an attack round: 300 slow request heads and 2,000 idle connections from 127.0.0.2
# (bench/attack.py) while ab asks from 127.0.0.1; it reports ab's figures and the watcher's
# resident memory before, at most during, and after the attack.
# Usage: bench/watch-bench.sh BUILD-DIR [PASSES]
set -euo pipefail
build=${1:?usage: watch-bench.sh BUILD-DIR [PASSES]}
passes=${2:-1000}
port=18744
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
ulimit -n 16384
command -v ab >/dev/null || { echo "ab is not installed (apache2-utils)" >&2; exit 1; }

"$build/bench/pass_server" $port "$here/../samples/statuspage-summary.json" >"$work/ready" &
pids+=("$!")
for _ in $(seq 50); do [ -s "$work/ready" ] && break; sleep 0.1; done

"$build/bench/bench_watch" memory $port 100 "$passes"

"$build/bench/bench_watch" serve $port 100 45 >"$work/watch" &
watcher=$!
pids+=("$watcher")
for _ in $(seq 100); do grep -q ready "$work/watch" && break; sleep 0.1; done

# The baseline serves the watcher's own answers, recorded byte for byte.
for path in metrics lanternic.json; do
    for encoding in identity gzip; do
        exec 3<>/dev/tcp/127.0.0.1/$((port + 1))
        printf 'GET /%s HTTP/1.1\r\nHost: bench\r\nAccept-Encoding: %s\r\n\r\n' \
            "$path" "$encoding" >&3
        cat <&3 >"$work/$path.$encoding"
        exec 3<&-
    done
done
"$build/bench/baseline_server" $((port + 2)) "$work" >"$work/baseline" &
pids+=("$!")
for _ in $(seq 50); do [ -s "$work/baseline" ] && break; sleep 0.1; done

# One round: 10,000 requests from 200 clients at once, half to each path.
# Usage: round LABEL PORT [AB-OPTION...]
round() {
    local label=$1 target=$2 load=() path
    shift 2
    for path in metrics lanternic.json; do
        ab -q "$@" -n 5000 -c 100 "http://127.0.0.1:$target/$path" >"$work/ab-$path" 2>&1 &
        load+=($!)
    done
    wait "${load[@]}" || true
    for path in metrics lanternic.json; do
        echo "$label /$path: $(grep -E '^(Complete|Failed|Non-2xx|   \(Connect)' "$work/ab-$path" | tr -s ' ' | tr '\n' ';')" \
            "p50 $(awk '/ 50%/ { print $2 }' "$work/ab-$path") ms," \
            "p99 $(awk '/ 99%/ { print $2 }' "$work/ab-$path") ms," \
            "max $(awk '/100%/ { print $2 }' "$work/ab-$path") ms"
    done
}

# Clients ask as Prometheus and Lanternic's own fetcher do, for gzip; the last round asks for
# the plain bodies (130 KB of exposition), which costs the clients on the same cores most. ab
# counts an answer whose length differs from its first as failed ("Length"): that is a pass
# finishing during the round, which changes both documents, and not an error. Each round is
# followed by the same round against the baseline, so that both meet the same state of the
# machine.
for number in 1 2 3 4 5 plain; do
    encoding=(-H "Accept-Encoding: gzip")
    [ "$number" = plain ] && encoding=()
    round "round $number" $((port + 1)) "${encoding[@]}"
    sleep 0.3
    round "baseline $number" $((port + 2)) "${encoding[@]}"
    sleep 1
done
rss() { awk '/^VmRSS/ { print $2 }' "/proc/$watcher/status"; }
before=$(rss)
most=$before
python3 "$here/attack.py" 127.0.0.1 $((port + 1)) 127.0.0.2 300 2000 14 >"$work/attack" &
attacker=$!
pids+=("$attacker")
sleep 4
round "attack" $((port + 1)) -H "Accept-Encoding: gzip" &
attackRound=$!
while kill -0 "$attacker" 2>/dev/null; do
    now=$(rss)
    [ "$now" -gt "$most" ] && most=$now
    sleep 0.2
done
wait "$attackRound" || true
echo "attack: $(cat "$work/attack"); watcher rss before ${before} KB, most during ${most} KB," \
    "after $(rss) KB"
wait "$watcher" || true
grep passes "$work/watch"
