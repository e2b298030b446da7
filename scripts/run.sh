#!/usr/bin/env bash
# Installs what is missing, builds, and runs lanternic-check on a sample status document.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build
status=0
build/src/lanternic-check read --name GitHub --pretty samples/statuspage-summary.json || status=$?
echo "lanternic-check exited with $status (0 operational, 1 degraded, 2 down, 3 unknown)"
