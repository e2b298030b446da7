#!/usr/bin/env bash
# Renders the panel offscreen to PNG files (default: shots/) to look at: all operational,
# a mix of states with the silenced section open, 40 rows, incidents and maintenance expanded,
# long texts in each shipped language, and a dark palette.
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:-shots}

scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target render_pane
QT_QPA_PLATFORM=offscreen build/tools/render_pane "$out"
