#!/bin/bash
# Makes a small tree of text files in several encodings: sample-tree.sh FOLDER
set -euo pipefail
folder=$1
rm -rf "$folder"
mkdir -p "$folder/letters" "$folder/source/deep/er"

printf 'The harbour at low tide.\nA tide table hangs by the door.\n' >"$folder/notes.txt"
printf 'Ebbe und Flut: the tide rises.\r\nGrüße vom Hafen.\r\n' | iconv -f UTF-8 -t UTF-16LE >"$folder/letters/body.tmp"
{ printf '\xFF\xFE'; cat "$folder/letters/body.tmp"; } >"$folder/letters/hafen-utf16.txt"
printf 'La marée (tide) monte.\rÀ bientôt.\r' | iconv -f UTF-8 -t WINDOWS-1252 >"$folder/letters/body.tmp"
mv "$folder/letters/body.tmp" "$folder/letters/maree-1252.txt"
# The file says in an attribute how it is to be read.
setfattr -n user.com.apple.TextEncoding -v 'windows-1252;1280' "$folder/letters/maree-1252.txt" ||
    echo "letters/maree-1252.txt can't say how it is to be read, and will be listed as an error." >&2
printf '<?xml version="1.0" encoding="iso-8859-1"?>\n<line>Die Flut k\xE4me: tide</line>\n' >"$folder/letters/flut.xml"
printf '#include "tide.h"\n\nint tide(int hour)\n{\n\treturn tide_table[hour %% 24]; // tide, tide\n}\n' \
    >"$folder/source/tide.c"
printf 'int tide(int hour);\nextern const int tide_table[24];\n' >"$folder/source/tide.h"
printf 'Прилив — это tide.\nОтлив тоже.\n' >"$folder/source/deep/er/priliv.txt"
# No encoding reads this one.
printf 'high tide at noon\n\xc3\x28 tide\n' >"$folder/letters/damaged.txt"
printf '\x89PNG\r\n\x1a\nnot a text: tide\n' >"$folder/picture.png"
