#!/usr/bin/env bash
# Checks what describes the package against what it describes.
#   tests/packaging/metadata.sh VERSION
set -uo pipefail
cd "$(dirname "$0")/../.." || exit

version=$1
id=app.mirrowvale.authenticator
status=0

complain() {
    printf '%s\n' "$*" >&2
    status=1
}

desktop-file-validate "packaging/$id.desktop" || complain 'The desktop entry is not valid'
appstreamcli validate --no-net --pedantic "packaging/$id.metainfo.xml" || complain 'The metainfo is not valid'

for place in \
    "changelog:$(sed -nE '1s/.*\((.*)\).*/\1/p' packaging/debian/changelog)" \
    "metainfo:$(sed -nE 's/.*<release version="([^"]*)".*/\1/p' "packaging/$id.metainfo.xml" | head -n 1)" \
    "manual page:$(sed -nE 's/^\.TH .*"[^"]* ([0-9.]+)".*/\1/p' packaging/mirrowvale-authenticator.1)"; do
    [ "${place#*:}" = "$version" ] || complain "The ${place%%:*} tells of version \"${place#*:}\", not $version"
done

# Complains of each name on the input that a part of the control file does not hold.
#   within PART-EXPRESSION PART
within() {
    local held name count=0
    held=$(sed -nE "$1"' s/^ ([a-z0-9.+-]+)( .*)?,$/\1/p' packaging/debian/control)
    while read -r name; do
        count=$((count + 1))
        grep -qxF "$name" <<<"$held" || complain "$2 does not name $name"
    done
    [ "$count" -gt 0 ] || complain "Nothing was compared with $2"
}

within '/^Build-Depends:/,/^$/' 'What building depends on' \
    < <(tools/packages.sh --names build window | grep -vxE 'g\+\+|libg(test|mock)-dev|nlohmann-json3-dev')
within '/^Package:/,$' 'What the package depends on or recommends' \
    < <(tools/packages.sh --names run | grep -v '^qml6-')
# The modules QtQuick and QtQml are whole within the libraries; the others are loaded from packages of their own.
within '/^Depends:/,/^Recommends:/' 'What the package depends on' < <(
    grep -rhoE '^import Qt[A-Za-z.]*' ui/qml | sort -u | grep -vxE 'import (QtQuick|QtQml)' \
        | sed 's/^import /qml6-module-/' | tr 'A-Z.' 'a-z-'
)

exit $status
