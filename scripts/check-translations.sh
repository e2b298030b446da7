#!/usr/bin/env bash
# Checks that every shipped translation is complete: lupdate, run over the sources into copies
# of the .ts files, must find no message new, changed or left unfinished, and every plural
# message must have its forms. English holds the plural forms only. Usage:
# scripts/check-translations.sh [LUPDATE]
set -euo pipefail
cd "$(dirname "$0")/.."
lupdate=${1:-/usr/lib/qt6/bin/lupdate}
command -v "$lupdate" >/dev/null || { echo "skipped: lupdate is not installed"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

status=0
checked=0
for ts in translations/lanternic_*.ts; do
    checked=$((checked + 1))
    copy="$work/$(basename "$ts")"
    cp "$ts" "$copy"
    extra=()
    [[ $ts == *_en.ts ]] && extra=(-pluralonly)
    "$lupdate" -silent -locations none -no-obsolete "${extra[@]}" src -ts "$copy" >/dev/null
    if ! python3 - "$copy" <<'PY'; then
import sys, xml.etree.ElementTree as ET
problems = []
for context in ET.parse(sys.argv[1]).getroot().iter("context"):
    for message in context.iter("message"):
        where = f'{context.findtext("name")}: {message.findtext("source")!r}'
        translation = message.find("translation")
        forms = [f.text for f in translation.iter("numerusform")]
        if translation.get("type") in ("unfinished", "vanished", "obsolete"):
            problems.append(f"{translation.get('type')}: {where}")
        elif message.get("numerus") == "yes" and (len(forms) < 2 or not all(forms)):
            problems.append(f"plural forms missing: {where}")
        elif message.get("numerus") != "yes" and not translation.text:
            problems.append(f"empty: {where}")
for problem in problems:
    print(f"{sys.argv[1].rsplit('/', 1)[-1]}: {problem}")
sys.exit(1 if problems else 0)
PY
        status=1
    fi
done
[ "$status" -eq 0 ] && echo "translations: $checked complete"
exit "$status"
