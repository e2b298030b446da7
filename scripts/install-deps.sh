#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, if any are missing.
set -euo pipefail

# openssl makes the TLS tests' certificate; clang and its runtimes build the fuzzers; the X
# server, tray host and X tools run the end-to-end tray test.
packages=(g++ cmake ninja-build qt6-base-dev libcurl4-openssl-dev libbenchmark-dev clang-format-14
    clang-14 libclang-rt-14-dev curl openssl xvfb trayer xdotool x11-utils dbus)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
