"""The examples in the documentation of the package and in its guide give what they show."""

from __future__ import annotations

import doctest
import importlib
from pathlib import Path

import pytest

from conftest import ROOT, SAMPLE

MODULES = ["dtsdb", "dtsdb.errors", "dtsdb.network", "dtsdb.realtime", "dtsdb.results", "dtsdb.table", "dtsdb.tables",
           "dtsdb.study", "dtsdb.text"]


@pytest.mark.parametrize("name", MODULES)
def test_module(name: str) -> None:
    module = importlib.import_module(name)
    failed, _ = doctest.testmod(module, extraglobs={"SAMPLE": str(SAMPLE)})
    assert failed == 0
    assert module.__doc__


def test_guide(tmp_path: Path, monkeypatch: pytest.MonkeyPatch) -> None:
    monkeypatch.chdir(ROOT)
    failed, tried = doctest.testfile(
        str(ROOT / "docs" / "python.md"), module_relative=False, globs={"tmp_path": str(tmp_path)},
        optionflags=doctest.ELLIPSIS,
    )
    assert tried > 10 and failed == 0


def test_everything_public_is_documented() -> None:
    import inspect

    import dtsdb

    lacking = []
    for name, thing in vars(dtsdb).items():
        if name.startswith("_") or not inspect.isclass(thing) or not thing.__module__.startswith("dtsdb"):
            continue
        if not thing.__doc__:
            lacking.append(name)
        for member, function in vars(thing).items():
            if inspect.isfunction(function) and not member.startswith("_") and not function.__doc__:
                lacking.append(f"{name}.{member}")
    assert lacking == []
