#!/usr/bin/env bash
# Installs what is missing, builds, and starts Lanternic in the tray.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build
exec build/src/app/lanternic
