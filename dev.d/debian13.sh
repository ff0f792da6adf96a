# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# A Debian 13 root beside this system, with what the steps on Qt 6.8 need; read by ../dev.

# in_debian13 COMMAND...: runs it there, in this checkout, with build folders of its own.
in_debian13() {
    can_be_root || fail "a Debian 13 root needs root, or sudo without a password"
    found apt-get || fail "making a Debian 13 root needs apt and debootstrap"
    need "$root_packages"
    as_root unshare --mount --pid --fork true 2>/dev/null ||
        fail "a Debian 13 root needs the right to mount (in a container: CAP_SYS_ADMIN)"
    local status=0
    mkdir -p "$cache/ccache-trixie" build/trixie
    (
        flock 9
        make_debian13
    ) 9>"$cache/trixie.lock"
    enter_debian13 "$cache/trixie" "$@" || status=$?
    if [ "$(id -u)" != 0 ]; then as_root chown -R "$(id -u)" "$cache/ccache-trixie" build/trixie; fi
    return $status
}

# Complete or not there at all: it gets its name when the last package is in.
make_debian13() {
    local root=$cache/trixie.new mirror
    [ ! -d "$cache/trixie" ] || return 0
    say "making a Debian 13 root in $cache/trixie"
    as_root rm -rf "$root"
    # From where this system has its own packages.
    # shellcheck disable=SC2016 # apt-get expands it
    mirror=$(apt-get indextargets --format '$(ORIGIN) $(SITE)' 'Created-By: Packages' |
        sed -n 's/^Debian //p' | grep -v security | head -n 1 || true)
    # In a namespace: debootstrap mounts, and leaves its mounts where it fails.
    quietly as_root unshare --mount debootstrap --variant=minbase trixie "$root" ${mirror:+"$mirror"}
    printf '#!/bin/sh\nexit 101\n' | as_root tee "$root/usr/sbin/policy-rc.d" >/dev/null
    as_root chmod 755 "$root/usr/sbin/policy-rc.d"
    apt-config dump | grep -E '^Acquire::(https?|Check|Retries)' |
        as_root tee "$root/etc/apt/apt.conf.d/90host" >/dev/null || true
    enter_debian13 "$root" ./dev packages
    # What only the installing needed.
    as_root find "$root/var/cache/apt" "$root/var/lib/apt/lists" -type f -delete
    as_root mv "$root" "$cache/trixie"
}

# In a mount and process namespace of its own, which takes all of it down with it.
enter_debian13() {
    as_root unshare --mount --pid --fork --kill-child \
        "$here/dev.d/debian13-inside.sh" "$here" "$cache" "$@"
}
