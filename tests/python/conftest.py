"""What the tests of the package share: the sample network, generated ones, and the command beside the package."""

from __future__ import annotations

import csv
import io
import json
import os
import subprocess
from pathlib import Path
from typing import Any, Callable

import pytest

import dtsdb

ROOT = Path(__file__).resolve().parents[2]
SAMPLE = ROOT / "examples" / "ieee14"


@pytest.fixture(scope="session")
def sample() -> Path:
    return SAMPLE


@pytest.fixture
def network(sample: Path) -> dtsdb.Network:
    """The sample, opened anew for each test."""
    return dtsdb.open(sample, progress=False)


class Command:
    """The command dtsdb."""

    def __init__(self, program: str) -> None:
        self._program = program

    def run(self, *arguments: Any, codes: tuple[int, ...] = (0,)) -> str:
        environment = {**os.environ, "LC_ALL": "C.UTF-8"}
        ended = subprocess.run(
            [self._program, *map(str, arguments)], capture_output=True, text=True, env=environment, check=False
        )
        assert ended.returncode in codes, ended.stderr
        return ended.stdout

    def json(self, *arguments: Any, codes: tuple[int, ...] = (0,)) -> Any:
        return json.loads(self.run(*arguments, "--format", "json", codes=codes))

    def csv(self, *arguments: Any, codes: tuple[int, ...] = (0,)) -> list[dict[str, str]]:
        return list(csv.DictReader(io.StringIO(self.run(*arguments, "--format", "csv", codes=codes))))


@pytest.fixture(scope="session")
def command() -> Command:
    return Command(os.environ["DTSDB_COMMAND"])


@pytest.fixture(scope="session")
def generated(command: Command, tmp_path_factory: pytest.TempPathFactory) -> Callable[[int], Path]:
    """A random utility by its seed, as an object file."""
    folder = tmp_path_factory.mktemp("generated")

    def make(seed: int) -> Path:
        path = folder / f"g{seed}.obj"
        if not path.exists():
            command.run("generate", path, "--seed", seed, "--stations", 12)
        return path

    return make
