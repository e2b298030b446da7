#!/usr/bin/env bash
# A whole check pass over N loopback sources (default 1000), once with every source answering
# and once with 1 % of them silent (accepted, never answered), ROUNDS times each (default 3):
# when the last answering source's result was published, against the pass with no silent
# source, and when each pass ended (the silent ones give up after 30 s without an answer).
# Usage: bench/silent-pass.sh BUILD-DIR [N] [ROUNDS]
set -euo pipefail
build=${1:?usage: silent-pass.sh BUILD-DIR [N] [ROUNDS]}
count=${2:-1000}
rounds=${3:-3}
port=18754
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'kill $server 2>/dev/null || true; rm -rf "$work"' EXIT
ulimit -n 16384

for ((i = 0; i < count; i++)); do
    echo "http://127.0.$((i / 250)).$((i % 250 + 1)):$port/feed$i.json"
done >"$work/answering"
# Every hundredth source is silent.
awk '{ if (NR % 100 == 50) sub(/feed/, "silent"); print }' "$work/answering" >"$work/silent"

"$build/bench/pass_server" $port "$here/../samples/statuspage-summary.json" >"$work/ready" &
server=$!
for _ in $(seq 50); do [ -s "$work/ready" ] && break; sleep 0.1; done

field() { awk -v name="$1" '{ for (i = 1; i < NF; i++) if ($i == name) print $(i + 1) }'; }
for ((round = 1; round <= rounds; round++)); do
    all=$("$build/bench/bench_pass" $port "$work/answering")
    some=$("$build/bench/bench_pass" $port "$work/silent")
    base=$(field pass_seconds <<<"$all")
    last=$(field last_answered_seconds <<<"$some")
    echo "round $round: all answering: pass ${base}s; 1 % silent: last answer published" \
        "${last}s ($(awk "BEGIN { printf \"%.2f\", $last / $base }")x), pass ended" \
        "$(field pass_seconds <<<"$some")s"
done
