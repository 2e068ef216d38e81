#!/usr/bin/env bash
# Has the kernel run the programs of a processor that this machine has not, until the mount namespace that calls it
# ends; says "yes" where it takes an emulator.
#   tools/emulate.sh ARCHITECTURE
set -euo pipefail
cd "$(dirname "$0")/.."

here=$(dpkg --print-architecture)
case $here/$1 in
    "$1/$here" | amd64/i386) exit ;; # its own, or one that it can be
    */arm64) processor=aarch64 ;;
    */armhf | */armel) processor=arm ;;
    *) processor=$1 ;;
esac
tools/packages.sh emulate >&2
mount -t binfmt_misc binfmt_misc /proc/sys/fs/binfmt_misc
[ -e "/proc/sys/fs/binfmt_misc/qemu-$processor" ] \
    || cat "/usr/lib/binfmt.d/qemu-$processor.conf" >/proc/sys/fs/binfmt_misc/register
echo yes
