#!/usr/bin/env python3
"""Checks the driver's lines and ranges against ripgrep's, match by match, on the ASCII files of folders.

Bench/check-ranges.py FOLDER...

Exits with 1 at the first query on which the two differ.
"""
import json
import os
import subprocess
import sys

DRIVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../build/release/bin/tidemark-bench")

# find text, expression?, ignore case?
QUERIES = [
    ("EINVAL", False, False),
    ("einval", False, True),
    ("(int ", False, True),
    ("return", False, True),
    (r"[A-Z]+_SUSPEND", True, False),
    (r"[a-z]+_suspend", True, True),
    (r"EAGAIN|ENOTTY|ENOEXEC", True, False),
    (r"[0-9]{4}-[0-9]{2}-[0-9]{2}", True, False),
    (r"\w+\(\w+,\s*\w+\);", True, False),
    (r"0x[0-9a-f]+[ul]*", True, True),
    (r"([a-z])[a-z]*ing", True, True),
]


def ascii_files(folders):
    files = []
    for top in folders:
        for folder, folders_in, names in os.walk(top):
            folders_in[:] = [name for name in folders_in if not name.startswith(".")]
            for name in names:
                path = os.path.join(folder, name)
                if name.startswith(".") or os.path.islink(path) or not os.path.isfile(path) or os.path.getsize(path) < 4:
                    continue
                with open(path, "rb") as file:
                    content = file.read()
                plain_ends = b"\r" not in content.replace(b"\r\n", b"")
                declared = b"charset" in content[:512].lower() or b"encoding" in content[:512].lower()
                if content.isascii() and b"\0" not in content and plain_ends and not declared \
                        and max(map(len, content.split(b"\n"))) < 24000:
                    files.append(path)
    return files


def by_driver(query, folders):
    text, is_expression, ignore_case = query
    command = [DRIVER, "--find", text, "--kind", "all", "--list", "--quiet"]
    command += ["--regex"] if is_expression else []
    command += [] if ignore_case else ["--case-sensitive"]
    found = {}
    for line in subprocess.run(command + folders, stdout=subprocess.PIPE, check=True).stdout.splitlines():
        path, number, ranges = line.rsplit(b":", 2)
        found.setdefault(os.fsdecode(path), []).append((int(number), ranges.decode()))
    return found


def by_rg(query, folders):
    text, is_expression, ignore_case = query
    command = ["rg", "-uuu", "--json"] + ([] if is_expression else ["-F"]) + (["-i"] if ignore_case else [])
    command += ["--crlf", "-e", text] + folders
    found = {}
    for line in subprocess.run(command, stdout=subprocess.PIPE).stdout.splitlines():
        event = json.loads(line)
        if event["type"] != "match" or "text" not in event["data"]["path"]:
            continue
        data = event["data"]
        ranges = ",".join(f'{m["start"]}+{m["end"] - m["start"]}' for m in data["submatches"])
        found.setdefault(data["path"]["text"], []).append((data["line_number"], ranges))
    return found


def main():
    folders = sys.argv[1:]
    files = set(ascii_files(folders))
    print(f"{len(files)} ASCII files")
    for query in QUERIES:
        ours, theirs = by_driver(query, folders), by_rg(query, folders)
        lines = 0
        for path in sorted(files):
            lines += len(ours.get(path, []))
            if ours.get(path, []) != theirs.get(path, []):
                difference = set(ours.get(path, [])) ^ set(theirs.get(path, []))
                print(f"{query}: {path} differs: {sorted(difference)[:4]}")
                sys.exit(1)
        print(f"{query}: {lines} lines, the same in each file", flush=True)


main()
