"""Tables as columns: what arrays hold, how long they live, and that they never change."""

from __future__ import annotations

import gc
import subprocess
import sys
import threading
from pathlib import Path

import numpy as np
import pytest

import dtsdb

TYPES = {"i8": "int8", "u8": "uint8", "i32": "int32", "u32": "uint32", "f32": "float32", "f64": "float64",
         "text": "object"}


def test_every_field_of_every_table_has_its_type_and_the_values_of_the_records(network: dtsdb.Network) -> None:
    network.topology()
    assert len(network) == 46
    for name, table in network.items():
        columns = table.columns()
        assert list(columns) == [field.name for field in table.fields]
        for field in table.fields:
            assert columns[field.name].dtype == np.dtype(TYPES[field.type]), (name, field)
            assert columns[field.name].shape == (len(table),)
        for number in range(0, len(table), 17):
            record = table.record(number)
            assert record == {field: column[number].item() if hasattr(column[number], "item") else column[number]
                              for field, column in columns.items()}


def test_numbers_share_the_memory_of_the_records(network: dtsdb.Network) -> None:
    network.validate()
    p = network["LD"]["p"]
    again = network["LD"]["p"]
    assert np.shares_memory(p, again)
    assert p.strides[0] > p.itemsize
    assert p.base is not None


def test_arrays_cannot_be_written_to(network: dtsdb.Network) -> None:
    for field in ("p", "id"):
        column = network["LD"][field]
        with pytest.raises(ValueError):
            column[0] = column[1]
    with pytest.raises(ValueError):
        network["LD"]["p"].setflags(write=True)


def test_an_array_stays_what_it_was(network: dtsdb.Network) -> None:
    network.topology()
    status, before = network["LN"]["status"], network["LN"]["status"].copy()
    with network.switch("out LN Longtan-Shiqiao"):
        assert not np.array_equal(network["LN"]["status"], before)
        assert np.array_equal(status, before)
        network.validate()
        network.topology()
    network.remove("LD", "Baiyun-L2")
    assert np.array_equal(status, before)
    assert np.array_equal(network["LN"]["status"], before)


def test_an_array_outlives_its_network(sample: Path) -> None:
    network = dtsdb.open(sample)
    p = network["LD"]["p"]
    expected = p.copy()
    network.close()
    del network
    gc.collect()
    assert np.array_equal(p, expected)


def test_a_network_without_arrays_is_not_copied(network: dtsdb.Network) -> None:
    network.topology()
    first = network["LD"]["p"].__array_interface__["data"][0]
    with network.switch("out LN Longtan-Shiqiao"):
        assert network["LD"]["p"].__array_interface__["data"][0] == first
    held = network["LD"]["p"]
    with network.switch("out LN Longtan-Shiqiao"):
        assert network["LD"]["p"].__array_interface__["data"][0] != first
    assert held.__array_interface__["data"][0] == first


def test_arrays_hold_while_other_threads_change_the_network(network: dtsdb.Network) -> None:
    network.topology()
    wrong = []
    stop = threading.Event()

    def read() -> None:
        while not stop.is_set():
            columns = network["LN"].columns()
            sums = [columns["status"].sum(), columns["tp_status"].sum()]
            if sums != [columns["status"].sum(), columns["tp_status"].sum()]:
                wrong.append(sums)

    readers = [threading.Thread(target=read) for _ in range(2)]
    for reader in readers:
        reader.start()
    for _ in range(20):
        with network.switch("out LN Longtan-Shiqiao"):
            pass
    stop.set()
    for reader in readers:
        reader.join()
    assert wrong == []


def test_to_pandas(network: dtsdb.Network) -> None:
    frame = network["LD"].to_pandas()
    assert list(frame["id"][:2]) == ["Baiyun-L1", "Baiyun-L2"]
    assert frame.attrs["units"]["p"] == "MW"
    assert frame.groupby("kv")["p"].sum()["Baiyun-132"] == pytest.approx(94.2)
    assert network["TPL"].to_pandas().empty


def test_records(network: dtsdb.Network) -> None:
    table = network["LD"]
    assert "Baiyun-L1" in table and "nobody" not in table and 7 not in table
    assert table.find("Baiyun-L2") == 1
    assert table.record(1) == table.record("Baiyun-L2")
    assert [record["id"] for record in table][:2] == ["Baiyun-L1", "Baiyun-L2"]
    with pytest.raises(dtsdb.UnknownComponentError, match="did you mean Baiyun-L1"):
        table.record("Baiyun-L")
    for number in (-1, 14, 10**6):
        with pytest.raises(IndexError):
            table.record(number)
    network.validate()
    with pytest.raises(dtsdb.UsageError, match="have no identity"):
        network["R_KV_LD"].find("x")


def test_unknown_names_are_key_errors_with_the_nearest_names(network: dtsdb.Network) -> None:
    with pytest.raises(KeyError, match="did you mean LN"):
        network["LNN"]
    with pytest.raises(dtsdb.UnknownNameError, match="did you mean flags") as caught:
        network["CB"]["flag"]
    assert (caught.value.code, caught.value.place) == ("USAGE", "CB")
    assert network.get("nothing") is None and "CB" in network


def test_classes_come_from_the_field_list(network: dtsdb.Network) -> None:
    assert type(network["CB"]) is dtsdb.tables.CBTable
    assert "f32" not in (dtsdb.tables.CBTable.__doc__ or "")
    assert "p: " in (dtsdb.tables.LDTable.__doc__ or "") and "in MW" in (dtsdb.tables.LDTable.__doc__ or "")


def test_importing_makes_no_file_and_needs_no_pandas(tmp_path: Path) -> None:
    code = f"""
import sys
sys.modules["pandas"] = None
import dtsdb
network = dtsdb.open({str(Path(__file__).resolve().parents[2] / 'examples' / 'ieee14')!r})
network.flows()
"""
    ended = subprocess.run([sys.executable, "-c", code], cwd=tmp_path, capture_output=True, text=True, check=False)
    assert (ended.returncode, ended.stdout, ended.stderr) == (0, "", "")
    assert list(tmp_path.iterdir()) == []
