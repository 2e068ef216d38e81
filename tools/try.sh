#!/usr/bin/env bash
# Tries a package in a clean system of this machine's release and processor. Needs root, and a Debian mirror that apt
# knows.
#   tools/try.sh piuparts PACKAGE             installs, removes and purges it, and looks at what is left
#   tools/try.sh autopkgtest PACKAGE SOURCE   runs the package's own tests, and leaves their pictures in build/window-tests
set -euo pipefail
cd "$(dirname "$0")/.."

[ "$(id -u)" -eq 0 ] || exec sudo ${MIRROWVALE_SYSTEMS:+MIRROWVALE_SYSTEMS="$MIRROWVALE_SYSTEMS"} tools/try.sh "$@"
if [ -z "${OWN_NAMESPACE:-}" ]; then
    release=$(. /etc/os-release && echo "$VERSION_CODENAME")
    tools/elsewhere.sh --user "$release" true
    # All mounts and processes below end with this one, however it ends.
    exec unshare --mount --pid --fork --kill-child --mount-proc env OWN_NAMESPACE="$release" tools/try.sh "$@"
fi
systems=${MIRROWVALE_SYSTEMS:-/var/cache/mirrowvale-systems}/$OWN_NAMESPACE

case $1 in
    piuparts)
        exec piuparts --existing-chroot "$systems/base" --keep-sources-list --no-eatmydata \
            --distribution "$OWN_NAMESPACE" "$2"
        ;;
    autopkgtest)
        mount -t proc proc "$systems/system/proc"
        mount -t tmpfs -o mode=1777 tmpfs "$systems/system/dev/shm"
        rm -rf --one-file-system build/window-tests/package
        exec autopkgtest --no-built-binaries --user=kim --output-dir=build/window-tests/package "$2" "$3/" \
            -- chroot "$systems/system"
        ;;
esac
