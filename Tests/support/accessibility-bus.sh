#!/bin/bash
# Runs the program under a bus and a display of its own, and walks it as a screen reader does:
# accessibility-bus.sh PROGRAM WALKER. Skipped, with 77, where what it takes isn't installed.
set -euo pipefail

for command in dbus-run-session xvfb-run xauth; do
    command -v "$command" >/dev/null || { echo "skipped: $command isn't installed"; exit 77; }
done
[ -e /usr/share/dbus-1/services/org.a11y.Bus.service ] || { echo "skipped: at-spi2-core isn't installed"; exit 77; }

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
mkdir "$root/files" "$root/run"
chmod 700 "$root/run"
printf 'nothing\nfoo foo\n\nfoo\n' >"$root/files/a.txt"
export HOME=$root XDG_CONFIG_HOME=$root XDG_STATE_HOME=$root XDG_RUNTIME_DIR=$root/run TMPDIR=$root LANG=C.UTF-8
export QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 PROGRAM=$1 WALKER=$2 FOLDER=$root/files
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS

timeout 120 dbus-run-session -- xvfb-run -a bash -c '
    "$PROGRAM" --find foo "$FOLDER" &
    status=0
    "$WALKER" || status=$?
    kill %1
    exit "$status"'
