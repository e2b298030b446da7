#!/usr/bin/env bash
# Installs what is missing, then builds and runs the whole test suite twice: once as released,
# once under AddressSanitizer and UndefinedBehaviorSanitizer. Also checks the formatting and the
# shell scripts, builds and checks the Debian package, and runs each fuzzer for a minute.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
scripts/check-format.sh
scripts/check-shell.sh

jobs=$(nproc)
export QT_QPA_PLATFORM=offscreen

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLANTERNIC_BUILD_BENCH=ON \
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs"
scripts/package-test.sh build
# The watcher's benchmark, as a short smoke run: its figures come from longer runs.
bench/watch-bench.sh build 20

cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLANTERNIC_SANITIZE=ON \
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build build-sanitize -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    LSAN_OPTIONS=suppressions="$PWD/tests/lsan.supp" \
    ctest --test-dir build-sanitize --output-on-failure -j "$jobs"

scripts/fuzz.sh 60
