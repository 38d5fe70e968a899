"""Identities of strangers: what Python shows of them breaks no line, commands no terminal and turns no text."""

from __future__ import annotations

from pathlib import Path
from typing import Any

import pytest

import dtsdb

NAMES = ["a\nb", "a\rb", "\x1b[31mred\x1b[0m", "\x1b]0;title\x07", "\x7f", "\x9b31m", "\u202egnirts", "a\u2028b\u2029",
         "\ufeffmark", "'", '"', "\\n", "{0}", "%s%n", "<script>", "\U0001F50C", "e\u0301"]


@pytest.fixture(scope="module")
def names() -> list[str]:
    """What the encoding can hold; that can only be set before the first model of the process."""
    try:
        dtsdb.set_encoding("utf-8")
    except dtsdb.UsageError:
        return [name for name in NAMES if name.isascii()]
    return NAMES


@pytest.fixture
def strangers(names: list[str], tmp_path: Path) -> dtsdb.Network:
    """A model with a load of each name, and errors: their level is unknown."""
    model = tmp_path / "mo\u202edel\n"
    model.mkdir()
    rows = "".join(f"{quoted(name)},no level,{quoted(name)}\r\n" for name in names)
    (model / "LD.csv").write_bytes(("id,kv,nd\r\n" + rows).encode())
    return dtsdb.open(model, progress=False)


def quoted(text: str) -> str:
    return '"' + text.replace('"', '""') + '"'


def expect_calm(text: str) -> None:
    assert text.isprintable(), ascii(text)


def test_names_come_back(strangers: dtsdb.Network, names: list[str]) -> None:
    assert sorted(record["id"] for record in strangers["LD"]) == sorted(names)


def test_reprs_stand_on_one_line(strangers: dtsdb.Network, tmp_path: Path) -> None:
    shown: list[Any] = [strangers, strangers["LD"], *strangers["LD"], *strangers.validate()]
    for each in shown:
        expect_calm(repr(each))
    with dtsdb.realtime(tmp_path / "st\u202eore", write=True) as database:
        database.put("LD", id="a\nb")
        expect_calm(repr(database))
        expect_calm(repr(database["LD"]))


def test_messages_stand_on_one_line(strangers: dtsdb.Network) -> None:
    for name in NAMES:
        for call in (lambda: strangers["LD"].record("no " + name), lambda: strangers.switch(("off", "LD", "no " + name)),
                     lambda: strangers.topology(), lambda: strangers[name]):
            with pytest.raises(dtsdb.Error) as raised:
                call()
            expect_calm(str(raised.value))
