"""A class for each table of a model: `CBTable`, `LNTable` and so on.

Each is a `Table` whose fields a type checker knows, from tables.pyi. The fields come from the description of the
records.
"""

from __future__ import annotations

from typing import Iterator, Mapping

from dtsdb import _core
from dtsdb.errors import UnknownNameError
from dtsdb.table import INFOS, Table, TableInfo


def _class_of(info: TableInfo) -> type[Table]:
    lines = [f"{info.meaning}.", ""]
    for field in info.fields:
        unit = f", in {field.unit}" if field.unit else ""
        lines.append(f"{field.name}: {field.meaning}{unit}")
    return type(f"{info.name}Table", (Table,), {"__doc__": "\n".join(lines), "__module__": __name__})


CLASSES: dict[str, type[Table]] = {name: _class_of(info) for name, info in INFOS.items()}
"""The class of each table, by the table's name."""
globals().update({table_class.__name__: table_class for table_class in CLASSES.values()})


class TablesByName(Mapping[str, Table]):
    """The tables of a model by their names."""

    _core: _core.Network

    def __getitem__(self, name: str) -> Table:
        """The table of that name."""
        if name not in INFOS:
            near = _core.did_you_mean(str(name), list(INFOS))
            raise UnknownNameError(f"there is no table {str(name)!r}{near}", "USAGE", str(name))
        return CLASSES[name](self._core, INFOS[name])

    def __iter__(self) -> Iterator[str]:
        return iter(INFOS)

    def __len__(self) -> int:
        """The number of tables."""
        return len(INFOS)
