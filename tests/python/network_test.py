"""Opening, saving, switching and screening; progress; what is raised."""

from __future__ import annotations

import io
import pickle
import subprocess
import sys
import threading
from pathlib import Path

import numpy as np
import pytest

import dtsdb
from dtsdb.progress import TerminalLine


def test_opens_every_form(sample: Path, tmp_path: Path) -> None:
    network = dtsdb.open(sample)
    network.validate()
    for name in ("a.obj", "tables", "a.xiidm", "rtdb:" + str(tmp_path / "live")):
        place = name if name.startswith("rtdb:") else str(tmp_path / name)
        network.save(place)
        assert [island.reference for island in dtsdb.open(place).topology().islands] == ["Longtan-G1"], name
    network.save(tmp_path / "without-extension", form="object")
    assert (tmp_path / "without-extension").is_file()
    coast = dtsdb.open(sample.parent / "coast", ids="mrid", ties="unit", merge_retained=True)
    assert coast.topology().islands


def test_what_cannot_be_opened_or_saved(tmp_path: Path, network: dtsdb.Network) -> None:
    with pytest.raises(dtsdb.FileError) as caught:
        dtsdb.open(tmp_path / "nothing.obj")
    assert caught.value.code == "FILE" and caught.value.place == str(tmp_path / "nothing.obj")
    (tmp_path / "damaged.obj").write_bytes(b"no model at all")
    with pytest.raises(dtsdb.FileError):
        dtsdb.open(tmp_path / "damaged.obj")
    with pytest.raises(dtsdb.FileError):
        network.save(tmp_path / "no" / "such" / "folder" / "x.obj")
    with pytest.raises(dtsdb.UsageError, match="there is no form"):
        network.save(tmp_path / "x", form="paper")  # type: ignore[arg-type]
    with pytest.raises(dtsdb.UsageError):
        dtsdb.open(tmp_path, ids="numbers")  # type: ignore[arg-type]
    with pytest.raises(dtsdb.FileError):
        dtsdb.open("rtdb:" + str(tmp_path / "none"))
    assert issubclass(dtsdb.FileError, dtsdb.Error)


def test_switching_undoes_itself(network: dtsdb.Network) -> None:
    topology = network.topology()
    with network.switch("out LN Longtan-Shiqiao", ("open", "CB", "Baiyun-132-C1-Q0")) as switched:
        assert switched.outcome.run.kind == "incremental" or switched.outcome.run.text.startswith("full")
        assert network["CB"].record("Baiyun-132-C1-Q0")["flags"] & 0x100
        with network.switch("out LN Longtan-Dongshan") as inner:
            assert inner.effect().lost == network_effect(network, inner)
        assert network["LN"].record("Longtan-Dongshan")["status"] == 0
    after = network.topology()
    assert after.nodes == topology.nodes and after.dead == topology.dead
    assert switched.undo() is None
    with pytest.raises(dtsdb.UsageError, match="undone"):
        switched.effect()


def network_effect(network: dtsdb.Network, switched: dtsdb.Switched) -> list[dtsdb.Supplied]:
    """The effect, asked for a second time."""
    return switched.effect().lost


def test_switching_is_undone_when_an_exception_leaves(network: dtsdb.Network) -> None:
    with pytest.raises(RuntimeError, match="mine"):
        with network.switch("out LN Longtan-Shiqiao"):
            raise RuntimeError("mine")
    assert network["LN"].record("Longtan-Shiqiao")["status"] == 0


def test_the_effect_of_switching(network: dtsdb.Network) -> None:
    with network.switch("open CB Hekou-132-E07-Q0") as switched:
        lost = switched.effect().lost
    alone = network.screen([[("CB", "Hekou-132-E07-Q0")]]).outages[0]
    assert lost == alone.lost and alone.has_effect
    assert [thing.identity for thing in lost if thing.table == "LD"] == ["Hekou-L1"]


