"""The messages of the validation, of the topology and of the editing, from messages.json: texts with their words filled in, checked."""

import re

from description import require

SEVERITIES = {"error": "kError", "warning": "kWarning", "notice": "kNotice"}
CODE = re.compile(r"[A-Z][A-Z0-9_]*[A-Z0-9]")
TEXTS = ("zh", "en", "do_zh", "do_en")


class Row:
    """One message as one table has it: its code, the texts and what to do."""

    def __init__(self, description, words, record):
        def fill(key):
            text = description.get(key)
            return text.format(**words) if text is not None and key != "zh" else text

        self.record = record
        self.code = fill("code")
        self.severity = description.get("severity", "error")
        self.field = fill("field")
        self.zh, self.en, self.do_zh, self.do_en = (fill(key) for key in TEXTS)
        self.silent = description.get("silent", False)
        self.note = description.get("note")
        require(CODE.fullmatch(self.code), self.code, "a code is of capitals, digits and underscores")
        require(self.severity in SEVERITIES, self.code, f"there is no severity {self.severity}")
        require(self.en and self.en == self.en.strip(), self.code, "the English text is empty or has blanks at its ends")
        require(self.zh, self.code, "there is no Chinese text")
        require(bool(self.do_zh) == bool(self.do_en), self.code, "what to do is given in one language only")
        require(self.do_en or self.severity == "notice", self.code, "it isn't given what to do")

    @property
    def cpp_severity(self):
        return SEVERITIES[self.severity]

    @property
    def shown_zh(self):
        return self.zh.strip()


class Message:
    """A message with a constant of its own: one row for each table that it is reported of, or one row for none."""

    def __init__(self, description):
        self.constant = "k" + description["name"]
        self.severity = description.get("severity", "error")
        self.joined = description.get("joined", False)
        self.note = description.get("note")
        tables = description.get("tables", [])
        special = description.get("of", {})
        require(set(special) <= set(tables), description["name"], "what is special of a table that isn't listed")
        self.rows = [Row({**description, **special.get(table, {})}, {"TABLE": table}, table) for table in tables]
        self.rows = self.rows or [Row(description, {}, None)]

    @property
    def is_template(self):
        return len(self.rows) > 1


class Edits:
    """The reasons of the editing of one record class."""

    def __init__(self, description, shared, relation):
        self.record = description["record"]
        words = {"TABLE": self.record}
        if relation:
            parent = shared["parents"].get(relation.relation["parent"], {})
            words.update(RELATION=relation.name, PARENT=relation.relation["parent"], parent=relation.parent,
                         PARENT_ROLE=parent.get("code"), parent_noun=parent.get("en"), parent_zh=parent.get("zh"))
        self.rows = []
        for message in description["messages"]:
            name = message["name"]
            require(name in shared["patterns"], f"{self.record}, {name}", "there is no such pattern")
            row = Row({**shared["patterns"][name], **message}, words, self.record)
            row.constant = "k" + name[0].upper() + name[1:]
            self.rows.append(row)


class Group:
    """Messages under one heading."""

    def __init__(self, about, members):
        self.about = about
        self.members = members


class Messages:
    """All of them. `records` are those of the model by name, `relations` its relations."""

    def __init__(self, description, records, relations):
        by_child = {relation.relation["child"]: relation for relation in relations}
        edits = description["edits"]
        self.findings = [Group(group["about"], [Message(each) for each in group["messages"]])
                         for group in description["findings"]]
        self.topology = [Group(group["about"], [Message(each) for each in group["messages"]])
                         for group in description["topology"]]
        self.reasons = [Group(group["about"], [Message(each) for each in group["messages"]])
                        for group in description["reasons"]]
        self.edits = [Group(group["about"], [Edits(each, edits, by_child.get(each["record"]))
                                             for each in group["records"]]) for group in edits["groups"]]
        self._check(records)

    @property
    def rows(self):
        """All rows, in the order of their codes."""
        constants = [message for group in (*self.findings, *self.topology, *self.reasons) for message in group.members]
        rows = [row for message in constants for row in message.rows]
        rows += [row for group in self.edits for record in group.members for row in record.rows]
        return sorted(rows, key=lambda row: row.code)

    def _check(self, records):
        codes = [row.code for row in self.rows]
        for row in self.rows:
            require(codes.count(row.code) == 1, row.code, "a code stands twice")
            if row.record is None:
                continue
            require(row.record in records, row.code, f"there is no record {row.record}")
            if row.field is not None:
                records[row.record].field(row.field)
