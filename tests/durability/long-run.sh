#!/usr/bin/env bash
# The crash, power-cut and damage experiments at length; prints what was counted.
#   tests/durability/long-run.sh [PROGRAM] [KILLS]
set -euo pipefail
program=${1:-$(dirname "$0")/../../build/release/tests/durability/durability_tests}

export MIRROWVALE_KILLS=${2:-1000} MIRROWVALE_KILL_STRIDE=1 MIRROWVALE_TEARS=4 MIRROWVALE_ERRORS=6 MIRROWVALE_DAMAGED_LIST=10
"$program"
