#!/bin/bash
# SPDX-License-Identifier: MIT
# debian13-inside.sh CHECKOUT CACHE ROOT COMMAND...: runs COMMAND in ROOT, with CHECKOUT, where its
# build folder is build/trixie, and with the compiler's cache. Run by debian13.sh, as root, in a
# mount and process namespace that nobody else sees.
set -euo pipefail
checkout=$1 cache=$2 root=$3
shift 3

# A mount of its own, so that tests in there can make namespaces of their own.
mount --bind "$root" "$root"
mount -t proc proc "$root/proc"
mount --rbind /dev "$root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mkdir -p "$root$checkout" "$root/var/cache/ccache"
mount --bind "$checkout" "$root$checkout"
mount --bind "$checkout/build/trixie" "$root$checkout/build"
mount --bind "$cache/ccache-trixie" "$root/var/cache/ccache"
cp --remove-destination -L /etc/resolv.conf "$root/etc/resolv.conf" 2>/dev/null || true

pass=()
for variable in CI TERM http_proxy https_proxy no_proxy CTEST_OUTPUT_ON_FAILURE; do
    [ -z "${!variable:-}" ] || pass+=("$variable=${!variable}")
done
# shellcheck disable=SC2016 # the inner shell expands it
exec chroot "$root" env -i ${pass[@]+"${pass[@]}"} PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
    LANG=C.UTF-8 CCACHE_DIR=/var/cache/ccache sh -c 'cd "$0" && exec "$@"' "$checkout" "$@"
