"""A network model, and what can be asked of it."""

from __future__ import annotations

import io
import os
from types import TracebackType
from typing import Any, Iterable, Literal, Mapping, Optional, Sequence, Tuple, Union

from dtsdb import _core, results
from dtsdb.errors import FaultyModelError, UsageError
from dtsdb.progress import Progress, Shown
from dtsdb.tables import TablesByName
from dtsdb.text import one_line

Event = Union[str, Sequence[str]]
"""A switching event: in words, such as "open CB B1" (docs/command.md), or as a tuple of them, in which identities
stand as they are: ("break", "LN", "Line 7", "from")."""

Path = Union[str, "os.PathLike[str]"]
Language = Literal["en", "zh"]


def open(
    name: Path,
    *,
    ids: Literal["name", "mrid"] = "name",
    ties: Literal["load", "unit"] = "load",
    merge_retained: bool = False,
    progress: Progress = None,
) -> Network:
    """Reads a model of any form.

    `name` is an object file, a folder of text tables, CGMES profiles (a folder, a file, a zip archive, or
    "cgmes:PATH,PATH"), an XIIDM file, or "rtdb:NAME" for a realtime database.

    Of grids in CGMES and XIIDM, `ids` are the identities: names made unique, or mRIDs. Equivalent injections become
    what `ties` names. With `merge_retained` closed switches that are retained join their nodes.

    `progress` is called with the bytes that have been read and those that there are.

    Raises `FileError` when the model can't be read.

    >>> import dtsdb
    >>> network = dtsdb.open(SAMPLE)
    >>> len(network["CB"])
    229
    """
    if ids not in ("name", "mrid"):
        raise UsageError(f"ids is 'name' or 'mrid', not {ids!r}", "USAGE")
    if ties not in ("load", "unit"):
        raise UsageError(f"ties is 'load' or 'unit', not {ties!r}", "USAGE")
    path = os.fsencode(os.fspath(name))
    with Shown(progress, f"bytes of {os.fspath(name)} read") as report:
        return Network(_core.open(path, ids == "mrid", ties == "unit", bool(merge_retained), report))


def from_image(image: bytes, name: str = "the model") -> Network:
    """A model from what `Network.image` has made of one. Raises `UsageError` when it is none."""
    return Network(_core.of_image(image, name))


