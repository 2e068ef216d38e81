#!/usr/bin/env bash
# Analyses the modules' sources with clang-tidy. What passed is remembered in the build folder, and looked at
# again only when it, a header of ours or the rules have changed.
#   tools/tidy.sh BUILD-FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."

build=$1
modules=(platform core storage ui)
stamps=$build/tidy
mkdir -p "$stamps"

shared=$({ clang-tidy --version; cat .clang-tidy; find "${modules[@]}" -name '*.h' -print0 | sort -z | xargs -0 cat; } | sha256sum)

# Analyses one source; its stamp is named after everything that its result depends on.
analyse() {
    local source=$1 key
    key=$(printf '%s %s' "$3" "$source" | cat - "$source" | sha256sum | cut -c1-32)
    [ -e "$2/tidy/$key" ] && return
    clang-tidy --quiet -p "$2" --extra-arg=-Wno-unknown-warning-option "$source" 2> >(grep -vE 'warnings? generated\.$' >&2) && touch "$2/tidy/$key"
}
export -f analyse

find "${modules[@]}" -name '*.cpp' -print0 \
    | xargs -0 -r -n 1 -P "$(nproc)" bash -c 'analyse "$2" "$0" "$1"' "$build" "$shared"
