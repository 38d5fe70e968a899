#!/usr/bin/env python3
"""Checks which file includes which: no folder includes upwards, no circle of includes, internal/ stays internal.

Looks at all sources that git knows. Prints one line for each fault and exits with 1 when there is one.
"""

import re
import subprocess
import sys
from pathlib import Path

# From the ground up: a folder includes files of its own and of the folders above it in this list.
# The first of them are the library; internal/ serves the folder that it lies in, include/internal/ all of the library.
LIBRARY = ["include", "rtdb", "model", "validation", "topology", "breakerflow"]
FOLDERS = LIBRARY + ["formats", "script", "analysis", "pictures", "page", "relay", "generate", "command", "python"]

# These stand on all the others and see what is internal too.
OUTER = {"bench", "cmake", "examples", "fuzz", "tests"}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def read_includes(root):
    """The included files of each source, as (line number, path from the root); system headers are left out."""
    names = subprocess.run(["git", "ls-files", "*.h", "*.cpp", "*.inc"], cwd=root, check=True, capture_output=True,
                           text=True).stdout.split("\n")
    files = {name for name in names if name and (root / name).exists()}
    includes = {}
    for name in sorted(files):
        found = []
        lines = (root / name).read_text(encoding="utf-8", errors="replace").splitlines()
        for number, line in enumerate(lines, 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            beside = str(Path(name).parent / match[1])
            target = match[1] if match[1] in files else beside
            if target in files:
                found.append((number, target))
        includes[name] = found
    return includes


def folder_of(name):
    return name.split("/")[0]


def upward_includes(includes):
    for name, targets in includes.items():
        here = folder_of(name)
        if here in OUTER:
            continue
        if here not in FOLDERS:
            yield f"{name}: folder {here} stands in no list of scripts/check_includes.py"
            continue
        for line, target in targets:
            there = folder_of(target)
            if there not in FOLDERS or FOLDERS.index(there) > FOLDERS.index(here):
                yield f"{name}:{line}: {here} includes upwards: {target}"
            elif "/internal/" in target and there != here and not (there == "include" and here in LIBRARY):
                yield f"{name}:{line}: {target} is internal to {there}"


def circles(includes):
    """Each circle once, as the path of a depth-first walk that comes back to a file that it is in."""
    done = set()

    def walk(name, path):
        if name in path:
            yield "circle of includes: " + " -> ".join(path[path.index(name):] + [name])
            return
        if name in done:
            return
        for _, target in includes[name]:
            yield from walk(target, path + [name])
        done.add(name)

    for name in includes:
        yield from walk(name, [])


def main():
    root = Path(__file__).resolve().parent.parent
    includes = read_includes(root)
    faults = [*upward_includes(includes), *circles(includes)]
    print("".join(fault + "\n" for fault in faults), end="", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