class Network(TablesByName):
    """A network model: a mapping from the names of its 46 tables to the tables.

    Several threads may share a network; its calls follow one another, and long ones let other threads of the
    interpreter run meanwhile. Without `close` a network is closed when nobody uses it any more. It can be pickled.
    """

    def __init__(self, core: _core.Network) -> None:
        """Made by `dtsdb.open`."""
        if not isinstance(core, _core.Network):
            raise UsageError("a network is made by dtsdb.open", "USAGE")
        self._core = core

    # The model

    @property
    def name(self) -> str:
        """The name by which errors call the model."""
        return self._core.name()

    @property
    def good(self) -> bool:
        """True when the last validation found no error."""
        return self._core.is_good()

    @property
    def closed(self) -> bool:
        return self._core.is_closed()

    def close(self) -> None:
        """Gives the model up. Arrays and results that were taken from it stay as they are."""
        self._core.close()

    def __enter__(self) -> Network:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def save(self, name: Path, form: Optional[Literal["object", "text", "xiidm"]] = None) -> None:
        """Writes the model.

        Without `form`, the place decides: an existing folder, a name that ends in "/" and one without extension get
        text tables, .xiidm and .iidm (also with .gz) an XIIDM file, "rtdb:NAME" a realtime database, and any other
        name an object file. What stood there is replaced when all is written. Raises `FileError` when it can't be
        written.
        """
        self._core.save(os.fsencode(os.fspath(name)), form)

    def copy(self) -> Network:
        """A model of its own with all records and all numbering of this one."""
        return Network(self._core.copy())

    def image(self) -> bytes:
        """The whole model as bytes, which `dtsdb.from_image` reads; so a model travels to other processes."""
        return self._core.image()

    def __reduce__(self) -> Tuple[Any, ...]:
        return from_image, (self.image(), self.name)

    def __repr__(self) -> str:
        return f"<network {one_line(self.name)}>"

    __hash__ = object.__hash__

    def __eq__(self, other: object) -> bool:
        """A network equals itself only."""
        return self is other

    # What is worked out

    def validate(self, language: Language = "en") -> results.Validation:
        """Checks every record, and builds what the topology works on.

        A model with errors is a result. `FaultyModelError` is raised when the validation can't be finished.

        >>> import dtsdb
        >>> found = dtsdb.open(SAMPLE).validate()
        >>> found.good, len(found)
        (True, 0)
        """
        return self._core.validate(language)

    def topology(self, language: Language = "en") -> results.Topology:
        """The topology: islands, sections, nodes, what is dead. Validates the model first where it isn't good.

        Raises `FaultyModelError` when the model has errors, and `NoTopologyError` when the rules give no topology.

        >>> import dtsdb
        >>> [(island.reference, island.counts.loads) for island in dtsdb.open(SAMPLE).topology().islands]
        [('Longtan-G1', 13)]
        """
        return self._core.topology(language)

    def flows(self, tolerance: float = 0.01, *, complete_voltages: bool = True) -> results.Flows:
        """The power through every closed breaker.

        `tolerance` is that of the balance test, in MW and Mvar. With `complete_voltages` a section without a voltage
        gets that of a bus on it, or else the base voltage. A model without a topology gets one first.
        """
        return self._core.flows(tolerance, complete_voltages)

    def switch(self, *events: Event) -> Switched:
        """Switches, and follows it up with one run, after which the model has the topology of a full one.

        What is switched stays so; as a context manager it is undone at the end of the `with`:

        >>> import dtsdb
        >>> network = dtsdb.open(SAMPLE)
        >>> with network.switch("out LN Longtan-Shiqiao") as switched:
        ...     network["LN"].record("Longtan-Shiqiao")["status"]
        4
        >>> network["LN"].record("Longtan-Shiqiao")["status"]
        0

        Nothing is switched when a component is unknown (`UnknownComponentError`) or an event isn't understood
        (`UsageError`).
        """
        words = [_words(event) for event in events]
        mark = self._core.mark()
        return Switched(self._core, mark, self._core.switch(words))

    def outages(self, tables: Iterable[str] = ("LN", "XF", "CB", "BUS", "UN")) -> list[results.Outage]:
        """The outage of each component of these tables that is in service, table by table."""
        return self._core.single_outages(list(tables))

    def screen(
        self,
        outages: Union[Iterable[str], Iterable[Sequence[Tuple[str, str]]], None] = None,
        *,
        jobs: int = 1,
        progress: Progress = None,
    ) -> results.Screening:
        """Tries outages out, from the state that the model is in, and lists them by what they cost.

        `outages` is a list of outages, as `Network.outages`, `dtsdb.all_pairs` and `dtsdb.sample_pairs` give them, or
        of your own: each a sequence of (table, identity). Without it, all single outages are tried. `jobs` is the
        number of threads; the result doesn't depend on it. `progress` is called with the outages done and all; what
        it raises ends the screening, and so does an interrupt from the keyboard.

        Raises `UnknownComponentError`, `FaultyModelError` and `NoTopologyError`.

        >>> import dtsdb
        >>> screening = dtsdb.open(SAMPLE).screen([[("XF", "Hekou-T2")], [("BUS", "Hekou-132-II")]])
        >>> [(result.text, result.totals.loads) for result in screening]
        [('BUS Hekou-132-II', 1), ('XF Hekou-T2', 0)]
        """
        tried = self.outages() if outages is None else [_outage(outage) for outage in outages]
        with Shown(progress, "outages") as report:
            return self._core.screen(tried, jobs, report)

    def draw(self, station: Optional[str] = None, *, level: Optional[str] = None, flows: bool = False) -> Drawing:
        """The diagram of a station, or of one voltage level.

        With `flows` it has the powers at feeders and through breakers. A notebook shows it as a picture.

        >>> import dtsdb
        >>> dtsdb.open(SAMPLE).draw("Baiyun").svg[:5]
        '<svg '
        """
        if (station is None) == (level is None):
            raise UsageError("name either a station or a level to draw", "USAGE")
        identity = station if level is None else level
        return Drawing(self._core.draw(identity, level is not None, flows), str(identity))

    def draw_grid(self, around: Optional[str] = None, *, hops: int = 2, flows: bool = False) -> Drawing:
        """The map of the grid, or of a station and what up to `hops` lines lead to from it.

        With `flows` it has the powers on the lines.
        """
        return Drawing(self._core.draw_grid(around or "", hops, flows), around or "the grid")

    # Editing

    def edit(self) -> Edits:
        """Edits that come into effect together, at the end of the `with`, or not at all.

        >>> import dtsdb
        >>> network = dtsdb.open(SAMPLE)
        >>> with network.edit() as edits:
        ...     edits.change("LD", "Baiyun-L1", p=70, q=15)
        ...     edits.remove("LD", "Baiyun-L2")
        >>> network["LD"].record("Baiyun-L1")["p"], len(network["LD"])
        (70.0, 13)
        """
        return Edits(self._core)

    def add(self, table: str, **values: Any) -> None:
        """Adds one record, as `Edits.add` does. Each such call validates the whole model: take `edit` for several."""
        with self.edit() as edits:
            edits.add(table, **values)

    def change(self, table: str, identity: str, **values: Any) -> None:
        """Changes one record, as `Edits.change` does; likewise."""
        with self.edit() as edits:
            edits.change(table, identity, **values)

    def remove(self, table: str, identity: str) -> None:
        """Removes one record, as `Edits.remove` does; likewise."""
        with self.edit() as edits:
            edits.remove(table, identity)


