#!/usr/bin/env bash
# Installs a package in a clean Debian system, uses the application there, removes it, and compares what is
# left with what there was before. Needs root, and a Debian mirror that apt knows.
# Leaves a picture of what it saw beside the package.
#   tests/packaging/try-in-clean-system.sh PACKAGE
set -euo pipefail

package=$(realpath "$1")
name=mirrowvale-authenticator
id=app.mirrowvale.authenticator

if [ "$(id -u)" -ne 0 ]; then
    exec sudo "$0" "$package"
fi
if [ -z "${CLEAN_SYSTEM:-}" ]; then
    # All mounts and processes below end with this one, however it ends.
    CLEAN_SYSTEM=$(mktemp -d -p "${TMPDIR:-/var/tmp}")
    export CLEAN_SYSTEM
    status=0
    unshare --mount --pid --fork --kill-child --mount-proc "$0" "$package" || status=$?
    rm -rf --one-file-system "$CLEAN_SYSTEM"
    exit "$status"
fi

root=$CLEAN_SYSTEM/system
notes=$CLEAN_SYSTEM/notes
mkdir -p "$notes"

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# Runs a step that has much to say, which is shown only where it fails.
quietly() {
    "$@" >"$notes/step.log" 2>&1 </dev/null || {
        tail -n 30 "$notes/step.log" >&2
        fail "$*"
    }
}

# Waits until a condition holds; gives up after a minute.
await() {
    local deadline=$((SECONDS + 60))
    until "$@"; do
        [ "$SECONDS" -lt "$deadline" ] || fail "waited in vain for: $*"
        sleep 0.1
    done
}

inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

asUser=(chroot --userspec=kim:kim "$root"
    env -i PATH=/usr/bin:/bin LANG=C.UTF-8 HOME=/home/kim XDG_RUNTIME_DIR=/run/user/kim)

makeSystem() {
    local mirrors proxy=
    mirrors=$(apt-get indextargets --format '$(SITE) $(CODENAME) $(COMPONENT) $(ORIGIN)' 'Created-By: Packages' \
        | awk '$NF == "Debian" && $3 == "main" {print "deb", $1, $2, $3}' | sort -u)
    eval "$(apt-config shell proxy Acquire::http::Proxy)"
    local suite
    suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
    http_proxy=$proxy quietly debootstrap --variant=minbase "$suite" "$root" \
        "$(awk -v suite="$suite" '$3 == suite {print $2; exit}' <<<"$mirrors")"
    echo "$mirrors" >"$root/etc/apt/sources.list"
    apt-config dump | grep -E '^Acquire::(http|https|Check)' >"$root/etc/apt/apt.conf.d/01machine" || true
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no service starts in here
    chmod +x "$root/usr/sbin/policy-rc.d"
    cp /etc/resolv.conf "$root/etc/"
    mount -t proc proc "$root/proc"
    mount -t tmpfs tmpfs "$root/tmp"
    [ -d /tmp/.X11-unix ] || mkdir -m 1777 /tmp/.X11-unix
    mkdir "$root/tmp/.X11-unix"
    mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
    quietly inside useradd --create-home kim
    install -d -m 0700 -o "$(inside id -u kim)" -g "$(inside id -g kim)" "$root/run/user/kim"
    quietly inside apt-get update -qq
}

# Everything in the system that is not in a home, with its content; less what apt and dpkg note about their own
# doings.
census() {
    (
        cd "$root"
        find . -xdev \( -path ./proc -o -path ./tmp -o -path ./dev -o -path ./home -o -path ./run \
            -o -path ./var/log -o -path ./var/cache/apt -o -path ./var/lib/apt \
            -o -path './var/lib/dpkg/status*' \) -prune \
            -o \( -type f -exec sha256sum {} + \) -o -printf '%y %p %l\n' | sort
    )
}

# Whether a new picture stands still on the screen: more than a plain ground, and not the one seen last.
newPicture() {
    import -window root "png:$notes/now.png" && import -window root "png:$notes/again.png" || return 1
    [ "$(identify -format %k "$notes/now.png")" -ge 16 ] \
        && [ "$(compare -metric AE "$notes/now.png" "$notes/again.png" null: 2>&1)" = 0 ] || return 1
    [ ! -e "$notes/last.png" ] \
        || [ "$(compare -metric AE "$notes/now.png" "$notes/last.png" null: 2>&1)" -gt 2000 ] || return 1
    mv "$notes/now.png" "$notes/last.png"
}

oneWindow() { [ "$(xdotool search --onlyvisible --name '^Mirrowvale Auth' 2>/dev/null | wc -l)" = 1 ]; }
userData() { (cd "$root/home/kim" && find . -type f | sort); }
sealedList() { userData | grep -q '^\./\.local/state/'; }

echo 'Making a clean system'
makeSystem
quietly inside apt-get satisfy -y --no-install-recommends "$(dpkg-deb -f "$package" Depends)"
census >"$notes/before"

echo 'Installing'
cp "$package" "$root/tmp/package.deb"
quietly inside dpkg --install /tmp/package.deb
for size in 16 22 24 32 48 64 128 256 512; do
    picture=$root/usr/share/icons/hicolor/${size}x$size/apps/$id.png
    [ "$(identify -format %wx%h "$picture")" = "${size}x$size" ] || fail "no icon of $size pixels"
done

echo 'Starting'
Xvfb -displayfd 3 -ac -screen 0 390x844x24 -nolisten tcp 3>"$notes/display" 2>"$notes/xvfb.log" &
await test -s "$notes/display"
DISPLAY=:$(cat "$notes/display")
export DISPLAY
asUser+=(DISPLAY="$DISPLAY")
"${asUser[@]}" "$name" 2>"$notes/application.log" &
application=$!
await oneWindow
await newPicture
"${asUser[@]}" "$name" || fail 'a second start did not reach the first'
oneWindow || fail 'a second start opened a second window'

# A token whose issuer is written in four scripts, for the picture to show whether each has its font.
issuer='%E4%BE%8B%E3%81%88%20%EC%98%88%EC%8B%9C%20%D9%85%D8%AB%D8%A7%D9%84%20%D7%93%D7%95%D7%92%D7%9E%D7%94'
xdotool mousemove 195 700 key Tab key Return
await newPicture
xdotool type --delay 5 "otpauth://totp/kim?secret=GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ&issuer=$issuer"
xdotool key Tab key Return
await sealedList
await newPicture
cp "$notes/last.png" "${package%.deb}.png"
kill "$application"
wait "$application" || true
[ ! -s "$notes/application.log" ] || fail "the application complained: $(cat "$notes/application.log")"
userData >"$notes/user-data"

echo 'Removing'
quietly inside dpkg --purge "$name"
census >"$notes/after"
diff "$notes/before" "$notes/after" || fail 'the system is not what it was'
userData | diff "$notes/user-data" - || fail 'the user lost data'
foreign=$(userData | grep -vE "^\./(\.local/(share|state)/$name/|\.cache/fontconfig/|\.(bashrc|profile|bash_logout)$)" || true)
[ -z "$foreign" ] || fail "the home holds more than the application's data: $foreign"

printf 'Installed, started, used and removed in a clean system; what is left:\n'
sed 's/^/    /' "$notes/user-data"
