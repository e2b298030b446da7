#!/usr/bin/env bash
# Fails when a C++ file differs from what clang-format 14 (Debian 12's) makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."

format=clang-format-14
if ! files=$(git ls-files -- '*.cpp' '*.h' '*.mm') || [ -z "$files" ]; then
    echo "check-format: cannot list the C++ files (is this a git checkout?)" >&2
    exit 1
fi
mapfile -t files <<<"$files"
"$format" --dry-run --Werror "${files[@]}"
