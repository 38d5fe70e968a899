#!/usr/bin/env python3
"""The first paths of a newcomer, taken from the documents that describe them.

scripts/newcomer_paths.py write FOLDER            writes NAME.install and NAME.run for each path, scripts for sh
scripts/newcomer_paths.py check NAME OUTPUT       the output of NAME.run has the lines that the documents show

A document marks what belongs to a path by a comment in front of a block of code:

<!-- path NAME: install -->     commands that install what the path needs
<!-- path NAME: run -->         commands
<!-- path NAME: python -->      a program for python3
<!-- path NAME: file FILE -->   the contents of a file
<!-- path NAME: prints -->      lines that the path prints; [...] stands for anything
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
DOCUMENTS = ["docs/guides/first-hour.md", "docs/guides/integrator.md", "README.md"]
MARK = re.compile(r"<!-- path (\w+): (\w+)(?: (\S+))? -->")
KINDS = {"install", "run", "python", "file", "prints"}


def block(lines, begin):
    """The code of the block that begins behind line `begin`, fenced or indented."""
    while begin < len(lines) and not lines[begin].strip():
        begin += 1
    if begin < len(lines) and lines[begin].startswith("```"):
        end = next(i for i in range(begin + 1, len(lines)) if lines[i].startswith("```"))
        return lines[begin + 1 : end]
    code = []
    for line in lines[begin:]:
        if line.strip() and not line.startswith("    "):
            break
        code.append(line[4:])
    return "\n".join(code).rstrip("\n").split("\n")


def parts(documents):
    """(path, kind, file, lines) for each marked block, in order. Raises ValueError for a mark without one."""
    for document in documents:
        lines = document.read_text(encoding="utf-8").splitlines()
        for number, line in enumerate(lines):
            mark = MARK.search(line)
            if not mark:
                continue
            path, kind, file = mark.groups()
            code = block(lines, number + 1)
            if kind not in KINDS or (kind == "file") != (file is not None) or code == [""]:
                raise ValueError(f"{document}:{number + 1}: {line} has no block, or is no mark of a path")
            yield path, kind, file, code


def here_document(opening, code):
    return [f"{opening} <<'END_OF_BLOCK'", *code, "END_OF_BLOCK"]


def scripts(documents):
    """For each path its two scripts: {name: {"install": lines, "run": lines}}."""
    found = {}
    for path, kind, file, code in parts(documents):
        of_path = found.setdefault(path, {"install": [], "run": []})
        if kind in of_path:
            of_path[kind] += code
        elif kind == "python":
            of_path["run"] += here_document("python3 -", code)
        elif kind == "file":
            of_path["run"] += here_document(f"cat >{file}", code)
    return found


def missing_lines(documents, name, output):
    """The lines that a path must print and `output` doesn't have."""
    printed = [line.strip() for line in output.splitlines()]
    expected = [line.strip() for path, kind, _, code in parts(documents) if (path, kind) == (name, "prints") for line in code]
    if not expected:
        return [f"nothing is marked as what the path {name} prints"]
    patterns = {line: ".*".join(re.escape(piece) for piece in line.split("[...]")) for line in expected}
    return [line for line in expected if not any(re.fullmatch(patterns[line], printed_line) for printed_line in printed)]


def main(arguments):
    documents = [ROOT / document for document in DOCUMENTS]
    if len(arguments) == 2 and arguments[0] == "write":
        folder = pathlib.Path(arguments[1])
        folder.mkdir(parents=True, exist_ok=True)
        for name, of_path in scripts(documents).items():
            for kind, lines in of_path.items():
                (folder / f"{name}.{kind}").write_text("\n".join(["set -eu", *lines, ""]), encoding="utf-8")
            print(name)
        return 0
    if len(arguments) == 3 and arguments[0] == "check":
        output = pathlib.Path(arguments[2]).read_text(encoding="utf-8")
        missing = missing_lines(documents, arguments[1], output)
        for line in missing:
            print(f"{arguments[1]}: not printed: {line}", file=sys.stderr)
        return 1 if missing else 0
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
