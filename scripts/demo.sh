#!/bin/bash
# Runs the real window on a virtual display of its own, on a copy of a sample tree: demo.sh PROGRAM FOLDER
set -euo pipefail
program=$1
rm -rf "$2"
mkdir -p "$2"
folder=$(realpath "$2")

scripts/sample-tree.sh "$folder/tree"
mkdir -p "$folder/tree/headers"
find /usr/include -maxdepth 2 -name '*.h' -type f 2>/dev/null | sort | sed -n 1,300p |
    while IFS= read -r header; do cp -f "$header" "$folder/tree/headers/"; done || true

display=$(mktemp)
server=
trap '[ -z "$server" ] || kill "$server" 2>/dev/null || true; rm -f "$display"' EXIT
if command -v Xvfb >/dev/null; then
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$display" 2>/dev/null &
    server=$!
    for _ in $(seq 100); do
        [ -s "$display" ] && break
        sleep 0.1
    done
fi
if [ -s "$display" ]; then
    export DISPLAY=":$(cat "$display")" QT_QPA_PLATFORM=xcb
else
    echo "No virtual X server to be had; drawing without one." >&2
    export QT_QPA_PLATFORM=offscreen
fi
export XDG_RUNTIME_DIR=${XDG_RUNTIME_DIR:-$(mktemp -d)}
unset WAYLAND_DISPLAY
"$program" "$folder/tree" "$folder" tide ebb
echo "Pictures: $folder/*.png"
