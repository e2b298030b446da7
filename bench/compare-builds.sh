#!/usr/bin/env bash
# Two builds' whole passes over N loopback sources against curl on the same URLs, interleaved
# round by round (curl, the first build, the second), ROUNDS rounds (default 5): the medians of
# CPU time and of the memory each pass adds (curl prints its parallel progress to stderr even
# with --silent, so only its last line is read). For a change's before and after on a noisy
# machine.
# Usage: bench/compare-builds.sh BEFORE-BUILD-DIR AFTER-BUILD-DIR [N] [ROUNDS]
set -euo pipefail
before=${1:?usage: compare-builds.sh BEFORE-BUILD-DIR AFTER-BUILD-DIR [N] [ROUNDS]}
after=${2:?usage: compare-builds.sh BEFORE-BUILD-DIR AFTER-BUILD-DIR [N] [ROUNDS]}
count=${3:-1000}
rounds=${4:-5}
port=18736
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=loopback.sh
source "$here/loopback.sh"
loopback_urls "$count" $port >"$work/urls"
curl_config <"$work/urls" >"$work/curl.conf"
start_pass_server "$after" $port "$here/../samples/statuspage-summary.json"

pass() { "$1/bench/bench_pass" $port "$work/urls" | awk -v name="$2" '{
    for (i = 1; i < NF; i++) v[$i] = $(i + 1)
    print name, v["pass_cpu_seconds"], (v["peak_rss_kb"] - v["idle_rss_kb"]) / 1024 }'; }
for ((round = 1; round <= rounds; round++)); do
    timed curl --silent --fail --parallel --parallel-max 300 \
        --config "$work/curl.conf" 2>&1 >/dev/null | tail -1 | awk '{ print "curl", $2 + $3, 0 }'
    pass "$before" before
    pass "$after" after
done | tee "$work/rounds"

# The least of each is printed too: on a machine whose speed drifts, noise only ever adds.
for name in curl before after; do
    cpu=$(awk -v n=$name '$1 == n { print $2 }' "$work/rounds" | median)
    least=$(awk -v n=$name '$1 == n { print $2 }' "$work/rounds" | sort -n | head -1)
    memory=$(awk -v n=$name '$1 == n { print $3 }' "$work/rounds" | median)
    echo "median $name ${cpu}s cpu (least ${least}s), ${memory} MB added"
done
