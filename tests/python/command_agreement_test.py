"""The package and the command give the same results, on the sample and on generated models."""

from __future__ import annotations

import math
from pathlib import Path
from typing import Any, Callable, Optional

import pytest

import dtsdb
from conftest import SAMPLE, Command

MODELS = ["sample", "coast", 1, 2, 3]


@pytest.fixture(params=MODELS, ids=str)
def place(request: pytest.FixtureRequest, generated: Callable[[int], Path]) -> Path:
    if request.param == "sample":
        return SAMPLE
    return SAMPLE.parent / "coast" if request.param == "coast" else generated(request.param)


def _text(value: Any) -> Optional[str]:
    """A text as the command has it: nothing for an empty one."""
    return value or None


def test_topology(command: Command, place: Path) -> None:
    theirs = command.json("topology", place)
    ours = dtsdb.open(place).topology()
    assert [
        {
            "island": island.number,
            "sections": island.sections,
            "nodes": island.counts.nodes,
            "buses": island.counts.buses,
            "units": island.counts.units,
            "loads": island.counts.loads,
            "reference": _text(island.reference),
            "reference_section": island.reference_section,
        }
        for island in ours.islands
    ] == theirs["islands"]
    assert [
        (section.number, _text(section.name), section.station, section.level, section.island, *section.counts)
        for section in ours.sections
    ] == [
        tuple(row[name] for name in row if name != "state") for row in theirs["sections"]
    ]
    assert [
        (section.number, item.table, item.identity, _text(item.end), item.leads_to, _text(item.state))
        for section in ours.sections
        for item in section.items
    ] == [
        (row["section"], row["table"], row["identity"], row["end"], row["leads_to"], row["state"])
        for row in theirs["contents"]
    ]
    nodes = [
        ("ND", node.identity, "dead" if node.section is not None else "in no section")
        for node in ours.nodes
        if not node.live
    ]
    assert nodes + list(map(tuple, ours.dead)) == [tuple(row.values()) for row in theirs["dead"]]
    assert len(ours.findings) + len(ours.left_out) == len(theirs["findings"])


def test_flows(command: Command, place: Path) -> None:
    theirs = command.csv("flow", place, "--sheet", "breakers", codes=(0, 1))
    ours = dtsdb.open(place).flows()
    rows = [
        (breaker.set, breaker.identity, breaker.from_node, breaker.to_node, breaker.where, breaker.state)
        for flow_set in ours.sets
        for breaker in (ours.breakers[place] for place in flow_set.breakers)
    ]
    assert rows == [
        (int(row["set"]), row["breaker"], row["from"], row["to"], row["class"], row["state"]) for row in theirs
    ]
    by_name = {breaker.identity: breaker for breaker in ours.breakers}
    assert theirs
    for row in theirs:
        for name in ("p", "q"):
            power = getattr(by_name[row["breaker"]], name)
            assert power is not None and math.isclose(power, float(row[name]), abs_tol=5e-4), row
    sets = command.csv("flow", place, "--sheet", "sets", codes=(0, 1))
    assert [(s.level, s.nodes, len(s.breakers), s.state) for s in ours.sets] == [
        (row["voltage_level"], int(row["nodes"]), int(row["breakers"]), row["state"]) for row in sets
    ]


def test_screening(command: Command, place: Path) -> None:
    theirs = command.json("screen", place)
    ours = dtsdb.open(place).screen(jobs=2)
    assert [(result.text, result.run, _text(result.note)) for result in ours] == [
        (row["outage"], row["run"], row["note"]) for row in theirs["outages"]
    ]
    for result, row in zip(ours, theirs["outages"]):
        totals = result.totals
        assert (totals.loads, totals.buses, totals.stations, totals.units) == (
            row["loads"],
            row["buses"],
            row["stations"],
            row["units"],
        )
        assert math.isclose(totals.p, row["load_p"], abs_tol=5e-4)
        assert math.isclose(totals.q, row["load_q"], abs_tol=5e-4)
    lost = [
        (rank, thing.table, thing.identity, thing.station, _text(thing.level), thing.state)
        for rank, result in enumerate(ours, 1)
        for thing in result.lost
    ]
    assert lost == [
        (row["rank"], row["table"], row["identity"], row["station"], row["voltage_level"], row["state"])
        for row in theirs["lost"]
    ]
    assert len(ours) == theirs["screened"]


