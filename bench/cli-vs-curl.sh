#!/usr/bin/env bash
# lanternic-check --json over N loopback sources against curl on the same URLs, as whole
# processes: start-up, reading and writing the settings file and printing the report included,
# which the pass benchmarks leave out. Interleaved, ROUNDS rounds (default 5); each round starts
# from the same settings file. Prints each round, the medians and the ratios.
# Usage: bench/cli-vs-curl.sh BUILD-DIR [N] [ROUNDS]
set -euo pipefail
build=${1:?usage: cli-vs-curl.sh BUILD-DIR [N] [ROUNDS]}
count=${2:-1000}
rounds=${3:-5}
port=18736
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=loopback.sh
source "$here/loopback.sh"
loopback_urls "$count" $port >"$work/urls"
curl_config <"$work/urls" >"$work/curl.conf"
# The sources as the settings file keeps them: one quoted value, lines joined by "\n".
awk 'BEGIN { printf "[General]\nLanternic.sources=\"" }
     { printf "%sS%d=%s", (NR > 1 ? "\\n" : ""), NR, $0 }
     END { print "\"" }' "$work/urls" >"$work/start.ini"
start_pass_server "$build" $port "${DOCUMENT:-$here/../samples/statuspage-summary.json}"
mkdir "$work/home"

cpu() { awk '{ print $2 + $3 }' <<<"$1"; }
for ((round = 1; round <= rounds; round++)); do
    cp "$work/start.ini" "$work/settings.ini"
    curl_line=$(timed curl --silent --fail --parallel --parallel-max 300 \
        --config "$work/curl.conf" 2>&1 >/dev/null | tail -1)
    # HOME too, so that nothing of the user's own is read or written. The exit status is the
    # sources' health, not a failure.
    check_line=$({ HOME="$work/home" XDG_CONFIG_HOME="$work/home" timed \
        "$build/src/cli/lanternic-check" --settings "$work/settings.ini" --json ||
        true; } 2>&1 >"$work/report" | tail -1)
    even_line=$(timed curl --silent --fail --parallel --parallel-max 128 \
        --config "$work/curl.conf" 2>&1 >/dev/null | tail -1)
    echo "round $round curl_cpu_seconds $(cpu "$curl_line") check_cpu_seconds $(cpu "$check_line")" \
        "curl128_cpu_seconds $(cpu "$even_line") report_bytes $(wc -c <"$work/report")"
done | tee "$work/rounds"

field() { awk -v name="$1" '{ for (i = 1; i < NF; i++) if ($i == name) print $(i + 1) }' "$work/rounds"; }
cc=$(field curl_cpu_seconds | median)
ec=$(field curl128_cpu_seconds | median)
kc=$(field check_cpu_seconds | median)
echo "median lanternic-check ${kc}s cpu; curl ${cc}s cpu, ratio" \
    "$(awk "BEGIN { printf \"%.2f\", $kc / $cc }"); with 128 in flight ${ec}s cpu, ratio" \
    "$(awk "BEGIN { printf \"%.2f\", $kc / $ec }")"
