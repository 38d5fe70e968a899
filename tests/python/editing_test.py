"""Editing record by record: what takes effect, what is refused, and that nothing takes effect by half."""

from __future__ import annotations

import numpy as np
import pytest

import dtsdb


def test_edits_take_effect_together(network: dtsdb.Network) -> None:
    with network.edit() as edits:
        edits.add("CB", id="New-Q0", kv="Baiyun-132", nd="Baiyun-132-1a", znd="New-node", flags=1)
        edits.add("LD", id="New", kv="Baiyun-132", nd="New-node", p=np.float32(12.5), q=3)
        edits.change("LD", "Baiyun-L1", p=70, q=15.5)
        edits.remove("LD", "Baiyun-L2")
        assert "New" not in network["LD"], "not before the end"
    assert network.good
    new = network["LD"].record("New")
    assert (new["p"], new["q"], new["kv"]) == (12.5, 3.0, "Baiyun-132")
    assert network["LD"].record("Baiyun-L1")["p"] == 70
    assert "Baiyun-L2" not in network["LD"]
    assert all(dead.identity != "New" for dead in network.topology().dead)


def test_a_refused_edit_has_the_code_of_its_message(network: dtsdb.Network) -> None:
    before = network["LD"]["id"].tolist()
    with pytest.raises(dtsdb.RefusedError, match="already") as caught:
        with network.edit() as edits:
            edits.remove("LD", "Baiyun-L2")
            edits.add("LD", id="Baiyun-L1", kv="Baiyun-132", nd="Baiyun-132-1a")
    assert caught.value.code == "ADD_LD_EXISTS"
    assert caught.value.place == "LD Baiyun-L1"
    assert network["LD"]["id"].tolist() == before
    with pytest.raises(dtsdb.RefusedError, match="did you mean Baiyun-L1"):
        network.change("LD", "Baiyun-L", p=1)
    with pytest.raises(dtsdb.RefusedError):
        network.remove("LD", "nobody")


@pytest.mark.parametrize(
    "edit",
    [
        ("add", "LD", {}),
        ("add", "LD", {"id": "x", "pp": 1}),
        ("add", "LD", {"id": "x", "p": "many"}),
        ("add", "LD", {"id": "x", "ind": 7}),
        ("add", "ND", {"id": "x"}),
        ("add", "XYZ", {"id": "x"}),
        ("change", "LD", "Baiyun-L1", {}),
        ("change", "LD", "Baiyun-L1", {"id": "other"}),
        ("change", "LD", "Baiyun-L1", {"p": None}),
        ("remove", "LD", ""),
    ],
)
def test_what_is_no_edit(network: dtsdb.Network, edit: tuple) -> None:  # type: ignore[type-arg]
    network.validate()
    call, *arguments = edit
    values = arguments.pop() if isinstance(arguments[-1], dict) else {}
    with pytest.raises(dtsdb.UsageError) as caught:
        getattr(network, call)(*arguments, **values)
    assert "\n" not in str(caught.value)
    assert network.good and len(network["LD"]) == 14


def test_a_model_with_errors_does_not_take_effect(network: dtsdb.Network) -> None:
    network.validate()
    before = network["ST"]["id"].tolist()
    with pytest.raises(dtsdb.FaultyModelError) as caught:
        network.remove("ST", "Baiyun")
    assert caught.value.findings and caught.value.findings[0].severity in ("error", "warning")
    assert network["ST"]["id"].tolist() == before
    assert network.topology().islands


def test_edits_end_with_an_exception(network: dtsdb.Network) -> None:
    with pytest.raises(KeyError):
        with network.edit() as edits:
            edits.remove("LD", "Baiyun-L2")
            raise KeyError
    assert "Baiyun-L2" in network["LD"]


def test_ended_edits_are_refused(network: dtsdb.Network) -> None:
    edits = network.edit()
    edits.commit()
    for call in (edits.commit, lambda: edits.remove("LD", "Baiyun-L2")):
        with pytest.raises(dtsdb.UsageError, match="have ended"):
            call()
    refused = network.edit()
    with pytest.raises(dtsdb.RefusedError):
        refused.remove("LD", "nobody")
    with pytest.raises(dtsdb.UsageError, match="was refused"):
        refused.commit()


def test_edits_of_a_model_that_has_changed_since_are_refused(network: dtsdb.Network) -> None:
    edits = network.edit()
    network.switch("out LN Longtan-Shiqiao")
    edits.remove("LD", "Baiyun-L2")
    with pytest.raises(dtsdb.UsageError, match="since these edits were begun"):
        edits.commit()
    first, second = network.edit(), network.edit()
    first.remove("LD", "Baiyun-L2")
    second.remove("LD", "Baiyun-L1")
    first.commit()
    with pytest.raises(dtsdb.UsageError):
        second.commit()


def test_states_do_not_come_back_over_edits(network: dtsdb.Network) -> None:
    switched = network.switch("out LN Longtan-Shiqiao")
    network.remove("LD", "Baiyun-L2")
    with pytest.raises(dtsdb.UsageError, match="were edited since"):
        switched.undo()
    with pytest.raises(dtsdb.UsageError, match="were edited since"):
        switched.effect()


def test_identities_hold_whatever_text_does(network: dtsdb.Network) -> None:
    for identity in ("with blanks", 'with "quotes"', "it's", "石灰矿二", "# no note", "a=b"):
        network.add("LD", id=identity, kv="Baiyun-132", nd="Baiyun-132-1a")
        assert identity in network["LD"]
        network.switch(("off", "LD", identity))
        assert network["LD"].record(identity)["status"] != 0
        network.remove("LD", identity)
    with pytest.raises(dtsdb.UsageError, match="can't hold"):
        network.add("LD", id="😀", kv="Baiyun-132", nd="Baiyun-132-1a")
    assert "😀" not in network["LD"]
