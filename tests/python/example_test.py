"""The study in examples/ prints what stands beside it."""

from __future__ import annotations

import subprocess
import sys
from pathlib import Path

from conftest import ROOT

STUDY = ROOT / "examples" / "python-study"


def run(folder: Path, *arguments: str) -> subprocess.CompletedProcess[str]:
    return subprocess.run(
        [sys.executable, str(STUDY / "study.py"), *arguments], cwd=folder, capture_output=True, text=True, check=False
    )


def test_the_study_of_the_sample(tmp_path: Path) -> None:
    ended = run(tmp_path)
    assert (ended.returncode, ended.stderr) == (0, "")
    assert ended.stdout == (STUDY / "result.txt").read_text(encoding="utf-8")


def test_a_model_that_is_not_there(tmp_path: Path) -> None:
    ended = run(tmp_path, "nothing.obj")
    assert ended.returncode == 1
    assert ended.stderr.endswith("dtsdb.errors.FileError: nothing.obj: there is no such file or folder\n")
