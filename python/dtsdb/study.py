"""Studies: many outage cases worked through in several processes, on one machine or on many.

    cases = dtsdb.all_pairs(network.outages(["LN", "XF"]))
    screening = dtsdb.study.run(network, cases, jobs=4, file="pairs.study")

The model travels once to each worker, the cases follow in batches. What a lost worker had in hand is done again. With a
file, a run that was stopped midway goes on where it was. `client` takes a Dask client in the place of `jobs`; its
workers need this package.

A script that uses `jobs` needs the usual `if __name__ == "__main__":`, since the processes import it.
"""

from __future__ import annotations

import hashlib
import json
import multiprocessing
import os
import threading
import uuid
from concurrent.futures import FIRST_COMPLETED, CancelledError, Executor, Future, ProcessPoolExecutor, wait
from concurrent.futures.process import BrokenProcessPool
from contextlib import contextmanager
from typing import Any, Callable, Iterable, Iterator, Literal, Optional, Sequence, TextIO, Tuple, Union, cast

from dtsdb import _core
from dtsdb.errors import FileError, InternalError, UsageError
from dtsdb.network import Network, Path, from_image, open as open_model
from dtsdb.progress import Progress, Shown
from dtsdb.results import (
    Component,
    IslandLoss,
    IslandPart,
    Outage,
    OutageResult,
    Screening,
    Supplied,
    Totals,
    order_of_loss,
)

Cases = Union[Literal["single", "pairs"], Iterable[Sequence[Tuple[str, str]]]]
"""Outages: "single" for those of all components in service, "pairs" for all pairs of these, or a list of your own."""

MOST_LOSSES = 3
"""So many times in a row workers may be lost before anything is finished."""


def run(
    model: Union[Network, Path],
    cases: Cases = "single",
    *,
    jobs: int = 1,
    client: Any = None,
    batch: int = 1000,
    file: Optional[Path] = None,
    progress: Progress = None,
) -> Screening:
    """Works through outage cases and returns what `Network.screen` would, to the last digit.

    `model` is a network, or what `dtsdb.open` takes. It is validated where it isn't good, and the cases start from the
    state that it is in. `jobs` is the number of processes on this machine; with 1 all is done in this one. With
    `client`, a `distributed.Client`, its workers do the work.

    `batch` cases go to a worker at once. `file` keeps what is finished, and a later call with the same model and the
    same cases goes on from there; `UsageError` is raised when the file is of another study. `progress` is called with
    the cases done and all; what it raises ends the run, and what is finished stays in the file.
    """
    network = model if isinstance(model, Network) else open_model(model)
    tried = _cases(network, cases)
    first: list[Screening] = []
    with Shown(progress, "cases") as report:
        found = list(_stream(network, tried, jobs, client, batch, file, report, first.append))
    if not first:  # all came from the file
        first.append(network.screen([], progress=False))
    return Screening(sorted(found, key=order_of_loss), first[0].findings, first[0].left_out)


def stream(
    model: Union[Network, Path],
    cases: Cases = "single",
    *,
    jobs: int = 1,
    client: Any = None,
    batch: int = 1000,
    file: Optional[Path] = None,
    progress: Progress = False,
) -> Iterator[OutageResult]:
    """The same as `run`, result by result in the order of the cases, each as soon as those in front of it are there."""
    network = model if isinstance(model, Network) else open_model(model)
    tried = _cases(network, cases)
    with Shown(progress, "cases") as report:
        yield from _stream(network, tried, jobs, client, batch, file, report, lambda _: None)


# A batch of cases on a worker


_held = threading.local()  # the model of this thread, and which one it is


def _work(key: str, image: bytes, name: str, cases: list[Outage]) -> Screening:
    """What a worker does. It keeps the model for the next batch."""
    if getattr(_held, "key", None) != key:
        _held.network = from_image(image, name)
        _held.key = key
    screening: Screening = _held.network.screen(cases, progress=False)
    return screening


_given: Tuple[str, bytes, str] = ("", b"", "")  # what a process of a pool was started with


def _start(key: str, image: bytes, name: str) -> None:
    global _given
    _given = key, image, name


def _work_in_pool(cases: list[Outage]) -> Screening:
    return _work(*_given, cases)


# Where the work is done


Submit = Callable[[list[Outage]], "Future[Screening]"]
Note = Callable[[Screening], None]


class _Lost(Exception):
    """Workers were lost, and with them what they had in hand."""


@contextmanager
def _here(network: Network) -> Iterator[Submit]:
    def submit(cases: list[Outage]) -> Future[Screening]:
        future: Future[Screening] = Future()
        future.set_result(network.screen(cases, progress=False))
        return future

    yield submit


