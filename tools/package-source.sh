#!/usr/bin/env bash
# Copies the tree as the source of the Debian package: without what was built, with debian/ where its tools look for it.
#   tools/package-source.sh FOLDER    FOLDER is made
set -euo pipefail
target=$(realpath -m "$1")
cd "$(dirname "$0")/.."

mkdir -p "$target"
tar -c --exclude=./build --exclude=./.git . | tar -x --no-same-owner -C "$target"
cp -r packaging/debian "$target/debian"
