#!/usr/bin/env bash
# Installs the Debian packages of the given lists that are missing here; does nothing when all are there. One of
# another architecture than this machine's does not count: it may not run here, nor be linked with.
#   tools/packages.sh LIST...
set -euo pipefail

wanted=$(sed -E 's/#.*//; s/[[:space:]]+//g; /^$/d' "$@" | sort -u)
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
