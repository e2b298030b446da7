#!/usr/bin/env bash
# The pass against curl at 1,000 and at 10,000 sources, both sizes in every round (ROUNDS
# rounds, default 5), so that the machine's drift over the run falls on both alike: each
# size's CPU ratio to curl (with 300 and with 128 transfers in flight), the memory a pass adds,
# and how much each costs at ten times the sources, as the ratio of the medians and as the
# median of each round's ratio.
# Usage: bench/pass-scaling.sh BUILD-DIR [ROUNDS]
set -euo pipefail
build=${1:?usage: pass-scaling.sh BUILD-DIR [ROUNDS]}
rounds=${2:-5}
port=18735
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=loopback.sh
source "$here/loopback.sh"
sizes=(1000 10000)
for count in "${sizes[@]}"; do
    loopback_urls "$count" $port >"$work/urls$count"
    curl_config <"$work/urls$count" >"$work/curl$count.conf"
done
start_pass_server "$build" $port "${DOCUMENT:-$here/../samples/statuspage-summary.json}"

cpu() { awk '{ print $2 + $3 }' <<<"$1"; }
for ((round = 1; round <= rounds; round++)); do
    for count in "${sizes[@]}"; do
        curl_line=$(timed curl --silent --fail --parallel --parallel-max 300 \
            --config "$work/curl$count.conf" 2>&1 >/dev/null | tail -1)
        pass_line=$("$build/bench/bench_pass" $port "$work/urls$count")
        even_line=$(timed curl --silent --fail --parallel --parallel-max 128 \
            --config "$work/curl$count.conf" 2>&1 >/dev/null | tail -1)
        echo "round $round count $count curl_cpu_seconds $(cpu "$curl_line")" \
            "curl128_cpu_seconds $(cpu "$even_line") lanternic $pass_line"
    done
done | tee "$work/rounds"

# field NAME COUNT: the values of NAME in COUNT's rounds, in round order.
field() {
    awk -v name="$1" -v count="$2" '$4 == count {
        for (i = 1; i < NF; i++) if ($i == name) print $(i + 1) }' "$work/rounds"
}
ratio() { awk "BEGIN { printf \"%.2f\", $1 / $2 }"; }
declare -A pass curl even memory
for count in "${sizes[@]}"; do
    pass[$count]=$(field pass_cpu_seconds "$count" | median)
    curl[$count]=$(field curl_cpu_seconds "$count" | median)
    even[$count]=$(field curl128_cpu_seconds "$count" | median)
    idle=$(field idle_rss_kb "$count" | median)
    peak=$(field peak_rss_kb "$count" | median)
    memory[$count]=$(awk "BEGIN { printf \"%.1f\", ($peak - $idle) / 1024 }")
    echo "$count sources: pass ${pass[$count]} s CPU, curl ${curl[$count]} s CPU," \
        "ratio $(ratio "${pass[$count]}" "${curl[$count]}"), with 128 in flight" \
        "${even[$count]} s, ratio $(ratio "${pass[$count]}" "${even[$count]}")," \
        "memory growth ${memory[$count]} MB"
done
# each round's 10,000-source cost over its own 1,000-source cost
round_growth() {
    paste <(field "$1" 10000) <(field "$1" 1000) | awk '{ print $1 / $2 }' | median
}
echo "growth from 1,000 to 10,000 sources:" \
    "pass $(ratio "${pass[10000]}" "${pass[1000]}")x, curl $(ratio "${curl[10000]}" "${curl[1000]}")x;" \
    "median of the rounds' own: pass $(printf %.2f "$(round_growth pass_cpu_seconds)")x," \
    "curl $(printf %.2f "$(round_growth curl_cpu_seconds)")x"
