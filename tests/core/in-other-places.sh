#!/usr/bin/env bash
# Runs test programs as users elsewhere would: where the decimal point is a comma or takes two bytes, where
# LANG alone names the language, and where clocks do not show UTC.
#   in-other-places.sh PROGRAM...
set -euo pipefail

LOCPATH=$(mktemp -d)
export LOCPATH TZ=IST-5:30
trap 'rm -rf "$LOCPATH"' EXIT
unset LANGUAGE LANG "${!LC_@}"

for place in LANG=de_DE.UTF-8 LC_ALL=ps_AF.UTF-8; do
    name=${place#*=}
    # It warns of details that no test looks at.
    localedef -i "${name%.*}" -f UTF-8 "$LOCPATH/$name" 2>/dev/null || true
    DECIMAL_POINT=$(env "$place" locale decimal_point)
    export DECIMAL_POINT
    if [ "$DECIMAL_POINT" = . ]; then
        echo "Skipped: no locale $name without Debian's package \"locales\""
        exit 77
    fi
    for program in "$@"; do
        env "$place" "$program" --gtest_brief=1
    done
done