class Switched:
    """What was switched, and the way back: see `Network.switch`."""

    def __init__(self, core: _core.Network, mark: _core.Mark, outcome: results.Outcome) -> None:
        self._core = core
        self._mark: Optional[_core.Mark] = mark
        self.outcome = outcome
        """What the run has brought."""

    def effect(self) -> results.Effect:
        """What has happened to the supply since the moment in front of the switching."""
        if self._mark is None:
            raise UsageError("the switching was undone", "USAGE")
        return self._core.effect_since(self._mark)

    def undo(self) -> Optional[results.Outcome]:
        """Brings all components back into the states that they had in front of the switching.

        A second call does nothing. Raises `UsageError` when records were edited since.
        """
        if self._mark is None:
            return None
        outcome = self._core.go_back(self._mark)
        self._mark = None
        return outcome

    def __enter__(self) -> Switched:
        return self

    def __exit__(self, *_: object) -> None:
        if not self._core.is_closed():
            self.undo()


class Edits:
    """Edits of a model by the rules of the editing (docs/editing.md): see `Network.edit`.

    Each is applied at once to a copy, and refused with a `RefusedError` where the rules refuse it. At the end of the
    `with` the copy is validated and takes effect. When it has errors, `FaultyModelError` is raised with the `findings`,
    and the model stays as it was; so it does when an exception leaves the `with`.
    """

    def __init__(self, network: _core.Network) -> None:
        self._session = _core.begin_edits(network)

    def add(self, table: str, **values: Any) -> None:
        """Adds a record: `id` and the identities that it names, and what else it is to have.

        Fields are named as in the table; those that aren't given have their defaults. Numbers of other records can't be
        given.
        """
        self._session.apply(["add", table, *_assignments(values)])

    def change(self, table: str, identity: str, **values: Any) -> None:
        """Gives fields of a record new values; all but `id` and the numbers of other records."""
        self._session.apply(["change", table, identity, *_assignments(values)])

    def remove(self, table: str, identity: str) -> None:
        """Removes a record, and of a container what it holds. What else names it has to be removed before."""
        self._session.apply(["remove", table, identity])

    def commit(self) -> results.Validation:
        """Validates the edited model and lets it take effect. The end of the `with` does it."""
        found = self._session.commit()
        if not found.good:
            first = next(finding for finding in found if finding.severity == "error")
            error = FaultyModelError(
                f"the edited model has errors, {found.errors} in number; first {first.table} {first.identity}: "
                f"{first.text}",
                "FAULTY_MODEL",
                f"{first.table} {first.identity}",
            )
            error.findings = found.findings
            raise error
        return found

    def __enter__(self) -> Edits:
        return self

    def __exit__(
        self, kind: Optional[type[BaseException]], error: Optional[BaseException], trace: Optional[TracebackType]
    ) -> None:
        if kind is None:
            self.commit()


class Drawing:
    """A diagram in SVG, complete in itself."""

    def __init__(self, svg: str, title: str) -> None:
        self.svg = svg
        """The document."""
        self.title = title
        """The identity of what it shows."""

    def save(self, path: Path) -> None:
        """Writes the document to a file."""
        with io.open(path, "w", encoding="utf-8", newline="") as file:
            file.write(self.svg)

    def _repr_svg_(self) -> str:
        return self.svg

    def __str__(self) -> str:
        return self.svg

    def __repr__(self) -> str:
        return f"<diagram of {one_line(self.title)}>"


def _words(event: Event) -> str:
    """An event in words."""
    if isinstance(event, str):
        return event
    return " ".join(_core.script_word(word) for word in event)


def _outage(outage: Any) -> Any:
    """One outage; a pair of texts is one component."""
    if isinstance(outage, tuple) and len(outage) == 2 and all(isinstance(part, str) for part in outage):
        return [outage]
    return outage


def _assignments(values: Mapping[str, Any]) -> list[str]:
    """Values as FIELD=VALUE, as edit scripts and the realtime database take them."""
    return [f"{name}={_text(value)}" for name, value in values.items()]


def _text(value: Any) -> str:
    """A value as text tables have it."""
    if isinstance(value, bool):
        return str(int(value))
    if isinstance(value, (bytes, bytearray)):
        return bytes(value).hex()
    if isinstance(value, str):
        return value
    number = getattr(value, "item", None)  # of numpy's scalars
    return str(number() if callable(number) else value)
