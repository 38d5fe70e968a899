#!/usr/bin/env python3
"""Writes the code that follows from the description in schema/: records, rows, field and relation tables, pages.

    schema/generate.py           writes the files that differ
    schema/generate.py --check   writes nothing; exits 1 and names the files that differ

Run it through scripts/generate, which installs what it needs.
"""

import argparse
import pathlib
import sys
import textwrap
import unicodedata

import jinja2

sys.dont_write_bytecode = True
from description import SchemaError, load, require  # noqa: E402
from messages import Messages  # noqa: E402

SCHEMA = pathlib.Path(__file__).resolve().parent
ROOT = SCHEMA.parent
LINE_LIMIT = 120

RECORD_TYPES = {"text": "QString", "i8": "i8", "u8": "u8", "i32": "i32", "u32": "u32", "f32": "f32", "f64": "f64"}
# A field of one byte has a column of four.
COLUMN_TYPES = {"text": "char const*", "i8": "int4", "u8": "int4", "i32": "int4", "u32": "nat4", "f32": "real4",
                "f64": "real8"}
PYTHON_TYPES = {"text": "np.object_", "i8": "np.int8", "u8": "np.uint8", "i32": "np.int32", "u32": "np.uint32",
                "f32": "np.float32", "f64": "np.float64"}
COLUMN_KINDS = {"char const*": "Text", "int4": "Int4", "nat4": "Nat4", "real4": "Real4", "real8": "Real8"}
WRITERS = ("input", "validation", "topology", "breaker flow", "carried")
READERS = ("validation", "topology", "breaker flow", "other programs")
KEYS = {"text": "Identified", "number": "Numbered", "relation": "Relation"}
WRITINGS = {"merge": "Merging", "replace": "Replacing"}


def size_in_32_bits(column):
    if "bytes" in column:
        return column["bytes"]
    return 8 if column["type"] == "f64" else 4


class Field:
    """One column of a table: a field of the record, a column that only the row has, or a range of bytes."""

    def __init__(self, description, record, offset):
        place = f"{record}, {description.get('name', 'bytes at ' + str(description.get('at')))}"
        self.offset = offset
        self.is_range = "bytes" in description
        self.in_record = not self.is_range and description.get("only") != "row"
        self.size = size_in_32_bits(description)
        if self.is_range:
            require(description["at"] == offset, place, f"the range begins at {offset}, not at {description['at']}")
            self.name = f"raw_{offset}"
            self.meaning = "bytes that other programs keep here"
            self.comment = self.meaning
            return
        self.name = description["name"]
        self.type = description["type"]
        require(self.type in RECORD_TYPES, place, f"there is no type {self.type}")
        self.meaning = description["meaning"]
        self.default = description.get("default")
        self.refers = description.get("refers")
        self.unit = description.get("unit", "")
        self.writers = description.get("writers") or [description.get("writer")]
        for writer in self.writers:
            require(writer in WRITERS, place, f"there is no writer {writer}; known are {', '.join(WRITERS)}")
        self.cpp_type = RECORD_TYPES[self.type]
        self.column_type = COLUMN_TYPES[self.type]
        self.column_kind = COLUMN_KINDS[self.column_type]
        self.comment = self.meaning + (f", in {self.unit}" if self.unit else "") + self._written_by()

    def _written_by(self):
        own = [writer for writer in self.writers if writer not in ("input", "carried")]
        return f" ({', '.join(own)})" if own else ""

    @property
    def declaration(self):
        if self.type == "text":
            return f"QString {self.name};"
        return f"{self.cpp_type} {self.name} = {0 if self.default is None else self.default};"

    @property
    def column_declaration(self):
        if self.is_range:
            return f"char {self.name}[{self.size}]{{}};"
        return f"{self.column_type} {self.name}{{}};"


class Record:
    """A record class with its table and its row in the realtime database."""

    def __init__(self, description, fields):
        self.name = description["name"]
        self.kind = description["kind"]
        self.member = description["table"]
        self.key = KEYS[description.get("key", "relation")]
        self.writing = WRITINGS[description.get("writing", "replace")]
        self.meaning = description["meaning"]
        self.readers = description["readers"]
        for reader in self.readers:
            require(reader in READERS, self.name, f"there is no reader {reader}; known are {', '.join(READERS)}")
        self.row = self.name.lower()
        self.relation = description if "parent" in description else None
        self.columns = []
        for field in fields:
            offset = self.columns[-1].offset + self.columns[-1].size if self.columns else 0
            self.columns.append(Field(field, self.name, offset))
        self.row_size = self.columns[-1].offset + self.columns[-1].size
        self.fields = [column for column in self.columns if column.in_record]
        names = [column.name for column in self.columns]
        require(len(set(names)) == len(names), self.name, "a name stands twice")
        for place, field in enumerate(self.fields):
            field.place = place

    @property
    def title(self):
        return self.meaning[0].upper() + self.meaning[1:]

    @property
    def constant(self):
        """The record's name in those of constants: R_KV_LD becomes RKvLd."""
        return "".join(part.capitalize() for part in self.name.split("_"))

    @property
    def parent(self):
        return self.relation["parent"].lower()

    @property
    def child(self):
        return self.relation["child"].lower()

    @property
    def writers(self):
        """Who writes fields of it, the input first; what is carried has no writer."""
        return [writer for writer in WRITERS[:-1] if any(writer in field.writers for field in self.fields)]

    @property
    def only_in_rows(self):
        return [column for column in self.columns if not column.in_record and not column.is_range]

    def is_key(self, column):
        return column.name.endswith("_id") if self.relation else column.name == "id"

    def field(self, name):
        found = [field for field in self.fields if field.name == name]
        require(found, self.name, f"there is no field {name}")
        return found[0]


