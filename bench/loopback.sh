# shellcheck shell=bash
# What the pass benchmarks share, sourced by them: the URLs of N sources on loopback (one
# address each, 127.0.0.1 upwards, so per-host connection limits never apply), curl's config
# for them, the server that answers them, and the median of a run's rounds. Sourcing it makes
# $work, a temporary folder, and an exit trap that removes it and stops the server; it also
# raises the limit on open files.

work=$(mktemp -d)
trap 'kill "${server:-}" 2>/dev/null || true; rm -rf "$work"' EXIT
ulimit -n 16384

# loopback_urls N PORT: the URLs, one a line.
loopback_urls() {
    local i
    for ((i = 0; i < $1; i++)); do
        echo "http://127.0.$((i / 250)).$((i % 250 + 1)):$2/feed$i.json"
    done
}

# curl_config: a config for curl that fetches each URL read from standard input to nowhere.
curl_config() {
    sed 's/^/url = /; s/$/\noutput = \/dev\/null/'
}

# timed COMMAND...: runs it; the last line it writes on standard error is its wall, user and
# system seconds, to the microsecond.
timed() { "$(dirname "${BASH_SOURCE[0]}")/childtime.py" "$@"; }

# median: the median of the numbers on standard input, one a line.
median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# start_pass_server BUILD-DIR PORT DOCUMENT: serves DOCUMENT on every path; sets $server.
# shellcheck disable=SC2034 # $server is the exit trap's, and the sourcing script's
start_pass_server() {
    "$1/bench/pass_server" "$2" "$3" >"$work/ready" &
    server=$!
    for _ in $(seq 50); do [ -s "$work/ready" ] && break; sleep 0.1; done
}
