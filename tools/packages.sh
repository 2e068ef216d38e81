#!/usr/bin/env bash
# Installs the Debian packages that packaging/packages.txt has for the given uses and that are missing here. One of
# another architecture than this machine's does not count: it may not run here, nor be linked with.
#   tools/packages.sh [--names] USE...    --names only prints them
set -euo pipefail
cd "$(dirname "$0")/.."

names=
if [ "$1" = --names ]; then
    names=yes
    shift
fi
uses=$(IFS='|' && echo "$*")
wanted=$(awk '!/^#/ {n = split($2, uses, ","); while (n) print uses[n--], $1}' packaging/packages.txt \
    | grep -E "^($uses) " | cut -d' ' -f2 | sort -u)
if [ -n "$names" ]; then
    echo "$wanted"
    exit
fi
installed=$({ xargs dpkg-query -W -f '${Package} ${Architecture} ${db:Status-Status}\n' <<<"$wanted" 2>/dev/null || true; } \
    | awk -v here="$(dpkg --print-architecture)" '$3 == "installed" && ($2 == here || $2 == "all") {print $1}' | sort -u)
mapfile -t missing < <(comm -23 <(echo "$wanted") <(echo "$installed"))
[ ${#missing[@]} -eq 0 ] && exit 0

command -v apt-get >/dev/null || {
    printf 'These packages are missing, and there is no apt-get to install them: %s\n' "${missing[*]}" >&2
    exit 1
}
asRoot=(env DEBIAN_FRONTEND=noninteractive)
if [ "$(id -u)" -ne 0 ]; then
    asRoot=(sudo "${asRoot[@]}")
fi
printf 'Installing: %s\n' "${missing[*]}"
"${asRoot[@]}" apt-get update -qq </dev/null
"${asRoot[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
