#!/usr/bin/env bash
# Runs a command in a network namespace of its own with only loopback up, so that nothing it
# does can reach another machine. Loopback also carries 203.0.113.7, an address of a range kept
# for documentation that counts as public, and the hosts file there names it public.example,
# beside loop.example for 127.0.0.1. Skips (77) where namespaces cannot be made (not root).
set -euo pipefail
unshare -n -m true 2>/dev/null || { echo "isolated-network: cannot make a network namespace" >&2; exit 77; }
# shellcheck disable=SC2016 # expanded by the inner shell
exec unshare -n -m sh -c '
    set -e
    ip link set lo up
    ip addr add 203.0.113.7/32 dev lo
    hosts=$(mktemp)
    printf "127.0.0.1 localhost loop.example\n::1 localhost\n203.0.113.7 public.example\n" >"$hosts"
    mount --bind "$hosts" /etc/hosts
    rm -f "$hosts"
    LANTERNIC_ISOLATED_NETWORK=1 exec "$0" "$@"' "$@"
