#!/usr/bin/env bash
# The pass against curl at 1,000 and at 10,000 sources (pass-vs-curl.sh, ROUNDS rounds each,
# default 5): each size's CPU ratio to curl (with 300 and with 128 transfers in flight), and
# how much each costs at ten times the sources.
# Usage: bench/pass-scaling.sh BUILD-DIR [ROUNDS]
set -euo pipefail
build=${1:?usage: pass-scaling.sh BUILD-DIR [ROUNDS]}
rounds=${2:-5}
here=$(cd "$(dirname "$0")" && pwd)

declare -A pass curl even memory
for count in 1000 10000; do
    lines=$(SYSCALLS=0 "$here/pass-vs-curl.sh" "$build" "$count" "$rounds" | tee /dev/stderr | grep '^median')
    read -r pass[$count] curl[$count] memory[$count] < <(awk 'NR == 1 {
        for (i = 1; i <= NF; i++) {
            if ($i == "pass") pass = $(i + 3)
            if ($i == "curl") curl = $(i + 3)
            if ($i == "growth") memory = $(i + 1)
        }
        sub("s", "", pass); sub("s", "", curl); print pass, curl, memory }' <<<"$lines")
    even[$count]=$(awk 'NR == 2 { sub("s", "", $7); print $7 }' <<<"$lines")
done
for count in 1000 10000; do
    echo "$count sources: pass ${pass[$count]} s CPU, curl ${curl[$count]} s CPU," \
        "ratio $(awk "BEGIN { printf \"%.2f\", ${pass[$count]} / ${curl[$count]} }")," \
        "with 128 in flight ${even[$count]} s, ratio" \
        "$(awk "BEGIN { printf \"%.2f\", ${pass[$count]} / ${even[$count]} }")," \
        "memory growth ${memory[$count]} MB"
done
echo "growth from 1,000 to 10,000 sources:" \
    "pass $(awk "BEGIN { printf \"%.1f\", ${pass[10000]} / ${pass[1000]} }")x," \
    "curl $(awk "BEGIN { printf \"%.1f\", ${curl[10000]} / ${curl[1000]} }")x"
