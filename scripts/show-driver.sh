#!/bin/bash
# Shows a search and a replacement with the headless driver: show-driver.sh DRIVER TREE
set -euo pipefail
driver=$1
tree=$2
show_files() {
    grep -rn -a --include='*.c' --include='*.h' --include='notes.txt' . "$tree" | sed 's/^/    /'
}

echo "Search for \"tide\", ignoring case, in the text files of $tree:"
"$driver" --find tide --list --errors "$tree" | sed 's/^/    /'
echo
echo "Some of the files before:"
show_files
echo
echo "Replace int tide\\((\\w+) by int ebb(\$1, and nothing else:"
"$driver" --find 'int tide\((\w+)' --regex --case-sensitive --replace "int ebb(\$1" "$tree" | sed 's/^/    /'
echo
echo "The same files after (backups lie beside them):"
show_files
