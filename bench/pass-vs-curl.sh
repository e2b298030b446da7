#!/usr/bin/env bash
# A whole check pass over N sources on loopback (127.0.0.1 upwards, one address per source,
# so per-host connection limits never apply), against curl fetching the same URLs with
# --parallel-max 300, interleaved, ROUNDS rounds (default 5), and with as many transfers in
# flight as a pass keeps (128): the same concurrency, where curl often costs less. The
# server answers with about 1 KB of CDN-like headers and the 5 KB summary. Prints each round,
# the medians and the ratios, then the pass's syscalls per request under strace (not with
# SYSCALLS=0).
# Usage: bench/pass-vs-curl.sh BUILD-DIR [N] [ROUNDS]
set -euo pipefail
build=${1:?usage: pass-vs-curl.sh BUILD-DIR [N] [ROUNDS]}
count=${2:-1000}
rounds=${3:-5}
port=18734
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=loopback.sh
source "$here/loopback.sh"
loopback_urls "$count" $port >"$work/urls"
curl_config <"$work/urls" >"$work/curl.conf"
start_pass_server "$build" $port "${DOCUMENT:-$here/../samples/statuspage-summary.json}"

for ((round = 1; round <= rounds; round++)); do
    # curl's times come from the system when it exits; the pass measures its own from its start.
    curl_line=$(timed curl --silent --fail --parallel --parallel-max 300 \
        --config "$work/curl.conf" 2>&1 >/dev/null | tail -1)
    read -r cw cu cs <<<"$curl_line"
    pass_line=$("$build/bench/bench_pass" $port "$work/urls")
    even_line=$(timed curl --silent --fail --parallel --parallel-max 128 \
        --config "$work/curl.conf" 2>&1 >/dev/null | tail -1)
    read -r _ eu es <<<"$even_line"
    echo "round $round curl_seconds $cw curl_cpu_seconds $(awk "BEGIN { print $cu + $cs }")" \
        "curl128_cpu_seconds $(awk "BEGIN { print $eu + $es }") lanternic $pass_line"
done | tee "$work/rounds"

field() { awk -v name="$1" '{ for (i = 1; i < NF; i++) if ($i == name) print $(i + 1) }' "$work/rounds"; }
cw=$(field curl_seconds | median)
cc=$(field curl_cpu_seconds | median)
ec=$(field curl128_cpu_seconds | median)
pw=$(field pass_seconds | median)
pc=$(field pass_cpu_seconds | median)
idle=$(field idle_rss_kb | median)
peak=$(field peak_rss_kb | median)
echo "median curl ${cw}s wall ${cc}s cpu; pass ${pw}s wall ${pc}s cpu;" \
    "wall ratio $(awk "BEGIN { printf \"%.2f\", $pw / $cw }")" \
    "cpu ratio $(awk "BEGIN { printf \"%.2f\", $pc / $cc }")" \
    "memory growth $(awk "BEGIN { printf \"%.1f\", ($peak - $idle) / 1024 }") MB"
echo "median curl with 128 in flight ${ec}s cpu; cpu ratio $(awk "BEGIN { printf \"%.2f\", $pc / $ec }")"

if [ "${SYSCALLS:-1}" != 0 ] && command -v strace >/dev/null; then
    strace -f -c -o "$work/strace" "$build/bench/bench_pass" $port "$work/urls" >/dev/null
    calls=$(awk '$NF == "total" { print $(NF - 2) }' "$work/strace")
    echo "syscalls per request (whole process, start-up included): $(awk "BEGIN { printf \"%.1f\", $calls / $count }")"
fi
