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
if grep -q MimeType "$root/usr/share/applications/com.velkor.Tidemark.desktop"; then
    echo "the program is offered for kinds of files or folders"
    exit 1
fi

# It runs until it is stopped.
status=0
XDG_CONFIG_HOME=$root XDG_STATE_HOME=$root XDG_RUNTIME_DIR=$root QT_QPA_PLATFORM=offscreen timeout 2 "$root/usr/bin/tidemark" || status=$?
[ "$status" -eq 124 ] || { echo "ended by itself with $status"; exit 1; }
