#!/usr/bin/env bash
# Installs what is missing, builds what needs no window and runs its tests: all that other processors differ in.
#   tools/check-core.sh
# Where MIRROWVALE_EMULATED is set, without the tests that an emulator fails on its own account.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/packages.sh <(grep -hvE '^(q|clang-format )' packaging/{build,fast}-packages.txt)
tools/build.sh core

# Limits and closed memory are its own there, not those of the program that it runs.
emulatorFails='^platform\.ProcessProtection\.'
ctest --preset core ${MIRROWVALE_EMULATED:+--exclude-regex "$emulatorFails"}
