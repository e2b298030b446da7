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
# shellcheck source=loopback.sh
source "$here/loopback.sh"
loopback_urls "$count" $port >"$work/answering"
# Every hundredth source is silent.
awk '{ if (NR % 100 == 50) sub(/feed/, "silent"); print }' "$work/answering" >"$work/silent"

start_pass_server "$build" $port "$here/../samples/statuspage-summary.json"

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
