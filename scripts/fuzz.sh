#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (ASan and UBSan on) and runs each for SECONDS
# (default 60) on a copy of its corpus, seeded from fuzz/corpus and samples/. A crash, a
# sanitizer report or a broken invariant fails the run. Usage: scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
build="build-fuzz"

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++-14 \
    -DLANTERNIC_FUZZ=ON -DLANTERNIC_BUILD_TESTS=OFF -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
targets=(detection feeds stored sourcelines appcast)
cmake --build "$build" -j "$(nproc)" --target "${targets[@]/#/fuzz_}"

for target in "${targets[@]}"; do
    corpus="$build/corpus/$target"
    mkdir -p "$corpus"
    if [ "$target" = detection ]; then
        cp samples/*.json fuzz/corpus/detection/* "$corpus/"
    elif [ "$target" = feeds ]; then
        cp samples/*.rss samples/*.atom fuzz/corpus/feeds/* "$corpus/"
    else
        cp fuzz/corpus/"$target"/* "$corpus/"
    fi
    echo "fuzz_$target: ${seconds}s"
    "$build/fuzz/fuzz_$target" -max_total_time="$seconds" -print_final_stats=1 \
        -artifact_prefix="$build/" "$corpus" 2>&1 | grep -E "^(Done|stat::number_of_executed_units|==|SUMMARY)" || true
    # libFuzzer's exit status is lost in the pipe: a crash leaves an artifact behind.
    if compgen -G "$build/crash-*" >/dev/null || compgen -G "$build/leak-*" >/dev/null ||
        compgen -G "$build/timeout-*" >/dev/null; then
        echo "fuzz_$target found a fault: $(ls "$build"/{crash,leak,timeout}-* 2>/dev/null)" >&2
        exit 1
    fi
done
echo "fuzz: ${#targets[@]} passed, 0 failed"
