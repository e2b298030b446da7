#!/usr/bin/env bash
# Fails when a C++ file differs from what clang-format makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t files < <(git ls-files -- '*.cpp' '*.h')
[ ${#files[@]} -eq 0 ] || clang-format --dry-run --Werror "${files[@]}"