def test_pairs(command: Command) -> None:
    theirs = command.csv("screen", SAMPLE, "--kinds", "LN", "--sample", 40, "--seed", 7)
    network = dtsdb.open(SAMPLE)
    ours = network.screen(dtsdb.sample_pairs(network.outages(["LN"]), 40, seed=7))
    assert [result.text for result in ours] == [row["outage"] for row in theirs]


def test_validation(command: Command, tmp_path: Path) -> None:
    for table in SAMPLE.glob("*.csv"):
        text = table.read_text(encoding="utf-8")
        if table.name == "CB.csv":
            lines = text.splitlines()
            lines[3] = lines[3].replace(lines[3].split(",")[2], "", 1)
            text = "\n".join(lines) + "\n"
        (tmp_path / table.name).write_text(text, encoding="utf-8")
    theirs = command.csv("validate", tmp_path, "--sheet", "findings", codes=(1,))
    ours = dtsdb.open(tmp_path).validate()
    assert not ours.good and ours.errors > 0
    in_their_order = sorted(ours, key=lambda finding: finding.severity != "error")
    assert [tuple(finding) for finding in in_their_order if finding.severity != "notice"] == [
        tuple(row[name] for name in ("code", "severity", "table", "field", "id", "text", "what_to_do"))
        for row in theirs
    ]


def test_switching(command: Command, place: Path) -> None:
    network = dtsdb.open(place)
    line = network.outages(["LN"])[0][0].identity
    theirs = command.json("switch", place, "out", "LN", line)
    switched = network.switch(("out", "LN", line))
    outcome = switched.outcome
    run = theirs["runs"][-1]
    assert (outcome.run.text, outcome.levels, len(outcome.islands)) == (run["kind"], run["levels"], run["live_islands"])
    assert [tuple(row) for row in outcome.log] == [
        tuple(row[name] for name in ("table", "identity", "event", "status", "old_section", "new_section"))
        for row in theirs["log"]
    ]
    assert [tuple(row) for row in outcome.moved] == [tuple(row.values())[1:] for row in theirs["moved"]]
    assert len([thing for thing in switched.effect().lost if thing.table == "LD"]) == theirs["lost_loads"]


def test_drawing(command: Command) -> None:
    for flows in (False, True):
        theirs = command.run("draw", SAMPLE, "--station", "Baiyun", *(["--flows"] if flows else []))
        assert dtsdb.open(SAMPLE).draw("Baiyun", flows=flows).svg == theirs
    for options, arguments in (([], {}), (["--around", "Baiyun", "--hops", 1, "--flows"],
                                      {"around": "Baiyun", "hops": 1, "flows": True})):
        theirs = command.run("draw", SAMPLE, "--grid", *options)
        assert dtsdb.open(SAMPLE).draw_grid(**arguments).svg == theirs
    level = command.run("draw", SAMPLE, "--kv", "Baiyun-132")
    assert dtsdb.open(SAMPLE).draw(level="Baiyun-132").svg == level


def test_edited_models(command: Command, tmp_path: Path) -> None:
    script = tmp_path / "edits.txt"
    script.write_text(
        "add LD id=New kv=Baiyun-132 nd=Baiyun-132-1a p=3.5\nchange LD Baiyun-L1 p=70\nremove LD Baiyun-L2\n",
        encoding="utf-8",
    )
    command.run("edit", SAMPLE, "--script", script, "-o", tmp_path / "theirs.obj")
    network = dtsdb.open(SAMPLE)
    with network.edit() as edits:
        edits.add("LD", id="New", kv="Baiyun-132", nd="Baiyun-132-1a", p=3.5)
        edits.change("LD", "Baiyun-L1", p=70)
        edits.remove("LD", "Baiyun-L2")
    network.save(tmp_path / "ours.obj")
    differences = command.csv("diff", tmp_path / "theirs.obj", tmp_path / "ours.obj", codes=(0, 1))
    assert [row for row in differences if row["field"] != "check_time"] == []


@pytest.mark.parametrize("name", ["saved.obj", "saved", "saved.xiidm", "saved.xiidm.gz"])
def test_saved_models(command: Command, tmp_path: Path, name: str) -> None:
    command.run("convert", SAMPLE, tmp_path / ("theirs-" + name))
    dtsdb.open(SAMPLE).save(tmp_path / ("ours-" + name))
    command.run("diff", tmp_path / ("theirs-" + name), tmp_path / ("ours-" + name))
    assert len(dtsdb.open(tmp_path / ("ours-" + name))["CB"]) == 229
