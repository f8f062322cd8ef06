#!/usr/bin/env bash
# Builds and tests the tree on Debian 13 (Qt 6.8, GCC 14) in a root of its own, made with
# mmdebstrap and kept for later runs (in ZEL_DEBIAN13_ROOT, by default outside any work tree, so
# that nothing walking the tree walks the root). The root is entered with chroot; the tests run in
# a network namespace of their own, so that their ports and X displays are nobody else's. The
# builds go to build/debian13/<preset>.
# Usage: scripts/debian13.sh [dev|asan|optimised|package|shell|run COMMAND]
#   (package: the Debian 13 .deb, built and checked as scripts/package.sh does; shell: a shell in
#   the root, offline; run: a command there, offline)
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${1:-dev}
root=${ZEL_DEBIAN13_ROOT:-/var/cache/zel-menubar/debian13-root}

sudo=()
[[ $(id -u) -ne 0 ]] && sudo=(sudo)
if ! command -v mmdebstrap > /dev/null; then
    "${sudo[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends \
        mmdebstrap
fi
if [[ ! -x $root/usr/bin/apt-get ]]; then
    rm -rf "$root"
    mkdir -p "$(dirname "$root")"
    "${sudo[@]}" mmdebstrap --mode=root --variant=apt --include=iproute2 trixie "$root"
    # Packages install; their services never start.
    printf '#!/bin/sh\nexit 101\n' | "${sudo[@]}" tee "$root/usr/sbin/policy-rc.d" > /dev/null
    "${sudo[@]}" chmod 755 "$root/usr/sbin/policy-rc.d"
fi

mounted=()
release() {
    for ((i = ${#mounted[@]} - 1; i >= 0; i--)); do
        "${sudo[@]}" umount -l "${mounted[i]}" || true
    done
}
trap release EXIT
mount_in() { # mount_in TARGET mount-arguments...
    local target=$root$1
    shift
    mkdir -p "$target"
    "${sudo[@]}" mount "$@" "$target"
    mounted+=("$target")
}
mount_in /proc -t proc proc
mount_in /sys --rbind /sys
mount_in /dev --rbind /dev
mount_in /run -t tmpfs tmpfs
mount_in /tmp -t tmpfs tmpfs
mount_in /src --bind "$PWD"
install -d -m 1777 "$root/tmp/.X11-unix"

mkdir -p build/debian13
mount_in /src/build --bind "$PWD/build/debian13" # builds of their own, under the same names

inside() { # inside [--offline] COMMAND
    local net=() up=
    [[ $1 == --offline ]] && net=(unshare --net) && up="ip link set lo up &&" && shift
    "${sudo[@]}" "${net[@]}" chroot "$root" /usr/bin/env -i HOME=/root TERM=dumb LANG=C.UTF-8 \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin CI="${CI:-}" \
        /bin/bash -c "$up cd /src && $1"
}
inside scripts/install-deps.sh
if [[ $preset == shell ]]; then
    inside --offline "exec bash -i"
elif [[ $preset == run ]]; then
    inside --offline "$2"
elif [[ $preset == package ]]; then
    inside scripts/package.sh
else
    inside --offline "scripts/test.sh $preset"
fi
