"""The stubs and type hints: mypy finds nothing in the package, its tests' and a user's programs."""

from __future__ import annotations

import inspect
import subprocess
import sys
from pathlib import Path

import pytest

import dtsdb
from conftest import ROOT
from dtsdb import _core

PACKAGE = ROOT / "python" / "dtsdb"


@pytest.fixture(scope="module")
def cache(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """What mypy has found out about the libraries."""
    return tmp_path_factory.mktemp("mypy")


def mypy(folder: Path, *arguments: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run(
        [sys.executable, "-m", "mypy", "--cache-dir", str(folder), "--config-file", "",
         "--follow-imports=silent", "--ignore-missing-imports", *arguments],
        cwd=ROOT / "python", capture_output=True, text=True, check=False,
    )


def test_the_package_is_typed(cache: Path) -> None:
    found = mypy(cache, "--strict", "-p", "dtsdb")
    assert found.returncode == 0, found.stdout + found.stderr


def test_a_users_program_is_checked_by_field(tmp_path: Path, cache: Path) -> None:
    program = tmp_path / "program.py"
    program.write_text(
        "import dtsdb\n"
        'network = dtsdb.open("grid.zip")\n'
        'reveal_type(network["LD"])\n'
        'reveal_type(network["LD"]["p"])\n'
        'reveal_type(network["CB"]["id"])\n'
        'reveal_type(network.topology().islands[0].counts.loads)\n'
        'network.draw(7)\n',
        encoding="utf-8",
    )
    found = mypy(cache, str(program)).stdout.splitlines()
    revealed = [line.split("Revealed type is ")[1] for line in found if "Revealed type" in line]
    assert revealed[0] == '"dtsdb.tables.LDTable"'
    assert "floating" in revealed[1] and "32Bit" in revealed[1]
    assert "object_" in revealed[2]
    assert revealed[3] == '"builtins.int"'
    assert any("program.py:7" in line and "error" in line for line in found)


def test_the_stub_of_the_core_names_what_the_core_has() -> None:
    import ast

    described = ast.parse((PACKAGE / "_core.pyi").read_text(encoding="utf-8"))
    for node in described.body:
        if isinstance(node, ast.FunctionDef):
            assert callable(getattr(_core, node.name))
        if isinstance(node, ast.ClassDef):
            members = {item.name for item in node.body if isinstance(item, ast.FunctionDef)}
            actual = {name for name, value in vars(getattr(_core, node.name)).items() if inspect.isroutine(value)}
            assert members <= actual | {"__init__"}
            assert {name for name in actual if not name.startswith("_")} <= members
    names = {getattr(node, "name", None) for node in described.body}
    assert {name for name in dir(_core) if not name.startswith("_")} <= names | {"version"}


def test_the_generated_stub_has_every_table_and_field() -> None:
    text = (PACKAGE / "tables.pyi").read_text(encoding="utf-8")
    for name, info in dtsdb.table.INFOS.items():
        assert f"class {name}Table(Table):" in text
        section = text.split(f"class {name}Table(Table):")[1].split("\nclass ")[0]
        for field in info.fields:
            assert f'"{field.name}"' in section and f"    {field.name}: " in section
