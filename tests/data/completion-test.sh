#!/usr/bin/env bash
# The bash completions for lanternic-check and lanternic-serve offer the commands, each mode's
# options, and file names where a file is expected. Exits 77 (skipped) without bash-completion.
set -uo pipefail
completions=${1:?usage: completion-test.sh COMPLETION-FOLDER}
framework=/usr/share/bash-completion/bash_completion
[ -r "$framework" ] || { echo "skipped: bash-completion is not installed"; exit 77; }
# shellcheck disable=SC1090
source "$framework"
# shellcheck disable=SC1090
source "$completions/lanternic-check"
# shellcheck disable=SC1090
source "$completions/lanternic-serve"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" && touch summary.json notes.txt

failures=0
total=0
# expect "WORDS…" "EXPECTED REPLIES (sorted, space-separated)"
expect() {
    local line=$1 expected=$2 complete=_lanternic_check
    total=$((total + 1))
    [[ $line == lanternic-serve* ]] && complete=_lanternic_serve
    read -r -a COMP_WORDS <<<"$line"
    [[ $line == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_LINE=$line
    COMP_POINT=${#line}
    COMPREPLY=()
    $complete
    local got
    got=$(printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' ' | sed 's/ $//')
    if [ "$got" != "$expected" ]; then
        echo "FAILED: '$line' gave '$got', expected '$expected'"
        failures=$((failures + 1))
    fi
}

expect "lanternic-check " "catalog fetch history read sources"
expect "lanternic-check --j" "--json"
expect "lanternic-check --format w" "waybar"
expect "lanternic-check --se" "--settings"
expect "lanternic-check --settings n" "notes.txt"
expect "lanternic-check read --pr" "--pretty"
expect "lanternic-check read s" "summary.json"
expect "lanternic-check fetch --updog-p" "--updog-provider"
expect "lanternic-check read --name " ""
expect "lanternic-check catalog --j" "--json"
expect "lanternic-check sources --so" "--source"
expect "lanternic-check --format i" "i3blocks"
expect "lanternic-check history --" "--days --help --json --settings"
expect "lanternic-check history --days " ""
expect "lanternic-check --format " "i3blocks json line nagios relay text waybar"
expect "lanternic-serve --s" "--settings --source"
expect "lanternic-serve --settings n" "notes.txt"
expect "lanternic-serve --listen 127" "127.0.0.1:9317"

echo "completion: $((total - failures)) passed, $failures failed"
[ $failures -eq 0 ]
