"""Finds where single errors can be planted in C++ sources, and plants them, each behind a switch of its own.

All errors are compiled into one build: `a < b` becomes `(Is(17) ? (a) <= (b) : (a) < (b))`. So a run takes one of them
by its number, and a thousand cost one build."""
import dataclasses
import random
import re

from clang import cindex
from clang.cindex import CursorKind as Kind
from clang.cindex import TypeKind as Type

OTHER_OPERATOR = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
    "&&": "||", "||": "&&", "+": "-", "-": "+", "*": "+", "/": "*", "%": "+", "&": "|", "|": "&",
}
FUNCTIONS = (Kind.FUNCTION_DECL, Kind.CXX_METHOD, Kind.CONSTRUCTOR, Kind.DESTRUCTOR, Kind.FUNCTION_TEMPLATE,
             Kind.CONVERSION_FUNCTION)
STATEMENTS = (Kind.CALL_EXPR, Kind.BINARY_OPERATOR, Kind.COMPOUND_ASSIGNMENT_OPERATOR, Kind.UNARY_OPERATOR)
CONDITIONAL = (Kind.IF_STMT, Kind.WHILE_STMT, Kind.CONDITIONAL_OPERATOR)
NUMBERS = (Type.INT, Type.UINT, Type.LONG, Type.ULONG, Type.LONGLONG, Type.ULONGLONG, Type.SHORT, Type.USHORT,
           Type.DOUBLE, Type.FLOAT)
# Errors that change no result by design, left out as a class. Room that is kept in advance only saves time. The text of
# an assertion, what a log line contains and how long something took are for a person's eyes.
UNSEEN = re.compile(r"\breserve\(|\bshrink_to_fit\(|ASSERT|assert\(|steady_clock|\bElapsed|prefetch|\bLog[A-Z]\w*\(")


@dataclasses.dataclass
class Mutant:
    """One error: the bytes from `begin` to `end` of a file are replaced by `text`, in which {is} is its switch."""
    file: str
    line: int
    begin: int
    end: int
    function: str
    what: str
    text: str
    number: int = 0


class Finder:
    """All errors that can be planted in some files below `tree` that one unit of compilation includes."""

    def __init__(self, tree, files):
        self.tree, self.files = tree, files
        self.sources, self.found, self.function = {}, [], ""

    def find(self, unit, flags):
        self._declarations(cindex.Index.create().parse(unit, args=flags).cursor)
        return self.found

    def _declarations(self, parent):
        for cursor in parent.get_children():
            if self._file_of(cursor.location) is None:
                continue
            if cursor.kind not in FUNCTIONS:
                self._declarations(cursor)
            for body in cursor.get_children():
                head = self._between(cursor.extent.start, body.extent.start)
                if body.kind == Kind.COMPOUND_STMT and not re.search(r"\bconst(expr|eval)\b", head):
                    self.function = cursor.spelling
                    self._inside(body)

    def _file_of(self, place):
        file = place.file.name.removeprefix(self.tree + "/") if place.file is not None else None
        return file if file in self.files else None

    def _between(self, first, last):
        """The text from one place to another one; empty where they lie in different files."""
        file = self._file_of(first)
        if file is None or file != self._file_of(last):
            return ""
        if file not in self.sources:
            with open(f"{self.tree}/{file}", "rb") as source:
                self.sources[file] = source.read()
        return self.sources[file][first.offset:last.offset].decode("utf-8", "replace")

    def _text(self, cursor):
        return self._between(cursor.extent.start, cursor.extent.end)

    def _add(self, first, last, what, text):
        whole = self._between(first, last)
        if whole and "#" not in whole and not UNSEEN.search(whole):
            self.found.append(Mutant(self._file_of(first), first.line, first.offset, last.offset, self.function,
                                     " ".join(what.split()), text))

    def _switch(self, cursor, other):
        whole = self._text(cursor)
        self._add(cursor.extent.start, cursor.extent.end, f"{whole} -> {other}", f"({{is}} ? ({other}) : ({whole}))")

    def _inside(self, cursor):
        kind, children = cursor.kind, list(cursor.get_children())
        # What has to be known to the compiler stays.
        if kind == Kind.STATIC_ASSERT or kind == Kind.VAR_DECL and re.search(r"\bconstexpr\b|\[\d", self._text(cursor)):
            return
        if kind == Kind.CASE_STMT:
            children = children[1:]
        elif kind == Kind.COMPOUND_STMT:
            for child in children:
                self._statement(child)
        elif kind == Kind.BINARY_OPERATOR and len(children) == 2:
            self._operator(cursor, *children)
        elif kind == Kind.CALL_EXPR:
            self._call(cursor, children)
        elif kind in CONDITIONAL and children[0].kind.is_expression():
            self._negated(children[0])
        elif kind == Kind.RETURN_STMT and children:
            self._returned(children[0])
        elif kind in (Kind.INTEGER_LITERAL, Kind.CXX_BOOL_LITERAL_EXPR):
            self._literal(cursor)
        for child in children:
            self._inside(child)

    def _statement(self, cursor):
        while cursor.kind == Kind.UNEXPOSED_EXPR and list(cursor.get_children()):
            cursor = next(iter(cursor.get_children()))
        if cursor.kind in STATEMENTS:
            whole = self._text(cursor)
            self._add(cursor.extent.start, cursor.extent.end, f"{whole}; -> nothing", f"if (!{{is}}) {whole}")

    def _negated(self, cursor):
        whole = self._text(cursor)
        self._add(cursor.extent.start, cursor.extent.end, f"{whole} -> !({whole})",
                  f"{{is}} != static_cast<bool>({whole})")

    def _operator(self, cursor, left, right):
        operator = self._between(left.extent.end, right.extent.start).strip()
        if operator in OTHER_OPERATOR:
            self._switch(cursor, f"{self._text(left)} {OTHER_OPERATOR[operator]} {self._text(right)}")

    def _call(self, cursor, children):
        if cursor.spelling in ("operator==", "operator!=", "operator<") and len(children) == 3:
            self._operator(cursor, children[0], children[2])
        arguments = list(cursor.get_arguments())
        for first, second in zip(arguments, arguments[1:]):
            a, b = self._text(first), self._text(second)
            between = self._between(first.extent.end, second.extent.start)
            types = {argument.type.get_canonical().spelling for argument in (first, second)}
            if between.strip() == "," and a != b and len(types) == 1 and not UNSEEN.search(self._text(cursor)):
                self._add(first.extent.start, second.extent.end,
                          f"{cursor.spelling}({a}, {b}) -> {cursor.spelling}({b}, {a})",
                          f"({{is}} ? ({b}) : ({a})){between}({{is}} ? ({a}) : ({b}))")

    def _returned(self, cursor):
        kind, whole = cursor.type.get_canonical().kind, self._text(cursor)
        if kind == Type.BOOL:
            self._negated(cursor)
        elif kind in NUMBERS and whole not in ("0", "0.0"):
            self._switch(cursor, "0")
        elif kind == Type.POINTER and whole != "nullptr":
            self._switch(cursor, "nullptr")

    def _literal(self, cursor):
        whole = self._text(cursor)
        others = {"true": ["false"], "false": ["true"]}.get(whole, [f"{whole} + 1", f"{whole} - 1"])
        for other in others if re.match(r"\d|true|false", whole) else []:
            self._switch(cursor, other)


