#!/usr/bin/env bash
# Runs a program on a virtual display of its own, saves a picture of its first frame, and keeps it running
# until it ends or is interrupted.
#   tools/headless.sh PROGRAM PICTURE
set -euo pipefail

program=$1
picture=$2
folder=$(mktemp -d)
children=()

finish() {
    for ((i = ${#children[@]} - 1; i >= 0; --i)); do
        kill "${children[i]}" 2>/dev/null || true
        wait "${children[i]}" 2>/dev/null || true
    done
    rm -rf "$folder"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

alive() { kill -0 "$1" 2>/dev/null; }

# Waits until a condition holds; gives up when the process ends or after 30 seconds.
#   await PROCESS CONDITION...
await() {
    local process=$1 deadline=$((SECONDS + 30))
    shift
    until "$@"; do
        alive "$process" && [ "$SECONDS" -lt "$deadline" ] || return 1
        sleep 0.05
    done
}

# A frame is there once the picture holds more than a plain ground: smoothed text has many shades.
takePicture() {
    import -display "$display" -window root "png:$folder/picture.png" 2>/dev/null
    [ "$(identify -format %k "$folder/picture.png" 2>/dev/null || echo 0)" -ge 16 ]
}

Xvfb -displayfd 3 -screen 0 390x844x24 -nolisten tcp 3>"$folder/display" 2>"$folder/log" &
children+=($!)
await $! test -s "$folder/display" || {
    cat "$folder/log" >&2
    exit 1
}
display=":$(cat "$folder/display")"

DISPLAY=$display QT_QPA_PLATFORM=xcb "$program" &
process=$!
children+=($process)
if await $process takePicture; then
    mkdir -p "$(dirname "$picture")"
    mv "$folder/picture.png" "$picture"
    printf 'No display here: running on the virtual display %s; its first frame is in %s. Ctrl+C ends it.\n' \
        "$display" "$picture"
elif alive $process; then
    echo 'The application drew nothing within 30 seconds.' >&2
    exit 1
else
    wait $process
    echo 'It is running already: its window was brought to the front.'
    exit
fi
wait $process
