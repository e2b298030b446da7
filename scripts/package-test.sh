#!/usr/bin/env bash
# Builds the Debian package from BUILD-DIR (default build), checks it and its metadata with
# the ecosystem's validators, installs it, runs the installed programs (lanternic under the
# Xvfb + trayer end-to-end test), removes it and checks that nothing of it is left in /usr.
# The installed app is also read over AT-SPI in English and German. Installing needs root;
# without it the install steps are skipped.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}

cmake --build "$build" --target package >/dev/null
deb=$(ls "$build"/lanternic_*_*.deb)
echo "package: $deb"

# lintian's errors fail; its warnings are printed.
lintian --no-tag-display-limit "$deb" 2>/dev/null | tee "$build/lintian.txt"
! grep -q '^E:' "$build/lintian.txt"
desktop-file-validate data/lanternic.desktop
appstreamcli validate --no-net data/io.lanternic.Lanternic.metainfo.xml
for page in "$build"/data/man/*.1; do
    warnings=$(MANWIDTH=80 man --warnings -l "$page" 2>&1 >/dev/null)
    [ -z "$warnings" ] || { echo "$page: $warnings"; exit 1; }
done
echo "validators: lintian, desktop-file-validate, appstreamcli and man passed"

if [ "$(id -u)" -ne 0 ]; then
    echo "package install test skipped: it needs root"
    exit 0
fi
DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$(realpath "$deb")" >/dev/null
lanternic-check --version
set +e
lanternic-check read samples/relay-feed.json >"$build/installed-read.json"
status=$?
set -e
[ "$status" -eq 1 ] && grep -q '"name":"Build farm"' "$build/installed-read.json" ||
    { echo "the installed lanternic-check read the sample wrongly ($status)"; exit 1; }
tests/e2e/tray-e2e.sh /usr/bin/lanternic
# The installed app finds its translations wherever the package put them: it speaks German.
set +e
tests/e2e/atspi-e2e.sh /usr/bin/lanternic
status=$?
set -e
[ "$status" -eq 0 ] || [ "$status" -eq 77 ] || { echo "the installed app failed the AT-SPI test"; exit 1; }
DEBIAN_FRONTEND=noninteractive apt-get remove -y -qq lanternic >/dev/null
left=()
while read -r path; do
    path=${path#.}
    [ -f "$path" ] && left+=("$path")
done < <(dpkg-deb -c "$deb" | awk '{ print $6 }')
[ ${#left[@]} -eq 0 ] || { echo "left in /usr after removal: ${left[*]}"; exit 1; }
echo "package: 1 passed, 0 failed"
