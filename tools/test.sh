#!/usr/bin/env bash
# Runs a preset's tests side by side, one for each processor. Every test has folders, buses and displays of its own.
#   tools/test.sh PRESET [CTEST-OPTION...]
set -euo pipefail
cd "$(dirname "$0")/.."

preset=$1
shift
exec ctest --preset "$preset" --parallel "$(nproc)" "$@"
