#!/usr/bin/env python3
"""Copies headers for Doxygen, in which what stands below one comment, line by line without a blank between, shares it.

    docs/site/shared_comments.py FOLDER HEADER...

    /// Number of sets and of breakers with this state.
    int Count(FlowSetState state) const;
    int Count(BreakerState state) const;

is written as a group of members. Lines keep their numbers.
"""

import pathlib
import re
import sys

# What ends a run: a blank line, a comment, the end of a class, an access specifier, a macro, a list of enumerators.
ENDS = re.compile(r"\s*($|//|\}|public:|protected:|private:|#|///)")
STARTS_NO_RUN = re.compile(r"\s*(template <[^>]*>\s*)?(class|struct|enum|union|namespace|extern)\b(?!.*;\s*$)")


def run_end(lines, begin):
    """The line behind the last of the run that begins there, and how many declarations it has."""
    depth, number, count = 0, begin, 0
    while number < len(lines) and (depth > 0 or not ENDS.match(lines[number])):
        code = re.sub(r'"[^"]*"|//.*', "", lines[number])
        depth += code.count("{") + code.count("(") - code.count("}") - code.count(")")
        number += 1
        if depth == 0 and code.rstrip().endswith((";", "}")):
            count += 1
    return number, count


def with_names_of_groups(lines):
    """The name of a group stands for its first member's comment, which the others share."""
    for number in range(len(lines) - 2):
        name = re.match(r"\s*/// \\name (.*)", lines[number])
        member = lines[number + 2]
        if name and "///@{" in lines[number + 1] and "///" not in member:
            lines[number + 2] = f"/** {name[1]} */ {member}"
    return lines


def shared(lines):
    for number, line in enumerate(lines):
        documented = number > 0 and re.match(r"\s*///(?!<| \\|[@{}])", lines[number - 1]) and not ENDS.match(line)
        if not documented or STARTS_NO_RUN.match(line) or "///<" in line:
            continue
        end, count = run_end(lines, number)
        if count > 1 and not any("///<" in inner for inner in lines[number:end]):
            first = number
            while first > 0 and re.match(r"\s*///", lines[first - 1]):
                first -= 1
            lines[first] = "/**@{*/ " + lines[first]
            lines[end - 1] += " /**@}*/"
    return lines


folder, *headers = sys.argv[1:]
for header in headers:
    copy = pathlib.Path(folder, header)
    copy.parent.mkdir(parents=True, exist_ok=True)
    copy.write_text("\n".join(shared(with_names_of_groups(pathlib.Path(header).read_text().split("\n")))))
