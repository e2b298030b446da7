#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, if any are missing.
set -euo pipefail

# zlib1g-dev compresses lanternic-serve's answers; libsimdjson-dev parses the status pages'
# documents; iproute2 brings up loopback in the network namespace the redirect test runs in; qt6-svg-dev and scdoc render the icons and manual pages; openssl
# makes the TLS tests' certificate; clang and its runtimes build the fuzzers; the X server,
# tray host, compositing manager, X tools, Python's X and D-Bus bindings, Weston and Qt's
# Wayland and GTK plugins run the end-to-end desktop tests and screenshots; lintian,
# desktop-file-utils, appstream, man-db and bash-completion check the package; Prometheus (and
# python3 to serve it feeds) scrapes lanternic-serve, ab loads it in the watcher's benchmark, and
# the shell scripts are checked with shellcheck; Qt's Linguist tools compile and check the
# translations (and Qt's own translations come with them); AT-SPI and its Python bindings read
# the app's accessible tree in the screen-reader test.
packages=(g++ cmake ninja-build qt6-base-dev qt6-svg-dev
    zlib1g-dev iproute2 libcurl4-openssl-dev libsimdjson-dev libxcb1-dev pkg-config libbenchmark-dev
    scdoc clang-format-14 clang-14 libclang-rt-14-dev curl openssl
    xvfb trayer xcompmgr xdotool x11-utils dbus python3-xlib python3-dbus python3-gi
    weston qt6-wayland qt6-gtk-platformtheme
    lintian desktop-file-utils appstream man-db bash-completion prometheus python3 apache2-utils
    shellcheck qt6-tools-dev qt6-l10n-tools qt6-translations-l10n at-spi2-core python3-pyatspi)

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
