#!/usr/bin/env bash
# A whole check pass over N sources on loopback (127.0.0.1 upwards, one address per source,
# so per-host connection limits never apply), against curl fetching the same URLs with
# --parallel-max 300. Usage: bench/pass-vs-curl.sh BUILD-DIR [N]
set -euo pipefail
build=${1:?usage: pass-vs-curl.sh BUILD-DIR [N]}
count=${2:-1000}
port=18734
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'kill $server 2>/dev/null || true; rm -rf "$work"' EXIT
ulimit -n 16384

for ((i = 0; i < count; i++)); do
    echo "http://127.0.$((i / 250)).$((i % 250 + 1)):$port/feed$i.json"
done >"$work/urls"
sed 's/^/url = /; s/$/\noutput = \/dev\/null/' "$work/urls" >"$work/curl.conf"

"$build/bench/pass_server" $port "${DOCUMENT:-$here/../samples/statuspage-summary.json}" >"$work/ready" &
server=$!
for _ in $(seq 50); do [ -s "$work/ready" ] && break; sleep 0.1; done

for run in 1 2 3; do
    start=$(date +%s.%N)
    curl --silent --fail --parallel --parallel-max 300 --config "$work/curl.conf"
    end=$(date +%s.%N)
    echo "run $run curl_seconds $(awk "BEGIN { printf \"%.3f\", $end - $start }")"
    echo "run $run lanternic $("$build/bench/bench_pass" $port "$work/urls")"
done