@contextmanager
def _in_processes(network: Network, jobs: int) -> Iterator[Submit]:
    given = (uuid.uuid4().hex, network.image(), network.name)
    pool: Executor = ProcessPoolExecutor(jobs, multiprocessing.get_context("spawn"), _start, given)
    try:
        yield lambda cases: pool.submit(_work_in_pool, cases)
    finally:
        pool.shutdown(wait=True, cancel_futures=True)


def _same(image: bytes) -> bytes:
    return image


@contextmanager
def _on_cluster(network: Network, client: Any) -> Iterator[Submit]:
    # The image is the result of a task, so that the cluster makes it anew when all workers that have it are lost.
    image = client.submit(_same, network.image(), pure=False)
    executor = client.get_executor(pure=False)
    key = uuid.uuid4().hex
    try:
        yield lambda cases: cast("Future[Screening]", executor.submit(_work, key, image, network.name, cases))
    finally:
        executor.shutdown(wait=False)
        image.release()


@contextmanager
def _workers(network: Network, jobs: int, client: Any) -> Iterator[Submit]:
    if client is not None:
        with _on_cluster(network, client) as submit:
            yield submit
    elif jobs == 1:
        with _here(network) as submit:
            yield submit
    else:
        with _in_processes(network, jobs) as submit:
            yield submit


def _width(jobs: int, client: Any) -> int:
    """How many batches are under way at once."""
    if client is None:
        return 1 if jobs == 1 else 2 * jobs
    return max(2, 2 * int(sum(client.nthreads().values())))


# The run


def _cases(network: Network, cases: Cases) -> list[Outage]:
    if isinstance(cases, str):
        single = network.outages()
        if cases == "single":
            return single
        if cases == "pairs":
            return _core.all_pairs(single)
        raise UsageError(f"cases are 'single', 'pairs' or a list of outages, not {cases!r}", "USAGE")
    return [tuple(Component(*component) for component in outage) for outage in cases]


def _stream(
    network: Network,
    cases: list[Outage],
    jobs: int,
    client: Any,
    batch: int,
    file: Optional[Path],
    report: Optional[Callable[[int, int], None]],
    note: Note,
) -> Iterator[OutageResult]:
    if jobs < 1 or batch < 1:
        raise UsageError("jobs and batch are at least 1", "USAGE")
    if not network.good:
        network.validate()
    done: dict[int, OutageResult] = {}
    with _Record(file, network, cases) as record:
        done.update(record.finished)
        waiting = _batches(cases, done, batch)
        given = 0
        for first, results in _finished(network, cases, waiting, jobs, client, note):
            done.update(enumerate(results, first))
            record.add(first, results)
            if report is not None:
                report(given + len(done), len(cases))
            while given in done:  # what has been given isn't kept
                yield done.pop(given)
                given += 1
        while given in done:
            yield done.pop(given)
            given += 1


def _batches(cases: list[Outage], done: dict[int, OutageResult], size: int) -> list[range]:
    """The cases that aren't done, as runs of at most `size`."""
    batches: list[range] = []
    for number in range(len(cases)):
        if number in done:
            continue
        if batches and batches[-1].stop == number and len(batches[-1]) < size:
            batches[-1] = range(batches[-1].start, number + 1)
        else:
            batches.append(range(number, number + 1))
    return batches


def _finished(
    network: Network,
    cases: list[Outage],
    waiting: list[range],
    jobs: int,
    client: Any,
    note: Note,
) -> Iterator[Tuple[int, list[OutageResult]]]:
    """Works off the batches and yields each as it is finished: its first case, and the results in their order."""
    waiting = waiting[::-1]  # the next one stands last
    losses = 0
    while waiting:
        under_way: dict[Future[Screening], range] = {}
        try:
            with _workers(network, jobs, client) as submit:
                while waiting or under_way:
                    while waiting and len(under_way) < _width(jobs, client):
                        numbers = waiting.pop()
                        under_way[_submitted(submit, [cases[i] for i in numbers], numbers, waiting)] = numbers
                    for future in wait(under_way, return_when=FIRST_COMPLETED).done:
                        screening = _result(future)
                        numbers = under_way.pop(future)
                        losses = 0
                        note(screening)
                        yield numbers.start, _in_order(screening, [cases[i] for i in numbers])
        except _Lost as lost:
            losses += 1
            if losses > MOST_LOSSES:
                raise InternalError(
                    f"{network.name}: workers are lost again and again, and nothing is finished: {lost.__cause__}",
                    "INTERNAL",
                    network.name,
                ) from lost
            waiting += sorted(under_way.values(), key=lambda numbers: -numbers.start)


def _submitted(submit: Submit, cases: list[Outage], numbers: range, waiting: list[range]) -> Future[Screening]:
    try:
        return submit(cases)
    except BrokenProcessPool as broken:
        waiting.append(numbers)
        raise _Lost from broken