def choose(mutants, count, seed, share_of):
    """So many of them, none within another one, the same for the same seed; each folder by its share."""
    generator = random.Random(seed)
    of_folder = {}
    for mutant in sorted(mutants, key=lambda mutant: (mutant.file, mutant.begin, mutant.what)):
        of_folder.setdefault(mutant.file.split("/")[0], []).append(mutant)
    whole = sum(map(share_of, of_folder))
    chosen = []
    for folder, places in of_folder.items():
        enough = len(chosen) + round(count * share_of(folder) / whole)
        generator.shuffle(places)
        for mutant in places:
            if len(chosen) < enough and all(mutant.file != other.file or mutant.end <= other.begin
                                            or other.end <= mutant.begin for other in chosen):
                chosen.append(mutant)
    chosen.sort(key=lambda mutant: (mutant.file, mutant.begin))
    for number, mutant in enumerate(chosen, 1):
        mutant.number = number
    return chosen


def write(original, tree, mutants):
    """Writes the files of the mutants into `tree` with all of them planted, and returns where each lies there, by file."""
    places = {}
    for file in {mutant.file for mutant in mutants}:
        with open(f"{original}/{file}", "rb") as source:
            text = source.read()
        out, copied = b"", 0
        for mutant in sorted((m for m in mutants if m.file == file), key=lambda mutant: mutant.begin):
            out += text[copied:mutant.begin]
            begin = len(out)
            out += mutant.text.replace("{is}", f"dtsdb_mutation::Is({mutant.number})").encode()
            places.setdefault(file, []).append((begin, len(out), mutant.number))
            copied = mutant.end
        with open(f"{tree}/{file}", "wb") as changed:
            changed.write(out + text[copied:])
    return places


def refused(tree, unit, flags, places):
    """The numbers of the errors that the compiler refuses: those that its report names, or else those near by."""
    numbers = set()
    for report in cindex.Index.create().parse(unit, args=flags).diagnostics:
        if report.severity < cindex.Diagnostic.Error:
            continue
        hit, near = set(), set()
        for place in [report.location, *(note.location for note in report.children)]:
            file = place.file.name.removeprefix(tree + "/") if place.file is not None else ""
            for begin, end, number in places.get(file, []):
                if begin <= place.offset < end:
                    hit.add(number)
                elif abs(begin - place.offset) < 400:
                    near.add(number)
        numbers |= hit or near
    return numbers
