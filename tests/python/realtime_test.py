"""The realtime database: reading, putting and following, beside the command and other processes."""

from __future__ import annotations

import os
import subprocess
import sys
import threading
from pathlib import Path

import numpy as np
import pytest

import dtsdb
from conftest import Command


@pytest.fixture
def place(network: dtsdb.Network, tmp_path: Path) -> str:
    """A database with the sample in it."""
    network.validate()
    name = str(tmp_path / "grid")
    network.save("rtdb:" + name)
    return name


def test_rows_are_those_that_the_command_shows(place: str, command: Command) -> None:
    with dtsdb.realtime(place) as database:
        counts = database.tables()
        assert counts == {row["table"]: int(row["rows"]) for row in command.csv("rtdb", "ls", place)}
        for table in ("CB", "LN", "R_KV_LD", "GLOBAL", "ZBR2"):
            theirs = command.json("rtdb", "show", place, table)[table]
            ours = database[table]
            assert len(ours) == counts[table] == len(theirs)
            for row, shown in zip(ours, theirs):
                for name, value in shown.items():
                    mine = getattr(row, name)
                    if isinstance(mine, bytes):
                        assert mine.hex() == value
                    elif isinstance(mine, float):
                        assert np.float32(mine) == np.float32(value)
                    else:
                        assert mine == (value if value is not None else "")
        assert list(database.to_pandas("CB")["id"][:1]) == [database["CB"][0].id]


def test_put_changes_a_row_or_adds_it(place: str, command: Command) -> None:
    with dtsdb.realtime("rtdb:" + place, write=True) as database:
        name = database["CB"][0].id
        assert database.put("CB", id=name, flags=3) is False
        assert database.put("cb", id="New", flags=1) is True
        assert command.json("rtdb", "show", place, "CB", "--id", "New")["CB"][0]["flags"] == 1
        rows = {row.id: row for row in database["CB"]}
        assert rows[name].flags == 3 and rows["New"].flags == 1
        for values in ({}, {"flags": 1}, {"id": ""}, {"id": "x", "nothing": 1}, {"id": "x", "flags": "many"}):
            with pytest.raises(dtsdb.UsageError):
                database.put("CB", **values)
        with pytest.raises(dtsdb.UsageError, match="did you mean"):
            database.put("CBB", id="x")
        assert len(database["CB"]) == len(rows)


def test_a_database_that_was_opened_to_read_takes_nothing(place: str, tmp_path: Path) -> None:
    with dtsdb.realtime(place) as database:
        with pytest.raises(dtsdb.UsageError, match="write=True"):
            database.put("CB", id="x")
    with pytest.raises(dtsdb.FileError):
        dtsdb.realtime(tmp_path / "none")
    (tmp_path / "damaged.fdb").write_bytes(b"x" * 10000)
    with pytest.raises(dtsdb.FileError):
        dtsdb.realtime(tmp_path / "damaged")


def test_following_sees_what_others_commit(place: str, command: Command) -> None:
    with dtsdb.realtime(place) as database:
        name = database["CB"][0].id
        changes = database.follow("CB", interval=0.02, timeout=20)
        writer = threading.Timer(0.2, lambda: command.run("rtdb", "put", place, "CB", f"id={name}", "flags=5"))
        first = []

        def take() -> None:
            first.append(next(changes))

        reader = threading.Thread(target=take)
        reader.start()
        writer.start()
        reader.join(20)
        assert first and first[0].table == "CB"
        ((before, after),) = first[0].changed
        assert (before.id, after.id, after.flags) == (name, name, 5)
        command.run("rtdb", "put", place, "CB", "id=Added", "flags=1")
        added = next(changes)
        assert [row.id for row in added.added] == ["Added"] and not added.changed and not added.removed
        assert list(database.follow(interval=0.01, timeout=0.05)) == []


def test_the_model_and_the_database_are_open_together(place: str) -> None:
    with dtsdb.realtime(place, write=True) as database:
        network = dtsdb.open("rtdb:" + place)
        network.topology()
        network.save("rtdb:" + place)
        assert database.tables()["ISLAND"] == 1


def test_threads_share_a_database(place: str) -> None:
    raised = []
    with dtsdb.realtime(place, write=True) as database:

        def work(number: int) -> None:
            try:
                for turn in range(10):
                    database.put("CB", id=f"T{number}", flags=turn)
                    assert any(row.id == f"T{number}" for row in database["CB"])
            except Exception as error:  # noqa: BLE001
                raised.append(error)

        threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    assert raised == []


def test_after_close(place: str) -> None:
    database = dtsdb.realtime(place)
    database.close()
    database.close()
    assert database.closed
    for call in (database.tables, lambda: database["CB"], lambda: database.put("CB", id="x"),
                 lambda: database.follow("CB")):
        with pytest.raises(dtsdb.UsageError):
            call()


def test_a_forked_process_is_refused(place: str) -> None:
    code = f"""
import os, dtsdb
database = dtsdb.realtime({place!r}, write=True)
child = os.fork()
if child == 0:
    try:
        database.tables()
    except dtsdb.UsageError as error:
        del database
        os._exit(7 if "another process" in str(error) else 1)
    os._exit(2)
_, status = os.waitpid(child, 0)
assert database.put("CB", id="x") is True
print(os.waitstatus_to_exitcode(status))
"""
    ended = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, env=os.environ, check=False)
    assert (ended.stdout, ended.stderr) == ("7\n", "")


def test_after_an_error_the_database_is_opened_anew(place: str) -> None:
    with dtsdb.realtime(place) as database:
        count = len(database["CB"])
        os.rename(place + ".fdb", place + ".away")
        with pytest.raises(dtsdb.FileError):
            database["CB"]
        os.rename(place + ".away", place + ".fdb")
        assert len(database["CB"]) == count