def test_what_cannot_be_switched(network: dtsdb.Network) -> None:
    with pytest.raises(dtsdb.UnknownComponentError, match="did you mean") as caught:
        network.switch("out LN Longtan-Shiqiao", "out LN Longtan-Shiqia")
    assert caught.value.place == "Longtan-Shiqia"
    assert network["LN"].record("Longtan-Shiqiao")["status"] == 0
    for event in ("fly LN x", "", "open", ("open", "CB"), "open CB a b"):
        with pytest.raises(dtsdb.UsageError):
            network.switch(event)


def test_screening_in_threads_and_in_words(network: dtsdb.Network) -> None:
    one = network.screen(progress=False)
    assert network.screen(jobs=3) == one
    assert network.screen(network.outages()) == one
    assert network.screen([("LN", "Hekou-Taohua")]).outages[0].text == "LN Hekou-Taohua"
    assert network.screen([]).outages == []
    for outages in ([[]], [[("LN", "nobody")]], [[("LD", "Baiyun-L1")]]):
        with pytest.raises(dtsdb.Error):
            network.screen(outages)
    for jobs in (0, -1, 1000):
        with pytest.raises((dtsdb.UsageError, TypeError)):
            network.screen(jobs=jobs)


def test_pairs(network: dtsdb.Network) -> None:
    lines = network.outages(["LN"])
    pairs = dtsdb.all_pairs(lines)
    assert len(pairs) == len(lines) * (len(lines) - 1) // 2
    assert pairs[0] == (*lines[0], *lines[1])
    assert len(dtsdb.sample_pairs(lines, 5)) == 5
    assert dtsdb.sample_pairs(lines, 5, seed=2) == dtsdb.sample_pairs(lines, 5, seed=2)


def test_progress_is_reported_and_can_end_the_work(network: dtsdb.Network, sample: Path) -> None:
    calls: list[tuple[int, int]] = []
    outages = network.outages()
    for jobs in (1, 3):
        calls.clear()
        network.screen(outages, jobs=jobs, progress=lambda done, total: calls.append((done, total)))
        assert calls[-1] == (len(outages), len(outages))
        assert calls.count(calls[-1]) == 1
    read: list[tuple[int, int]] = []
    dtsdb.open(sample, progress=lambda done, total: read.append((done, total)))
    assert read and read[-1][0] == read[-1][1]

    class Enough(Exception):
        pass

    def end(done: int, total: int) -> None:
        raise Enough(done)

    with pytest.raises(Enough) as caught:
        network.screen(outages, progress=end)
    assert caught.value.args[0] < len(outages)
    with pytest.raises(Enough):
        dtsdb.open(sample, progress=end)


def test_a_callback_cannot_use_the_model_that_waits_for_it(network: dtsdb.Network) -> None:
    def use(done: int, total: int) -> None:
        network.topology()

    with pytest.raises(dtsdb.UsageError, match="at work"):
        network.screen(progress=use)
    assert network.topology().islands


def test_an_interrupt_ends_a_screening(sample: Path) -> None:
    code = f"""
import os, signal, threading
import dtsdb
network = dtsdb.open({str(sample)!r})
cases = dtsdb.all_pairs(network.outages(["CB"])) * 20
threading.Timer(0.1, lambda: os.kill(os.getpid(), signal.SIGINT)).start()
try:
    network.screen(cases, progress=False)
except KeyboardInterrupt:
    print("interrupted", len(network.topology().islands))
"""
    ended = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, check=False)
    assert (ended.stdout, ended.stderr) == ("interrupted 1\n", "")


class Terminal(io.StringIO):
    def isatty(self) -> bool:
        return True


def test_the_line_on_a_terminal_appears_after_a_while_and_goes() -> None:
    terminal = Terminal()
    with TerminalLine("outages", terminal, quiet=0) as line:
        line(5, 10)
    assert terminal.getvalue() == "\r\x1b[K5 of 10 outages, 50 %\r\x1b[K"
    for stream, quiet in ((Terminal(), 60.0), (io.StringIO(), 0.0)):
        with TerminalLine("outages", stream, quiet) as line:
            line(5, 10)
        assert stream.getvalue() == ""


