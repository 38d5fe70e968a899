"""Nothing that a program calls, with whatever arguments and in whatever order, ends the interpreter.

The calls run in a process of their own: a crash shows as its exit code.
"""

from __future__ import annotations

import copy
import os
import pickle
import random
import subprocess
import sys
from pathlib import Path

import pytest

import dtsdb
from dtsdb import _core

STRANGE = [None, -1, 0, 2**70, 1.5, float("nan"), "", "x\0y", "\udc80", "石" * 1000, b"\xff", [], {}, (), object(), True,
           [[("LN", "x")]], [None], ["open CB x"], [("LN",)], lambda *_: None]


def test_use_after_close(network: dtsdb.Network) -> None:
    switched = network.switch("out LN Longtan-Shiqiao")
    edits = network.edit()
    table = network["LD"]
    column = table["p"]
    network.close()
    network.close()
    assert network.closed
    calls = [network.validate, network.topology, network.flows, network.screen, network.edit, network.image,
             network.copy, network.outages, lambda: network.good, lambda: network.save("x"), lambda: network.draw("Baiyun"),
             lambda: network.switch(), switched.undo, switched.effect, edits.commit, lambda: table["p"], table.columns,
             lambda: len(table), lambda: table.record(0), lambda: table.find("x")]
    for call in calls:
        with pytest.raises(dtsdb.UsageError, match="closed") as caught:
            call()
        assert caught.value.code == "USAGE"
    assert column.sum() > 0
    switched.__exit__()


def test_closing_within_a_with(sample: Path) -> None:
    network = dtsdb.open(sample)
    with network.switch("out LN Longtan-Shiqiao"):
        network.close()


def test_foreign_objects_are_refused() -> None:
    for made in (None, 7, object()):
        with pytest.raises((dtsdb.UsageError, TypeError)):
            dtsdb.Network(made)  # type: ignore[arg-type]
        with pytest.raises(TypeError):
            _core.begin_edits(made)  # type: ignore[arg-type]
    base = _core.Network.__mro__[1]
    for make in (base, lambda: base.__new__(base), type("Derived", (base,), {})):
        with pytest.raises(TypeError):
            make()
    for kind in (_core.Network, _core.Mark, _core.EditSession, _core.Realtime):
        for make in (kind, lambda: kind.__new__(kind), lambda: base.__new__(kind), lambda: object.__new__(kind),
                     lambda: type("Derived", (kind,), {})):
            with pytest.raises(TypeError):
                make()


def test_parts_of_a_network_cannot_be_copied(network: dtsdb.Network) -> None:
    for part in (network._core, network.switch()._mark, network.edit()._session):
        for module in (copy.copy, pickle.dumps):
            with pytest.raises(TypeError):
                module(part)


def test_marks_of_other_networks(sample: Path, generated) -> None:  # type: ignore[no-untyped-def]
    """The mark of one network, used on another one: refused or done, and never out of bounds."""
    one, other = dtsdb.open(sample)._core, dtsdb.open(generated(1))._core
    for back, network in ((one.mark(), other), (other.mark(), one)):
        with pytest.raises(dtsdb.UsageError, match="another model"):
            network.go_back(back)
        with pytest.raises(dtsdb.UsageError, match="another model"):
            network.effect_since(back)


def strange_calls(seed: int, place: str, sample: str) -> None:
    """Calls everything with strange arguments, in a random order."""
    choose = random.Random(seed)
    network = dtsdb.open(sample)
    database = dtsdb.realtime(place, write=True)
    edits = network.edit()
    targets = [network, network["CB"], network["TPL"], network._core, edits, edits._session, database, database._core,
               network.switch(), dtsdb, _core]
    skipped = {"close", "follow", "set_encoding", "realtime", "save"}
    done = 0
    for _ in range(1500):
        target = choose.choice(targets)
        names = [name for name in dir(target) if not name.startswith("_") and name not in skipped]
        call = getattr(target, choose.choice(names))
        if not callable(call) or isinstance(call, type) and issubclass(call, BaseException):
            continue
        arguments = [choose.choice(STRANGE) for _ in range(choose.randrange(5))]
        try:
            call(*arguments)
            done += 1
        except Exception:  # noqa: BLE001
            continue
    assert dtsdb.open(sample).topology().islands
    print("done", done > 0)


@pytest.mark.parametrize("seed", range(4))
def test_strange_arguments(seed: int, tmp_path: Path, sample: Path) -> None:
    code = f"import robustness_test; robustness_test.strange_calls({seed}, {str(tmp_path / 'grid')!r}, {str(sample)!r})"
    path = os.pathsep.join([str(Path(__file__).parent), os.environ.get("PYTHONPATH", "")])
    ended = subprocess.run(
        [sys.executable, "-c", code], cwd=tmp_path, capture_output=True, text=True, timeout=300, check=False,
        env={**os.environ, "PYTHONPATH": path},
    )
    assert ended.returncode == 0, ended.stderr
    assert ended.stdout.endswith("done True\n")


def test_damaged_images(network: dtsdb.Network) -> None:
    image = bytearray(network.image())
    choose = random.Random(3)
    for _ in range(60):
        damaged = bytearray(image[: choose.randrange(len(image))] if choose.random() < 0.3 else image)
        for _ in range(choose.randrange(1, 20)):
            damaged[choose.randrange(len(damaged))] = choose.randrange(256)
        try:
            other = dtsdb.from_image(bytes(damaged))
            other.validate()
            other.topology()
            other["CB"].columns()
        except dtsdb.Error:
            continue
