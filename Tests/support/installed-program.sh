#!/bin/bash
# Installs a build into a folder of its own and starts what was installed: installed-program.sh BUILD-FOLDER
set -euo pipefail
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

cmake --install "$1" --prefix "$root/usr" >/dev/null
for file in bin/tidemark share/applications/com.velkor.Tidemark.desktop share/metainfo/com.velkor.Tidemark.metainfo.xml \
    share/icons/hicolor/scalable/apps/com.velkor.Tidemark.svg share/icons/hicolor/48x48/apps/com.velkor.Tidemark.png; do
    [ -s "$root/usr/$file" ] || { echo "not installed: $file"; exit 1; }
done
[ -s "$root/usr/share/man/man1/tidemark.1.gz" ] || [ -s "$root/usr/share/man/man1/tidemark.1" ]
grep -q '^Exec=tidemark %F$' "$root/usr/share/applications/com.velkor.Tidemark.desktop" || { echo "takes no files"; exit 1; }

# Without a display, and without a window.
tidemark=$root/usr/bin/tidemark
env -u DISPLAY -u WAYLAND_DISPLAY "$tidemark" --version | grep -q '^Tidemark [0-9]' || { echo "no version"; exit 1; }
env -u DISPLAY -u WAYLAND_DISPLAY "$tidemark" --help | grep -q '^usage: tidemark' || { echo "no help"; exit 1; }
status=0
env -u DISPLAY -u WAYLAND_DISPLAY "$tidemark" --fnd x 2>"$root/problem" || status=$?
[ "$status" -eq 2 ] && [ "$(wc -l <"$root/problem")" -eq 1 ] || { echo "wrong usage isn't told"; exit 1; }

# It runs until it is stopped; a second one hands over what it was started with, and ends.
export XDG_CONFIG_HOME=$root XDG_STATE_HOME=$root XDG_RUNTIME_DIR=$root QT_QPA_PLATFORM=offscreen TMPDIR=$root
timeout 10 "$tidemark" &
first=$!
for ((attempt = 0; attempt < 50; ++attempt)); do
    compgen -G "$root/tidemark-*" >/dev/null && break
    sleep 0.1
done
status=0
timeout 5 "$tidemark" --find 'a text' "$root" || status=$?
[ "$status" -eq 0 ] || { echo "the second one ended with $status"; exit 1; }
kill -0 "$first" || { echo "the first one is gone"; exit 1; }
kill "$first"
