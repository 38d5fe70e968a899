"""Studies: the same result with any number of workers, after lost workers, and after a run that was stopped."""

from __future__ import annotations

import json
import os
import signal
import subprocess
import sys
import threading
import time
from pathlib import Path
from typing import Any, Iterator

import pytest

import dtsdb
from dtsdb import study


@pytest.fixture(scope="module")
def model() -> dtsdb.Network:
    from conftest import SAMPLE

    return dtsdb.open(SAMPLE)


@pytest.fixture(scope="module")
def cases(model: dtsdb.Network) -> list[dtsdb.Outage]:
    return dtsdb.sample_pairs(model.outages(), 120, seed=5)


@pytest.fixture(scope="module")
def expected(model: dtsdb.Network, cases: list[dtsdb.Outage]) -> dtsdb.Screening:
    return model.screen(cases)


class Stopped(Exception):
    """A run that is stopped midway."""


def stop_at(done: int) -> Any:
    def stop(so_far: int, _: int) -> None:
        if so_far >= done:
            raise Stopped

    return stop


def test_one_process(model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening) -> None:
    assert study.run(model, cases, batch=7) == expected
    assert study.run(model, "single") == model.screen()
    assert study.run(model, []).outages == []


def test_several_processes(model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening) -> None:
    calls: list[int] = []
    assert study.run(model, cases, jobs=2, batch=10, progress=lambda done, _: calls.append(done)) == expected
    assert calls == sorted(calls) and calls[-1] == len(cases)


def test_results_stream_in_the_order_of_the_cases(model: dtsdb.Network, cases: list[dtsdb.Outage]) -> None:
    streamed = study.stream(model, cases, jobs=2, batch=5)
    assert next(streamed).outage == cases[0]
    assert [result.outage for result in streamed] == cases[1:]
    assert [result.outage for result in study.stream(model, cases[:3] * 2, batch=4)] == cases[:3] * 2


def worker_processes() -> list[int]:
    """The processes of a pool, which have this one as their parent."""
    children = Path(f"/proc/{os.getpid()}/task/{os.getpid()}/children").read_text().split()
    return [int(child) for child in children if b"spawn_main" in Path(f"/proc/{child}/cmdline").read_bytes()]


def test_what_a_lost_process_had_in_hand_is_done_again(
    model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening
) -> None:
    killed: list[int] = []

    def kill(done: int, _: int) -> None:
        if not killed:
            killed.extend(worker_processes()[:1])
            os.kill(killed[0], signal.SIGKILL)

    assert study.run(model, cases, jobs=2, batch=5, progress=kill) == expected
    assert killed


def test_a_stopped_run_goes_on_from_its_file(
    model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening, tmp_path: Path
) -> None:
    file = tmp_path / "pairs.study"
    with pytest.raises(Stopped):
        study.run(model, cases, batch=10, file=file, progress=stop_at(50))
    lines = file.read_bytes()
    assert lines.count(b"\n") == 6
    file.write_bytes(lines[:-20])  # as if it had been stopped within a line
    done: list[int] = []
    assert study.run(model, cases, batch=10, file=file, progress=lambda so_far, _: done.append(so_far)) == expected
    assert done[0] == 50, "four batches were there, and the fifth was done again"
    again: list[int] = []
    assert study.run(model, cases, file=file, progress=lambda so_far, _: again.append(so_far)) == expected
    assert again == []


def test_a_killed_run_goes_on_from_its_file(
    model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening, tmp_path: Path, sample: Path
) -> None:
    file = tmp_path / "pairs.study"
    code = f"""
import dtsdb
if __name__ == "__main__":
    model = dtsdb.open({str(sample)!r})
    cases = dtsdb.sample_pairs(model.outages(), 120, seed=5)
    dtsdb.study.run(model, cases, jobs=2, batch=3, file={str(file)!r})
"""
    program = tmp_path / "study.py"
    program.write_text(code, encoding="utf-8")
    running = subprocess.Popen([sys.executable, str(program)])
    while running.poll() is None and (not file.exists() or file.read_bytes().count(b"\n") < 3):
        time.sleep(0.002)
    running.kill()
    running.wait()
    assert 3 <= file.read_bytes().count(b"\n")
    assert study.run(model, cases, file=file) == expected


def test_a_file_of_another_study_is_refused(model: dtsdb.Network, cases: list[dtsdb.Outage], tmp_path: Path) -> None:
    file = tmp_path / "a.study"
    study.run(model, cases[:4], file=file)
    with pytest.raises(dtsdb.UsageError, match="of another study"):
        study.run(model, cases[:5], file=file)
    with model.switch("out LN Longtan-Shiqiao"):
        with pytest.raises(dtsdb.UsageError, match="of another study"):
            study.run(model, cases[:4], file=file)
    header, _ = file.read_text(encoding="utf-8").split("\n", 1)
    for content in ({"first": 2, "results": [[]]}, {"first": "x"}, {"results": []}, {"first": 3, "results": None}):
        file.write_text(header + "\n" + json.dumps(content) + "\n", encoding="utf-8")
        with pytest.raises(dtsdb.FileError, match="damaged"):
            study.run(model, cases[:4], file=file)
    with pytest.raises(dtsdb.FileError):
        study.run(model, cases[:4], file=tmp_path / "no" / "folder")


def test_what_cannot_be_run(model: dtsdb.Network) -> None:
    for arguments in ({"jobs": 0}, {"batch": 0}, {"cases": "triples"}, {"cases": [[("LN", "nobody")]]}):
        with pytest.raises(dtsdb.Error):
            study.run(model, **arguments)  # type: ignore[arg-type]
    with pytest.raises(dtsdb.UnknownComponentError):
        study.run(model, [[("LN", "nobody")]], jobs=2)


@pytest.fixture(scope="module")
def cluster() -> Iterator[Any]:
    """Two worker processes on this machine, as a cluster has them on many."""
    from distributed import Client, LocalCluster

    with LocalCluster(
        n_workers=2, threads_per_worker=1, processes=True, dashboard_address=None, silence_logs=50
    ) as local, Client(local) as client:
        yield client


def test_a_cluster(cluster: Any, model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening) -> None:
    assert study.run(model, cases, client=cluster, batch=10) == expected


def test_a_cluster_that_loses_a_worker(
    cluster: Any, model: dtsdb.Network, cases: list[dtsdb.Outage], expected: dtsdb.Screening
) -> None:
    workers = {address: info["pid"] for address, info in cluster.run(_who).items()}
    killed = threading.Event()

    def kill(done: int, _: int) -> None:
        if not killed.is_set():
            killed.set()
            os.kill(next(iter(workers.values())), signal.SIGKILL)

    assert study.run(model, cases, client=cluster, batch=4, progress=kill) == expected
    assert killed.is_set()


def _who() -> dict[str, int]:
    return {"pid": os.getpid()}
