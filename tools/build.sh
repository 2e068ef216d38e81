#!/usr/bin/env bash
# Configures a preset where that has not been done yet, and builds it; with a compiler cache where there is one.
#   tools/build.sh PRESET [TARGET...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
if [ -z "${CMAKE_CXX_COMPILER_LAUNCHER+set}" ] && command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
# A precompiled header is cached, too, where the cache may overlook when it was made.
export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS-pch_defines,time_macros,include_file_mtime,include_file_ctime}
if [ ! -e "build/$preset/build.ninja" ]; then
    cmake --preset "$preset"
fi
exec cmake --build --preset "$preset" ${1:+--target "$@"}
