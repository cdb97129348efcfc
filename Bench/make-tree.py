#!/usr/bin/env python3
"""Makes text files on which every search tool has to give the same counts.

make-tree.py --tree TARGET SOURCE...
    copies from the source folders every visible regular file that is valid UTF-8 without a byte-order mark, zero bytes,
    lone carriage returns, very long lines or a declaration of an encoding: ASCII files to TARGET/ascii, the others to
    TARGET/unicode (expressions count bytes there, which other tools don't)
make-tree.py --utf-16 TARGET TREE
    makes a tree of such a one's files, about 200 MB, in UTF-16 with a byte-order mark
make-tree.py --file TARGET TREE
    joins the ASCII files of such a tree, over and over, to one file of 1 GB
make-tree.py --projects TARGET TREE
    makes of the ASCII files of such a tree projects with an ignore file each and, in "node_modules", "build" and files
    that end in ".o", as much again that it leaves out
make-tree.py --tiny TARGET
    makes a million files of one line in a thousand folders
"""
import os
import re
import sys

DECLARATION = re.compile(rb"encoding\s*=|charset\s*=", re.IGNORECASE)
UTF_16_SOURCE_BYTES = 100_000_000
BIG_FILE_BYTES = 1_000_000_000


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


def visible_files(top):
    for folder, folders, names in os.walk(top):
        folders[:] = sorted(name for name in folders if not name.startswith("."))
        for name in sorted(names):
            path = os.path.join(folder, name)
            if not name.startswith(".") and not os.path.islink(path) and os.path.isfile(path):
                yield path


def read(path):
    with open(path, "rb") as file:
        return file.read()


def write(path, content):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "wb") as file:
        file.write(content)


def make_tree(target, sources):
    for source in sources:
        for path in visible_files(source):
            content = read(path)
            if is_plain(content):
                part = "ascii" if content.isascii() else "unicode"
                write(os.path.join(target, part) + os.path.abspath(path), content)


def make_utf_16(target, sources):
    left = UTF_16_SOURCE_BYTES
    # Those with other scripts first, so that there is something to find in them.
    for part in ("unicode", "ascii"):
        for path in visible_files(os.path.join(sources[0], part)):
            content = read(path)
            left -= len(content)
            if left < 0:
                return
            encoded = b"\xff\xfe" + content.decode("utf-8").encode("utf-16-le")
            write(os.path.join(target, part, os.path.relpath(path, sources[0])), encoded)


def make_file(target, sources):
    paths = list(visible_files(os.path.join(sources[0], "ascii")))
    with open(target, "wb") as file:
        while file.tell() < BIG_FILE_BYTES:
            for path in paths:
                file.write(read(path).rstrip(b"\n") + b"\n")
                if file.tell() >= BIG_FILE_BYTES:
                    return


def make_projects(target, sources):
    ascii_part = os.path.join(sources[0], "ascii")
    for number, path in enumerate(visible_files(ascii_part)):
        relative = os.path.relpath(path, ascii_part)
        project = os.path.join(target, "project%d" % (number // 500))
        content = read(path)
        write(os.path.join(project, "src", relative), content)
        if number % 500 == 0:
            write(os.path.join(project, ".gitignore"), IGNORED)
        if number % 5 == 0:
            write(os.path.join(project, "node_modules", relative), content)
        elif number % 5 == 1:
            write(os.path.join(project, "src", "build", relative), content)
        elif number % 5 == 2:
            write(os.path.join(project, "src", relative + ".o"), content)


def make_tiny(target, _):
    for folder in range(1000):
        for file in range(1000):
            number = folder * 1000 + file
            write(os.path.join(target, f"{folder:03}", f"{file:03}.txt"), b"the file of number %d of many\n" % number)


IGNORED = b"# what is made\nnode_modules/\n/src/build/\n*.o\n*.log\n!keep.o\ndoc/**/tmp\n/dist\n.cache\n*~\n"
MAKERS = {"--tree": make_tree, "--utf-16": make_utf_16, "--file": make_file, "--tiny": make_tiny, "--projects": make_projects}

if len(sys.argv) < 3 or sys.argv[1] not in MAKERS:
    sys.exit(__doc__)
MAKERS[sys.argv[1]](sys.argv[2], sys.argv[3:])
