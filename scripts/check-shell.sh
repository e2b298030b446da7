#!/usr/bin/env bash
# Fails on what shellcheck warns of in the project's shell scripts, each read from its own
# folder so that it follows what the script sources.
set -euo pipefail
cd "$(dirname "$0")/.."

if ! scripts=$(git ls-files -- '*.sh') || [ -z "$scripts" ]; then
    echo "check-shell: cannot list the shell scripts (is this a git checkout?)" >&2
    exit 1
fi
status=0
while read -r script; do
    (cd "$(dirname "$script")" && shellcheck -x -S warning "$(basename "$script")") || status=1
done <<<"$scripts"
exit $status
