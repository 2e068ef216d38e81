#!/usr/bin/env bash
# Configures a preset where that has not been done yet, and builds it.
#   tools/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
if [ ! -e "build/$preset/build.ninja" ]; then
    cmake --preset "$preset"
fi
exec cmake --build --preset "$preset" ${1:+--target "$@"}
