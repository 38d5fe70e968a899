"""The realtime database that the programs of an installation share.

>>> import dtsdb, tempfile
>>> place = tempfile.mkdtemp() + "/grid"
>>> with dtsdb.realtime(place, write=True) as database:
...     database.put("CB", id="B1", flags=1)
...     database["CB"][0].id, database["CB"][0].flags
...     database.put("CB", id="B1", flags=0)
True
('B1', 1)
False
"""

from __future__ import annotations

import os
import time
from collections import namedtuple
from typing import TYPE_CHECKING, Any, Iterator, NamedTuple, Optional

from dtsdb import _core
from dtsdb.network import Path, _assignments
from dtsdb.table import INFOS
from dtsdb.text import one_line

if TYPE_CHECKING:
    import pandas as pd


class Change(NamedTuple):
    """What another program has changed in a table, or this one."""

    table: str
    added: list[Any]
    """Rows that are new."""
    changed: list[tuple[Any, Any]]
    """Rows as they were and as they are."""
    removed: list[Any]
    """Rows that are gone, as they were."""


def realtime(name: Path, *, write: bool = False) -> Realtime:
    """Opens the realtime database NAME.fdb.

    To read, it must exist; with `write` it is made where there is none. `name` may be written with or without "rtdb:"
    and the ending. Raises `FileError` when it can't be opened.
    """
    text = os.fspath(name)
    return Realtime(text[5:] if text.startswith("rtdb:") else text, write=write)


class Realtime:
    """An open realtime database. Each call is one transaction; threads may share it.

    Rows are named tuples with all columns of the table, in the order of their keys. `dtsdb.open("rtdb:NAME")` reads the
    model in the database instead.
    """

    def __init__(self, name: str, *, write: bool = False) -> None:
        """As `dtsdb.realtime`."""
        self.name = name
        self._core = _core.open_realtime(os.fsencode(name), write)
        self._row_classes: dict[str, Any] = {}

    @property
    def closed(self) -> bool:
        return self._core.is_closed()

    def close(self) -> None:
        """Leaves the database. A second call does nothing."""
        self._core.close()

    def __enter__(self) -> Realtime:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"<realtime database {one_line(self.name)}>"

    def tables(self) -> dict[str, int]:
        """The tables that have rows, and how many."""
        return {name: count for name, count in self._core.counts() if count}

    def __getitem__(self, table: str) -> list[Any]:
        """The rows of a table."""
        return self._rows(table, self._core.rows(table))

    def to_pandas(self, table: str) -> pd.DataFrame:
        """The rows of a table as a data frame."""
        import pandas

        return pandas.DataFrame(self._core.rows(table), columns=self._columns(table))

    def put(self, table: str, **values: Any) -> bool:
        """Changes the columns of the row with the given key, or adds the row, in one transaction.

        The key is `id`, in a relation table the two identities. Columns that aren't given stay, or have their
        defaults in a new row. True when the row was added. Raises `UsageError` for what the table doesn't take.
        """
        return self._core.put(table, _assignments(values))

    def follow(
        self, *tables: str, interval: float = 0.2, timeout: Optional[float] = None
    ) -> Iterator[Change]:
        """Yields what changes in these tables, in all that there are when none are named, as it is committed.

        Looks every `interval` seconds, at little cost where nothing has changed. Ends after `timeout` seconds without a
        change; without one it goes on until the caller leaves it. What changes several times between two looks is one
        change. Every look at all tables counts from the moment in which the walk begins.
        """
        names = [_core.table_name(table) for table in tables] or list(INFOS)
        known = {name: self._look(name, _Known()) for name in names}
        return self._changes(known, interval, timeout)

    def _changes(self, known: dict[str, _Known], interval: float, timeout: Optional[float]) -> Iterator[Change]:
        last = time.monotonic()
        while True:
            for name, before in known.items():
                after = known[name] = self._look(name, before)
                if after.rows is before.rows:
                    continue
                change = self._difference(name, before.rows, after.rows)
                if change.added or change.changed or change.removed:
                    last = time.monotonic()
                    yield change
            if timeout is not None and time.monotonic() - last >= timeout:
                return
            time.sleep(interval)

    def _look(self, table: str, known: _Known) -> _Known:
        rows, opening, change = self._core.rows_unless_known(table, known.opening, known.change)
        return _Known(known.rows if rows is None else self._by_key(table, rows), opening, change)

    def _by_key(self, table: str, rows: list[Any]) -> dict[Any, Any]:
        """Rows by their key, and by how often it has come before."""
        ending = "_id" if INFOS[table].key == "relation" else "id"
        count = 2 if INFOS[table].key == "relation" else 1
        places = [place for place, name in enumerate(self._columns(table)) if name.endswith(ending)][:count]
        found: dict[Any, Any] = {}
        for row in self._rows(table, rows):
            key = tuple(row[place] for place in places)
            while key in found:
                key += (None,)
            found[key] = row
        return found

    @staticmethod
    def _difference(table: str, before: dict[Any, Any], after: dict[Any, Any]) -> Change:
        return Change(
            table,
            [row for key, row in after.items() if key not in before],
            [(before[key], row) for key, row in after.items() if key in before and not _same(before[key], row)],
            [row for key, row in before.items() if key not in after],
        )

    def _columns(self, table: str) -> list[str]:
        return [name for name, _ in _core.stored_columns(table)]

    def _rows(self, table: str, rows: list[Any]) -> list[Any]:
        name = _core.table_name(table)
        if name not in self._row_classes:
            self._row_classes[name] = namedtuple(name, self._columns(name), rename=True)
        return [self._row_classes[name](*row) for row in rows]


class _Known(NamedTuple):
    """The rows of a table that were last read, and which these were."""

    rows: dict[Any, Any] = {}
    opening: int = 0
    change: int = 0


def _same(a: Any, b: Any) -> bool:
    """True for equal rows; what is no number counts as equal to itself."""
    return all(x == y or (x != x and y != y) for x, y in zip(a, b))
