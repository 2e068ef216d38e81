#!/usr/bin/env bash
# Installs the compiler and the libraries that building a package for another processor needs. Some of them take the
# place of this processor's.
#   tools/foreign-libraries.sh ARCHITECTURE FOLDER    the folder holds debian/control
set -euo pipefail

asRoot=(env DEBIAN_FRONTEND=noninteractive)
if [ "$(id -u)" -ne 0 ]; then
    asRoot=(sudo "${asRoot[@]}")
fi
dpkg --print-foreign-architectures | grep -qx "$1" || "${asRoot[@]}" dpkg --add-architecture "$1"
"${asRoot[@]}" apt-get update -qq </dev/null
"${asRoot[@]}" apt-get install -y -qq --no-install-recommends "crossbuild-essential-$1" </dev/null
"${asRoot[@]}" apt-get build-dep -y -qq --no-install-recommends --host-architecture "$1" "$(realpath "$2")" </dev/null
