"""The tables of a model as columns.

A table follows its model: what it gives is of the moment in which it is asked. An array of numbers shares the memory of
the records, without a copy, and stays what it was: as long as one is in use, whatever changes the model works on a copy
of it. Arrays can't be written to; records are changed with `Network.edit`.

The fields come from the description of the records (docs/tables.md).
"""

from __future__ import annotations

from typing import TYPE_CHECKING, Any, Iterator, NamedTuple, Optional, Union

from dtsdb import _core

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd


class Field(NamedTuple):
    """A field of a table's records."""

    name: str
    type: str
    """"text", "i8", "u8", "i32", "u32", "f32" or "f64"."""
    refers: str
    """The table whose identity or number the field holds; empty for a value of its own."""
    unit: str
    """Such as "kV"; empty where there is none or it isn't known."""
    writers: str
    """Who writes the field, such as "validation, topology"; "input": it comes with the model."""
    meaning: str


class TableInfo(NamedTuple):
    """What is known of a table, whatever the model."""

    name: str
    key: str
    """What its records are known by: "identity", "number" or "relation"."""
    meaning: str
    """What a record is."""
    fields: tuple[Field, ...]


INFOS: dict[str, TableInfo] = {
    name: TableInfo(name, key, meaning, tuple(Field(*field) for field in fields))
    for name, key, meaning, fields in _core.tables()
}
"""All tables by name, in the order of their kind codes."""


class Table:
    """One table of a model: `network["CB"]`.

    >>> import dtsdb
    >>> table = dtsdb.open(SAMPLE)["LD"]
    >>> len(table)
    14
    >>> table["id"][:3].tolist(), table["p"][:3].tolist()
    (['Baiyun-L1', 'Baiyun-L2', 'Dongshan-L1'], [60.0, 34.20000076293945, 7.599999904632568])
    >>> table.field("p").unit
    'MW'
    """

    def __init__(self, network: _core.Network, info: TableInfo) -> None:
        self._network = network
        self.info = info
        """What is known of the table, whatever the model."""

    @property
    def name(self) -> str:
        return self.info.name

    @property
    def fields(self) -> tuple[Field, ...]:
        return self.info.fields

    def field(self, name: str) -> Field:
        """What is known of a field; its unit, for example."""
        for field in self.info.fields:
            if field.name == name:
                return field
        raise _unknown_field(self.info, name)

    def __len__(self) -> int:
        """The number of records."""
        return self._network.count(self.info.name)

    def __getitem__(self, field: str) -> np.ndarray[Any, Any]:
        """The values of a field, in the order of the table, as an array that can't be written to.

        Numbers are of the field's own type, texts are str.
        """
        return self._network.column(self.info.name, self.field(field).name)

    def columns(self) -> dict[str, np.ndarray[Any, Any]]:
        """The values of all fields, all of one moment."""
        return self._network.columns(self.info.name)

    def to_pandas(self) -> pd.DataFrame:
        """The table as a data frame with a column for each field. Units stand in `attrs["units"]`."""
        import pandas

        frame = pandas.DataFrame(self.columns())
        frame.attrs["table"] = self.info.name
        frame.attrs["units"] = {field.name: field.unit for field in self.info.fields if field.unit}
        return frame

    def find(self, identity: str) -> Optional[int]:
        """The number of the record with an identity, which is its place in the columns; None when there is none."""
        return self._network.find(self.info.name, identity)

    def record(self, which: Union[str, int]) -> dict[str, Any]:
        """The values of a record, by its identity or number.

        >>> import dtsdb
        >>> dtsdb.open(SAMPLE)["LD"].record("Baiyun-L1")["q"]
        12.0
        """
        number = which if not isinstance(which, str) else self.find(which)
        if number is None:
            raise _unknown_record(self, str(which))
        return self._network.record(self.info.name, number)

    def __iter__(self) -> Iterator[dict[str, Any]]:
        """The records one by one, as they are when the walk begins."""
        columns = {name: column.tolist() for name, column in self.columns().items()}
        return (dict(zip(columns, values)) for values in zip(*columns.values()))

    def __contains__(self, identity: object) -> bool:
        """True when there is a record with this identity."""
        return isinstance(identity, str) and self.find(identity) is not None

    def __repr__(self) -> str:
        return f"<table {self.info.name}: {self.info.meaning}>"


def _unknown_field(info: TableInfo, name: object) -> Exception:
    from dtsdb.errors import UnknownNameError

    near = _core.did_you_mean(str(name), [field.name for field in info.fields])
    return UnknownNameError(f"table {info.name} has no field {str(name)!r}{near}", "USAGE", info.name)


def _unknown_record(table: Table, identity: str) -> Exception:
    from dtsdb.errors import UnknownComponentError

    near = _core.did_you_mean(identity, list(table["id"]))
    return UnknownComponentError(
        f"table {table.name} has no record {identity!r}{near}", "UNKNOWN_COMPONENT", f"{table.name} {identity}"
    )
