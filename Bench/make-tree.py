#!/usr/bin/env python3
"""Makes a tree of text files on which every search tool has to give the same counts.

make-tree.py TARGET SOURCE...

Copies from the source folders every visible regular file that is valid UTF-8 without a byte-order mark, zero bytes,
lone carriage returns, very long lines or a declaration of an encoding: ASCII files to TARGET/ascii, the others to
TARGET/unicode (expressions count bytes there, which other tools don't).
"""
import os
import re
import sys

DECLARATION = re.compile(rb"encoding\s*=|charset\s*=", re.IGNORECASE)


def is_plain(content):
    if len(content) < 4 or b"\0" in content or content.startswith(b"\xef\xbb\xbf"):
        return False
    if DECLARATION.search(content[:512]) or b"\r" in content.replace(b"\r\n", b""):
        return False
    try:
        text = content.decode("utf-8")
    except UnicodeDecodeError:
        return False
    return max(map(len, text.split("\n"))) < 20000


def main():
    target, sources = sys.argv[1], sys.argv[2:]
    count = size = 0
    for source in sources:
        for folder, folders, names in os.walk(source):
            folders[:] = [name for name in folders if not name.startswith(".")]
            for name in names:
                path = os.path.join(folder, name)
                if name.startswith(".") or os.path.islink(path) or not os.path.isfile(path):
                    continue
                with open(path, "rb") as file:
                    content = file.read()
                if not is_plain(content):
                    continue
                part = "ascii" if content.isascii() else "unicode"
                copied_to = os.path.join(target, part) + os.path.abspath(folder)
                os.makedirs(copied_to, exist_ok=True)
                with open(os.path.join(copied_to, name), "wb") as file:
                    file.write(content)
                count += 1
                size += len(content)
    print(f"{count} files, {size / 1e6:.0f} MB in {target}")


main()
