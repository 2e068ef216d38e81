#!/usr/bin/env bash
# Runs a command on a copy of this tree in a clean Debian system of its own, and says whether it passed. Packages that
# it leaves in build/ come to build/RELEASE/.
#   tools/elsewhere.sh [--again] [--user] RELEASE[/ARCHITECTURE] [COMMAND...]
#     RELEASE  a name such as bookworm or trixie; an architecture such as i386, or arm64, which is emulated
#     COMMAND  ./check where none is given
#     --again  goes on in the system of the last time, with its packages and its build/, instead of a clean one
#     --user   runs the command as an ordinary user who may use sudo, not as root
# Needs root, and a Debian mirror that apt knows. What has been made and downloaded stays in
# /var/cache/mirrowvale-systems, or in the folder that MIRROWVALE_SYSTEMS names.
set -euo pipefail
cd "$(dirname "$0")/.."

again='' user=root
while [[ ${1:-} == --* ]]; do
    case $1 in
        --again) again=yes ;;
        --user) user=kim ;;
        *) break ;;
    esac
    shift
done
[[ ${1:-} =~ ^[a-z]+(/[a-z0-9]+)?$ ]] || {
    echo 'usage: tools/elsewhere.sh [--again] [--user] RELEASE[/ARCHITECTURE] [COMMAND...]' >&2
    exit 2
}
[ "$(id -u)" -eq 0 ] || {
    echo 'Only root can make a system' >&2
    exit 1
}
tools/packages.sh system
# All mounts and processes below end with this one, however it ends.
[ -n "${OWN_NAMESPACE:-}" ] || exec unshare --mount --pid --fork --kill-child --mount-proc \
    env OWN_NAMESPACE=yes tools/elsewhere.sh ${again:+--again} $([ $user = root ] || echo --user) "$@"
trap 'exit 143' INT TERM HUP
IFS=/ read -r release architecture <<<"$1"
here=$(dpkg --print-architecture)
folder=${MIRROWVALE_SYSTEMS:-/var/cache/mirrowvale-systems}/$release${architecture:+-$architecture}
architecture=${architecture:-$here}
shift
[ $# -gt 0 ] || set -- ./check

system=$folder/system
mkdir -p "$folder"/{archives,partial}
exec 9>"$folder/lock"
flock --nonblock 9 || {
    echo "The system in $folder is in use" >&2
    exit 1
}

# Runs a step that has much to say, which is shown only where it fails.
quietly() {
    "$@" >"$folder/step.log" 2>&1 </dev/null || {
        tail -n 30 "$folder/step.log" >&2
        echo "FAILED: $*" >&2
        exit 1
    }
}

# Where this machine's packages come from, as sources of the other release.
sources() {
    local codename
    codename=$(. /etc/os-release && echo "$VERSION_CODENAME")
    apt-get indextargets --format '$(SITE) $(CODENAME) $(COMPONENT) $(ORIGIN)' 'Created-By: Packages' \
        | awk '$NF == "Debian" && $3 == "main" {print "deb", $1, $2, $3}' | sort -u \
        | sed -E "s/ $codename(-[a-z]+)? / $release\1 /"
}

# Makes the least system that there is of the release. The later ones are copies of it.
makeBase() {
    local base=$folder/partial/base proxy=
    eval "$(apt-config shell proxy Acquire::http::Proxy)"
    rm -rf --one-file-system "$base"
    http_proxy=$proxy quietly debootstrap --variant=minbase --arch="$architecture" "$release" "$base" \
        "$(sources | awk -v release="$release" '$3 == release {print $2; exit}')"
    sources >"$base/etc/apt/sources.list"
    apt-config dump | grep -E '^Acquire::(http|https|Check)' >"$base/etc/apt/apt.conf.d/01machine" || true
    printf '#!/bin/sh\nexit 101\n' >"$base/usr/sbin/policy-rc.d" # no service starts in here
    chmod +x "$base/usr/sbin/policy-rc.d"
    mv "$base" "$folder/base"
}

makeSystem() {
    [ -d "$folder/base" ] || makeBase
    rm -rf --one-file-system "$system"
    cp -a --reflink=auto "$folder/base" "$system"
    cp /etc/resolv.conf "$system/etc/"
    echo "127.0.0.1 localhost $(hostname)" >"$system/etc/hosts"
}

# What a system has beyond its files.
mountWhatRuns() {
    mount -t proc proc "$system/proc"
    mount -t tmpfs -o mode=1777 tmpfs "$system/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$system/dev/pts"
    mount -t tmpfs -o mode=0755 tmpfs "$system/run"
    mount --bind "$folder/archives" "$system/var/cache/apt/archives"
}

inside() {
    chroot "$system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive "$@"
}

addUser() {
    quietly inside useradd --create-home --shell /bin/bash "$user"
    quietly inside apt-get update -qq
    quietly inside apt-get install -y -qq --no-install-recommends sudo
    echo "$user ALL=(ALL) NOPASSWD: ALL" >"$system/etc/sudoers.d/$user"
}

# A copy of the tree takes the place of the last one; what was built there stays. A file that differs is newer than
# what was built of it, whenever it was changed here.
copyTree() {
    mkdir -p "$system$home/mirrowvale"
    rsync -rlp --checksum --delete --exclude=/build --exclude=/.git ./ "$system$home/mirrowvale/"
    inside chown -R "$user:" "$home/mirrowvale"
}

# The last step in one piece: this file may be changed while it runs.
runInside() {
    local verdict=passed status=0 package
    chroot --userspec="$user" "$system" \
        env -i PATH=/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 HOME="$home" \
        ${emulated:+MIRROWVALE_EMULATED=yes} \
        sh -c 'cd ~/mirrowvale && exec "$@"' sh "$@" </dev/null || status=$?
    for package in "$system$home"/mirrowvale/build/*.deb; do
        [ ! -e "$package" ] || install -D -t "build/$release" "$package"
    done
    [ $status -eq 0 ] || verdict="FAILED with status $status"
    printf 'Debian %s (%s, %s), as %s: %s: %s\n' \
        "$(cat "$system/etc/debian_version")" "$release" "$architecture" "$user" "$*" "$verdict"
    exit $status
}

emulated=$(tools/emulate.sh "$architecture")
[ -n "$again" ] && [ -d "$system" ] || makeSystem
mountWhatRuns
home=$(inside getent passwd "$user" | cut -d: -f6 || true)
if [ -z "$home" ]; then
    addUser
    home=/home/$user
fi
copyTree
runInside "$@"
