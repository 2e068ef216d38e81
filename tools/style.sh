#!/usr/bin/env bash
# Checks what no compiler checks: layout of the code, line ends, and where literals may be.
#   tools/style.sh [--formats]    --formats only says whether this machine's clang-format is the one that counts
set -euo pipefail
cd "$(dirname "$0")/.."

modules=(platform core storage ui tests fuzz bench)
status=0

# Another version lays out some lines differently.
formatter=14
formats() { clang-format --version 2>/dev/null | grep -q "version $formatter\."; }
if [ "${1:-}" = --formats ]; then
    formats
    exit
fi

# Runs a search that must find nothing.
#   nothing MESSAGE COMMAND...
nothing() {
    local message=$1 hits
    shift
    hits=$("$@" || true)
    if [ -n "$hits" ]; then
        printf '%s:\n%s\n' "$message" "$hits" >&2
        status=1
    fi
}

misformatted() {
    find "${modules[@]}" \( -name '*.h' -o -name '*.cpp' \) -print0 \
        | xargs -0 -r clang-format --dry-run --Werror 2>&1 | sed -n 's/:[0-9]*:[0-9]*: error: .*//p' | sort -u
}

if formats; then
    nothing 'Not as clang-format -i lays them out' misformatted
else
    echo "Layout not checked: that takes clang-format $formatter, as Debian 12 has it"
fi
nothing 'Blanks at the end of a line, or tabs' \
    grep -rnIP --exclude=rules --exclude=*.png --exclude-dir=corpus '[ \t]+$|\t' "${modules[@]}" cmake docs packaging tools run check package README.md SECURITY.md CONTRIBUTING.md CHANGELOG.md .editorconfig
nothing 'Headers without #pragma once' \
    grep -rL --include='*.h' '^#pragma once$' "${modules[@]}"
nothing 'Own headers included from elsewhere than the root' \
    grep -rnP --include='*.h' --include='*.cpp' '^#include "(?!(platform|core|storage|ui|tests|fuzz|bench)/|[\w/]+\.moc")' "${modules[@]}"
nothing 'Colours and text sizes outside the theme' \
    grep -rnP --include='*.qml' --exclude='Theme.qml' '"#[0-9a-fA-F]{3,8}"|\b(pixelSize|pointSize): *[0-9]' ui
nothing 'User data must be drawn verbatim: not as markup' \
    grep -rnP --include='*.qml' 'Text\.(RichText|StyledText|AutoText|MarkdownText)|TextEdit\.(RichText|AutoText|MarkdownText)' ui
exit $status
