#!/usr/bin/env bash
# Takes pictures of every state of the application in light and dark, several text sizes, screens and languages.
#   tools/gallery.sh [FOLDER]
# Takes the README's picture anew, with the texts on it:
#   tools/gallery.sh --readme
set -euo pipefail
cd "$(dirname "$0")/.."

tools/packages.sh build window run headless test check
tools/build.sh release mirrowvale-authenticator
wanted=testEveryLook
if [ "${1-}" = --readme ]; then
    wanted=testReadmeIsMade
    shift
fi
exec /usr/bin/python3 -B tools/gallery.py build/release/mirrowvale-authenticator "${1:-build/gallery}" "Gallery.$wanted"