class Group:
    """The records of one header."""

    def __init__(self, header, about, records):
        self.header = header
        self.about = about
        self.records = records

    @property
    def refers_to(self):
        return sorted({r.relation[end] for r in self.records if r.relation for end in ("parent", "child")})


def relation_fields(shape, relation):
    words = {"parent": relation["parent"].lower(), "child": relation["child"].lower(), "PARENT": relation["parent"],
             "CHILD": relation["child"], "RELATION": relation["name"]}
    fields = []
    for field in shape:
        fields.append({key: value.format(**words) if key in ("name", "refers") else value
                       for key, value in field.items()})
    return fields


class Model:
    """The whole description, checked."""

    def __init__(self):
        self.groups = []
        for path in sorted((SCHEMA / "records").glob("*.json")):
            group = load(path)
            self.groups.append(Group(path.stem, group["about"], [Record(r, r["fields"]) for r in group["records"]]))
        relations = load(SCHEMA / "relations.json")
        for group in relations["groups"]:
            rows = [Record(r, relation_fields(relations["fields"], r)) for r in group["relations"]]
            self.groups.append(Group(group["header"], group["about"], rows))
        self.records = sorted((record for group in self.groups for record in group.records), key=lambda r: r.name)
        self.relations = [record for record in self.records if record.relation]
        self.by_name = {record.name: record for record in self.records}
        self.branches = load(SCHEMA / "branches.json")["branches"]
        self._check()
        self.messages = Messages(load(SCHEMA / "messages.json"), self.by_name, self.relations)

    def referring_to(self, record):
        """The fields of other records that hold an identity or number of it: record to fields."""
        fields = {other: [field for field in other.fields if field.refers == record.name] for other in self.records}
        return {other: found for other, found in fields.items() if found and other is not record}

    def chains_of(self, record):
        """The relations in which it is the parent."""
        return [relation for relation in self.relations if relation.relation["parent"] == record.name]

    def _check(self):
        for place, record in enumerate(self.records, 1):
            require(record.kind == place, record.name, f"its kind code is its place in the alphabet, {place}")
            for field in record.fields:
                require(field.refers is None or field.refers in self.by_name, f"{record.name}, {field.name}",
                        f"there is no record {field.refers}")
        children = [record.relation["child"] for record in self.relations]
        for record in self.relations:
            child = record.relation["child"]
            require(children.count(child) == 1, record.name, f"{child} is the child of another relation too")
            self._require_field(record.relation["parent"], record.relation["head"], record.name)
            self._require_field(record.relation["child"], record.relation["own"], record.name)
        for branch in self.branches:
            for field in (branch["from_end"], branch["to_end"], *branch.get("measurements", {}).values()):
                self._require_field(branch["record"], field, None)
            self._require_field(branch["end"], branch["owner"], branch["record"])

    def _require_field(self, record, name, refers):
        require(record in self.by_name, record, "there is no such record")
        field = self.by_name[record].field(name)
        require(refers is None or field.refers == refers, f"{record}, {name}", f"it must refer to {refers}")


def with_comments(lines, indent=2):
    """Declarations with their comments behind them, in one column and wrapped, as clang-format leaves them."""
    column = indent + max(len(declaration) for declaration, _ in lines) + 2
    text = []
    for declaration, comment in lines:
        parts = textwrap.wrap(comment, LINE_LIMIT - column - len("///< "), break_long_words=False,
                              break_on_hyphens=False)
        text.append(" " * indent + declaration.ljust(column - indent) + "///< " + parts[0])
        text += [" " * column + "///< " + part for part in parts[1:]]
    return "\n".join(text)


def filled(words, first, indent, end):
    """`first`, the words with commas between them, and `end`: filled to the line's limit."""
    lines = [first]
    for number, word in enumerate(words):
        word += "," if number + 1 < len(words) else end
        if lines[-1] == first and number == 0:
            lines[-1] += word
        elif len(lines[-1]) + 1 + len(word) <= LINE_LIMIT:
            lines[-1] += " " + word
        else:
            lines.append(" " * indent + word)
    return "\n".join(lines)


def declarations(fields):
    return [(field.declaration, field.comment) for field in fields]


def column_declarations(columns):
    return [(column.column_declaration, column.comment) for column in columns]


def pointer_declarations(records):
    return [(f"tTable<{record.name}>* {record.member} = nullptr;", record.meaning) for record in records]