def test_other_threads_run_meanwhile(network: dtsdb.Network) -> None:
    turns = []
    stop = threading.Event()

    def count() -> None:
        while not stop.wait(0.001):
            turns.append(1)

    other = threading.Thread(target=count)
    other.start()
    network.screen(dtsdb.all_pairs(network.outages(["LN", "XF"])), progress=False)
    stop.set()
    other.join()
    assert len(turns) > 5


def test_threads_share_a_network(network: dtsdb.Network) -> None:
    raised = []

    def work(number: int) -> None:
        try:
            for _ in range(5):
                [network.topology, network.flows, network.validate, lambda: network.draw("Baiyun")][number % 4]()
        except Exception as error:  # noqa: BLE001
            raised.append(error)

    threads = [threading.Thread(target=work, args=(number,)) for number in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert raised == []


def test_networks_and_results_travel(network: dtsdb.Network) -> None:
    network.topology()
    other = pickle.loads(pickle.dumps(network))
    assert other.topology() == network.topology()
    assert other.name == network.name
    for result in (network.validate(), network.topology(), network.flows(), network.screen()):
        assert pickle.loads(pickle.dumps(result)) == result
    error = pickle.loads(pickle.dumps(dtsdb.FileError("a line", "FILE", "there")))
    assert (str(error), error.code, error.place) == ("a line", "FILE", "there")
    copy = network.copy()
    copy.switch("out LN Longtan-Shiqiao")
    assert network["LN"].record("Longtan-Shiqiao")["status"] == 0
    with pytest.raises(dtsdb.UsageError, match="no model"):
        dtsdb.from_image(b"\x00\x01\x02")


def test_faulty_models_are_refused(network: dtsdb.Network, tmp_path: Path, sample: Path) -> None:
    for table in sample.glob("*.csv"):
        lines = table.read_text(encoding="utf-8").splitlines()
        if table.name == "CB.csv":
            cells = lines[1].split(",")
            cells[2] = ""
            lines[1] = ",".join(cells)
        (tmp_path / table.name).write_text("\n".join(lines) + "\n", encoding="utf-8")
    faulty = dtsdb.open(tmp_path)
    found = faulty.validate()
    assert not found.good and found.errors == sum(finding.severity == "error" for finding in found)
    chinese = faulty.validate(language="zh")
    assert [finding.code for finding in chinese] == [finding.code for finding in found]
    assert chinese.findings[0].text != found.findings[0].text
    calls = [faulty.topology, faulty.flows, faulty.screen, faulty.edit, lambda: faulty.draw("Baiyun"),
             lambda: faulty.switch("open CB x")]
    for call in calls:
        with pytest.raises(dtsdb.FaultyModelError) as caught:
            call()
        assert caught.value.code == "FAULTY_MODEL" and "error" in str(caught.value)


def test_drawings(network: dtsdb.Network, tmp_path: Path) -> None:
    drawing = network.draw("Baiyun", flows=True)
    assert drawing._repr_svg_() == str(drawing) == drawing.svg
    drawing.save(tmp_path / "baiyun.svg")
    assert (tmp_path / "baiyun.svg").read_text(encoding="utf-8") == drawing.svg
    with pytest.raises(dtsdb.UnknownComponentError, match="did you mean Baiyun"):
        network.draw("Baiyin")
    for arguments in ({}, {"station": "Baiyun", "level": "Baiyun-132"}):
        with pytest.raises(dtsdb.UsageError):
            network.draw(**arguments)  # type: ignore[arg-type]


def test_flows(network: dtsdb.Network) -> None:
    flows = network.flows()
    assert all(flow_set.state == "balanced" for flow_set in flows.sets)
    assert all((breaker.p is None) == (breaker.state != "computed") for breaker in flows.breakers)
    assert flows.tolerance == np.float32(0.01)


def test_encoding() -> None:
    assert dtsdb.encoding() in ("GBK", "UTF-8")
    dtsdb.set_encoding(dtsdb.encoding())
    other = "utf-8" if dtsdb.encoding() == "GBK" else "gbk"
    with pytest.raises(dtsdb.UsageError, match="before the first model"):
        dtsdb.set_encoding(other)
    with pytest.raises(dtsdb.UsageError, match="no encoding"):
        dtsdb.set_encoding("latin-1")