def _result(future: Future[Screening]) -> Screening:
    try:
        return future.result()
    except (BrokenProcessPool, CancelledError) as broken:
        raise _Lost from broken
    except Exception as error:
        if type(error).__name__ == "KilledWorker":  # of Dask, which needn't be there
            raise _Lost from error
        raise


def _in_order(screening: Screening, cases: list[Outage]) -> list[OutageResult]:
    """The results in the order of the cases; a screening sorts them by what is lost."""
    by_outage: dict[Outage, OutageResult] = {result.outage: result for result in screening.outages}
    return [by_outage[case] for case in cases]


# The file


class _Record:
    """The file of a run: a line of JSON for the study, and one for each batch that is finished."""

    FORMAT = "dtsdb study 1"

    def __init__(self, path: Optional[Path], network: Network, cases: list[Outage]) -> None:
        self._path = path
        self._file: Optional[TextIO] = None
        self.finished: dict[int, OutageResult] = {}
        if path is None:
            return
        header = {"format": self.FORMAT, "model": _fingerprint(network), "cases": _digest(json.dumps(cases).encode())}
        try:
            end = self._read(header, len(cases))
            self._file = _open_behind(path, end)
            if end == 0:
                self._write(header)
        except OSError as error:
            raise FileError(f"{os.fspath(path)}: {error.strerror}", "FILE", os.fspath(path)) from error

    def __enter__(self) -> _Record:
        return self

    def __exit__(self, *_: object) -> None:
        if self._file is not None:
            self._file.close()

    def add(self, first: int, results: list[OutageResult]) -> None:
        if self._file is not None:
            self._write({"first": first, "results": results})

    def _write(self, line: dict[str, Any]) -> None:
        assert self._file is not None
        self._file.write(json.dumps(line, ensure_ascii=False) + "\n")
        self._file.flush()

    def _read(self, header: dict[str, Any], count: int) -> int:
        """Takes what is finished and returns how many bytes of the file are whole lines."""
        assert self._path is not None
        if not os.path.exists(self._path):
            return 0
        end = 0
        with open(self._path, "rb") as file:
            for line in file:
                content = _parsed(line)
                if content is None:  # the run was stopped while it wrote
                    break
                if end == 0 and content != header:
                    raise self._foreign()
                if end > 0:
                    self._take(content, count)
                end += len(line)
        return end

    def _take(self, content: dict[str, Any], count: int) -> None:
        try:
            results = [_outage_result(result) for result in content["results"]]
            first = int(content["first"])
        except (KeyError, TypeError, ValueError) as error:
            raise self._damaged() from error
        if first < 0 or first + len(results) > count:
            raise self._damaged()
        self.finished.update(enumerate(results, first))

    def _foreign(self) -> UsageError:
        place = os.fspath(self._path or "")
        why = "the file is of another study: model, states or cases differ; remove it or choose another one"
        return UsageError(f"{place}: {why}", "USAGE", place)

    def _damaged(self) -> FileError:
        place = os.fspath(self._path or "")
        return FileError(f"{place}: the file is damaged; remove it", "FILE", place)


def _open_behind(path: Path, end: int) -> TextIO:
    """The file to write behind its first `end` bytes, the rest cut off."""
    with open(path, "ab") as file:
        file.truncate(end)
    return open(path, "a", encoding="utf-8", newline="")


def _parsed(line: bytes) -> Optional[dict[str, Any]]:
    """A line that was written to its end; None for any other."""
    if not line.endswith(b"\n"):
        return None
    try:
        content = json.loads(line)
    except ValueError:
        return None
    return content if isinstance(content, dict) else None


def _outage_result(values: Any) -> OutageResult:
    """A result as it was written: named tuples become lists."""
    outage, lost, totals, islands, *rest = values
    return OutageResult(
        tuple(Component(*component) for component in outage),
        [Supplied(*thing) for thing in lost],
        Totals(*totals),
        [
            IslandLoss(island, reference, [IslandPart(*part) for part in parts], lost_reference)
            for island, reference, parts, lost_reference in islands
        ],
        *rest,
    )


def _digest(content: bytes) -> str:
    return hashlib.sha256(content).hexdigest()


_RESULTS = {"topology", "breaker flow"}  # who writes what follows from the rest
_MADE = {"BS", "BSL", "CHND", "GLOBAL", "ISLAND", "TPL", "TPTRACE"}  # tables that follow, or have a time in them


def _fingerprint(network: Network) -> str:
    """What a model and its states come to, whatever topology runs it has had before."""
    settled = network.copy()
    settled.topology()
    whole = hashlib.sha256()
    for name, table in settled.items():
        columns = table.columns() if name not in _MADE else {}
        for field in table.fields:
            if field.name not in columns or set(field.writers.split(", ")) <= _RESULTS:
                continue
            column = columns[field.name]
            whole.update(f"{name} {field.name} {len(column)}\n".encode())
            whole.update("\0".join(column).encode() if column.dtype == object else column.tobytes())
    return whole.hexdigest()