def descriptor(record):
    """The columns of a row class as the database is given them."""
    words = []
    for column in record.columns:
        if column.is_range:
            words.append(f"RAWFIELD({column.name})")
        elif record.is_key(column):
            words.append(f"KEY({column.name}, INDEXED)")
        else:
            words.append(f"FIELD({column.name})")
    first = "  TYPE_DESCRIPTOR(("
    return filled(words, first, len(first), "));")


def by_python_type(fields):
    """The names of the fields of each type, with what numpy calls it."""
    groups = {}
    for field in fields:
        groups.setdefault(PYTHON_TYPES[field.type], []).append(field.name)
    return [(names, python_type) for python_type, names in groups.items()]


def literal_type(names):
    """The type of a parameter that is one of these names, filled to the line's limit within a stub."""
    one_line = "Literal[" + ", ".join(quoted(name) for name in names) + "]"
    if len(one_line) <= 60:
        return one_line
    rest = textwrap.wrap(", ".join(quoted(name) for name in names), LINE_LIMIT - 8, break_on_hyphens=False)
    return "Literal[\n" + "".join(" " * 8 + line + "\n" for line in rest) + " " * 4 + "]"


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def literal(text):
    """A text as a C++ literal; nothing as a null pointer."""
    return "nullptr" if text is None else quoted(text)


def display_width(text):
    return sum(2 if unicodedata.east_asian_width(character) in "WF" else 1 for character in text)


def assigned(arguments, left, opening, closing, indent=0):
    """`left = opening arguments closing;`, broken as clang-format does it where one line would be too long."""
    def fits(line):
        return display_width(line) <= LINE_LIMIT

    margin = " " * indent
    first = f"{margin}{left} = {opening}"
    last = arguments[-1] + closing + ";"
    front = "".join(argument + ", " for argument in arguments[:-1])
    aligned = " " * len(first) + last
    if fits(first + front + last):
        return first + front + last
    if fits(aligned) and (opening == "{" or left.endswith(">")):
        return (first + front).rstrip() + "\n" + aligned
    return f"{margin}{left} =\n{margin}    {opening}{front}{last}"


def render(model):
    """The generated files: path from the project's folder to contents."""
    environment = jinja2.Environment(loader=jinja2.FileSystemLoader(SCHEMA / "templates"), trim_blocks=True,
                                     lstrip_blocks=True, keep_trailing_newline=True,
                                     undefined=jinja2.StrictUndefined)
    for function in (with_comments, filled, declarations, column_declarations, pointer_declarations, descriptor, quoted,
                     literal, assigned, by_python_type, literal_type):
        environment.filters[function.__name__] = function

    def fill(template, **names):
        return environment.get_template(template).render(model=model, **names)

    files = {}
    for group in model.groups:
        files[f"model/records/{group.header}.h"] = fill("record_header.j2", group=group)
        files[f"model/records/{group.header}.cpp"] = fill("record_source.j2", group=group)
        files[f"rtdb/rows/{group.header}.h"] = fill("row_header.j2", group=group)
        files[f"rtdb/rows/{group.header}.cpp"] = fill("row_source.j2", group=group)
    for path, template in (
            ("model/table_kinds.h", "table_kinds.j2"),
            ("model/records.h", "records.j2"),
            ("model/relations.h", "relations.j2"),
            ("model/branch_kinds.h", "branch_kinds.j2"),
            ("model/tables.h", "tables.j2"),
            ("model/table_pointers.inc", "table_pointers.j2"),
            ("model/table_info.cpp", "table_info.j2"),
            ("model/dtsdb.h", "dtsdb.j2"),
            ("model/exchange.cpp", "exchange.j2"),
            ("model/twins.h", "twins.j2"),
            ("rtdb/volma_rtdb.h", "volma_rtdb_header.j2"),
            ("rtdb/volma_rtdb.cpp", "volma_rtdb_source.j2"),
            ("validation/internal/messages.h", "messages.j2"),
            ("validation/internal/edit_reasons.h", "edit_reasons.j2"),
            ("validation/internal/message_rows.inc", "message_rows.j2"),
            ("docs/tables.md", "tables_page.j2"),
            ("docs/messages.md", "messages_page.j2"),
            ("python/dtsdb/tables.pyi", "python_tables.j2"),
    ):
        files[path] = fill(template)
    for record in model.records:
        files[f"docs/records/{record.name}.md"] = fill("record_page.j2", record=record)
    for key in KEYS.values():
        files[f"model/tables_{key.lower()}.cpp"] = fill("table_instances.j2", key=key)
    return files


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="write nothing; exit 1 when a file would change")
    arguments = parser.parse_args()
    try:
        files = render(Model())
    except SchemaError as error:
        sys.exit(f"schema: {error}")
    stale = []
    for name, text in files.items():
        path = ROOT / name
        if path.exists() and path.read_text(encoding="utf-8") == text:
            continue
        stale.append(name)
        if not arguments.check:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
    for name in stale:
        print(f"{name}: {'differs from what the schema describes; run scripts/generate' if arguments.check else 'written'}")
    return 1 if arguments.check and stale else 0


if __name__ == "__main__":
    sys.exit(main())
