#!/usr/bin/env bash
# Tries a package in a clean system. Needs root, and a Debian mirror that apt knows.
#   tools/try.sh piuparts PACKAGE [SYSTEM]      installs, removes and purges it, and looks at what is left
#   tools/try.sh autopkgtest PACKAGE [SYSTEM]   runs the package's own tests, and leaves their pictures in
#                                               build/window-tests
#     SYSTEM  RELEASE[/ARCHITECTURE] as of tools/elsewhere.sh; this machine's where none is given
set -euo pipefail
cd "$(dirname "$0")/.."

[ "$(id -u)" -eq 0 ] || exec sudo ${MIRROWVALE_SYSTEMS:+MIRROWVALE_SYSTEMS="$MIRROWVALE_SYSTEMS"} tools/try.sh "$@"
name=${3:-$(. /etc/os-release && echo "$VERSION_CODENAME")}
if [ -z "${OWN_NAMESPACE:-}" ]; then
    tools/elsewhere.sh --user "$name" true
    # All mounts and processes below end with this one, however it ends.
    exec unshare --mount --pid --fork --kill-child --mount-proc env OWN_NAMESPACE=yes tools/try.sh "$@"
fi
systems=${MIRROWVALE_SYSTEMS:-/var/cache/mirrowvale-systems}/${name/\//-}
exec 9>"$systems/lock"
flock --nonblock 9 || {
    echo "The system in $systems is in use" >&2
    exit 1
}
emulated=
[[ $name != */* ]] || emulated=$(tools/emulate.sh "${name#*/}")

case $1 in
    piuparts)
        # The folder that is ignored is debconf's own: newer releases leave it, older piuparts does not know it.
        exec piuparts --existing-chroot "$systems/base" --keep-sources-list --no-eatmydata \
            --ignore /var/cache/debconf/tmp.ci/ --distribution "${name%/*}" "$2"
        ;;
    autopkgtest)
        mount -t proc proc "$systems/system/proc"
        mount -t tmpfs -o mode=1777 tmpfs "$systems/system/dev/shm"
        source=$systems/partial/source
        rm -rf --one-file-system build/window-tests/package "$source"
        tools/package-source.sh "$source"
        exec autopkgtest --no-built-binaries --user=kim --output-dir=build/window-tests/package \
            ${emulated:+--timeout-factor=20 --env=MIRROWVALE_EMULATED=yes} "$2" "$source/" -- chroot "$systems/system"
        ;;
esac
