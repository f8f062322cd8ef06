#!/usr/bin/env bash
# Builds the release .deb of this machine's Debian and checks it as a user's machine would take
# it: installed with apt into a fresh root of the same release, then started (offscreen, without
# a desktop) and quit. Prints the package's path.
# Usage: scripts/package.sh
set -euo pipefail
cd "$(dirname "$0")/.."

. /etc/os-release
scripts/install-deps.sh
cmake --preset release -B "build/release-$VERSION_CODENAME" > /dev/null
cmake --build "build/release-$VERSION_CODENAME"
(cd "build/release-$VERSION_CODENAME" && cpack > /dev/null)
package=$(ls -t "$PWD/build/release-$VERSION_CODENAME"/zel-menubar_*.deb | head -1)

sudo=()
[[ $(id -u) -ne 0 ]] && sudo=(sudo)
command -v mmdebstrap > /dev/null || "${sudo[@]}" apt-get install -y -qq mmdebstrap
root=$(mktemp -d /var/tmp/zel-clean-XXXXXX)
trap '"${sudo[@]}" umount -l "$root/proc" 2> /dev/null || true; "${sudo[@]}" rm -rf "$root"' EXIT
"${sudo[@]}" mmdebstrap --mode=root --variant=apt --quiet "$VERSION_CODENAME" "$root"
"${sudo[@]}" cp "$package" "$root/tmp/"
"${sudo[@]}" mount -t proc proc "$root/proc"
# The app starts, stays up and quits on SIGTERM with status 0, saying nothing of a missing part.
"${sudo[@]}" chroot "$root" /bin/bash -euc '
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "/tmp/$(basename "$1")" > /dev/null
    export HOME=/tmp/home XDG_RUNTIME_DIR=/tmp/home QT_QPA_PLATFORM=offscreen
    mkdir -p "$HOME"
    zel-menubar 2> /tmp/said & app=$!
    sleep 5
    kill -TERM "$app"
    wait "$app" || { echo "zel-menubar quit with status $?" >&2; cat /tmp/said >&2; exit 1; }
    if grep -iE "not installed|cannot load|failed|error" /tmp/said; then exit 1; fi
' _ "$package"
echo "$package"
