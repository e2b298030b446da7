#!/usr/bin/env bash
# A real Prometheus scrapes a real lanternic-serve on loopback: promtool accepts the
# exposition, and the query API returns the source health series. The sources are recorded
# documents served on loopback. Exits 77 (skipped) when Prometheus or python3 is missing.
set -euo pipefail
serve=${1:?usage: prometheus-e2e.sh PATH-TO-LANTERNIC-SERVE SAMPLES-DIR}
samples=${2:?usage: prometheus-e2e.sh PATH-TO-LANTERNIC-SERVE SAMPLES-DIR}
# shellcheck source=lib.sh
source "$(dirname "$0")/lib.sh"
need prometheus promtool python3 curl
fail_logs='*.log'

read -r feeds watcher prom < <(free_ports 3)
(cd "$samples" && exec python3 -m http.server "$feeds" --bind 127.0.0.1) >"$work/feeds.log" 2>&1 &
pids+=("$!")
await curl -sf "http://127.0.0.1:$feeds/relay-feed.json" || fail "the feed server did not start"

# The team set-up as the README gives it: the sources on the first start, kept for later ones.
"$serve" --settings "$work/watcher.ini" --listen "127.0.0.1:$watcher" \
    --source "Build farm=http://127.0.0.1:$feeds/relay-feed.json" \
    --source "GitHub=http://127.0.0.1:$feeds/statuspage-summary.json" >"$work/watcher.log" 2>&1 &
first=$!
await curl -sf "http://127.0.0.1:$watcher/healthz" || fail "the watcher did not finish a pass"
kill "$first"
wait "$first" || true
"$serve" --settings "$work/watcher.ini" --listen "127.0.0.1:$watcher" >>"$work/watcher.log" 2>&1 &
pids+=("$!")
await curl -sf "http://127.0.0.1:$watcher/healthz" || fail "the watcher did not start again"
curl -sf "http://127.0.0.1:$watcher/metrics" >"$work/metrics.txt"
promtool check metrics <"$work/metrics.txt" || fail "promtool rejected the exposition"
curl -sf --compressed "http://127.0.0.1:$watcher/lanternic.json" |
    python3 -c 'import json, sys; assert json.load(sys.stdin)["schema"] == "lanternic.v1"' ||
    fail "the gzip-compressed relay feed does not decode"

cat >"$work/prometheus.yml" <<CONFIG
global:
  scrape_interval: 1s
scrape_configs:
  - job_name: lanternic
    static_configs:
      - targets: ['127.0.0.1:$watcher']
CONFIG
prometheus --config.file="$work/prometheus.yml" --storage.tsdb.path="$work/data" \
    --web.listen-address="127.0.0.1:$prom" >"$work/prometheus.log" 2>&1 &
pids+=("$!")
query="http://127.0.0.1:$prom/api/v1/query?query=lanternic_source_health"
cat >"$work/series.py" <<'SCRIPT'
import json, sys
result = json.load(sys.stdin)["data"]["result"]
print(" ".join(sorted(r["metric"]["name"] + "=" + r["value"][1] for r in result)))
SCRIPT
series() { curl -sf "$query" | python3 "$work/series.py"; }
got=""
for _ in $(seq 300); do
    got=$(series 2>/dev/null || true)
    [ -n "$got" ] && break
    sleep 0.1
done
[ -n "$got" ] || fail "Prometheus never had the series"
echo "query lanternic_source_health: $got"
[ "$got" = "Build farm=1 GitHub=1" ] || fail "unexpected series: $got"
echo "prometheus e2e: 1 passed, 0 failed"
