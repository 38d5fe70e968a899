"""What the calls return: plain values, which can be compared, pickled and made tables of.

Rows are named tuples, so that `pandas.DataFrame(topology.nodes)` has their fields as columns. Numbers of sections and
islands hold until the next run; None stands for none. Powers are in MW and Mvar.
"""

from __future__ import annotations

from dataclasses import dataclass
from typing import Iterator, NamedTuple, Optional, Tuple


class Finding(NamedTuple):
    """Something that a validation or a topology run has found."""

    code: str
    """Stable name of the message (docs/messages.md)."""
    severity: str
    """"error", "warning" or "notice". Only errors make a model faulty."""
    table: str
    field: str
    """The field concerned; empty for the record as a whole."""
    identity: str
    text: str
    """What is wrong, as a clause about the record."""
    remedy: str
    """What to do; empty where there is nothing to do."""


@dataclass(frozen=True)
class Validation:
    """What a validation has found. Iterating it goes through the findings."""

    good: bool
    """No errors: topology and flows work on such a model only."""
    errors: int
    warnings: int
    findings: list[Finding]
    """Errors and warnings, in the order in which they were found."""

    def __iter__(self) -> Iterator[Finding]:
        return iter(self.findings)

    def __len__(self) -> int:
        return len(self.findings)


class Counts(NamedTuple):
    """How many things stand on a section or in an island."""

    nodes: int
    buses: int
    units: int
    loads: int
    shunts: int
    """Capacitors and reactors."""
    branches: int
    """Branch ends."""


class Item(NamedTuple):
    """What stands on a section."""

    table: str
    """ND, BUS, UN, LD, CP, LN, XF, DLN or ZBR."""
    identity: str
    end: str
    """Which end of a branch, "from" or "to"; else empty."""
    leads_to: Optional[int]
    """Number of the section at the other end of a branch."""
    state: str
    """"live", or what it is in its place; empty for a node."""


class Section(NamedTuple):
    """A bus section."""

    number: int
    kind: str
    """"section"; "fragment": nodes at the dead end of a live branch; "open end": one of a live branch, without
    nodes."""
    island: Optional[int]
    """Number of its live island; None when it is dead."""
    name: str
    station: str
    level: str
    """Identity of its voltage level."""
    counts: Counts
    items: list[Item]

    @property
    def live(self) -> bool:
        return self.island is not None


class Island(NamedTuple):
    """A live island."""

    number: int
    sections: int
    """How many it has."""
    counts: Counts
    reference: str
    """Identity of the reference unit; empty for none."""
    reference_section: Optional[int]


class Node(NamedTuple):
    """A node and the electrical point that it belongs to: all nodes that closed breakers join."""

    identity: str
    station: str
    level: str
    section: Optional[int]
    """Number of the section or fragment that the point is; None: it is too small to be one."""
    point: str
    """Identity of the first node of the point."""
    live: bool


class Dead(NamedTuple):
    """Equipment that isn't live."""

    table: str
    identity: str
    state: str
    """Such as "dead", "isolated", "switched off", "to end open, dead"."""


@dataclass(frozen=True)
class Topology:
    """All that a topology run has worked out."""

    islands: list[Island]
    """By number."""
    sections: list[Section]
    """Those on which something stands, voltage level by voltage level."""
    nodes: list[Node]
    """In the order of the node table."""
    dead: list[Dead]
    """Equipment, class by class. Nodes that are dead are found in `nodes`."""
    findings: list[Finding]
    """Breakers that disagree with the zero-impedance branch that they carry."""
    left_out: list[str]
    """Zero-impedance branches that were taken as out of service."""


class FollowedBranch(NamedTuple):
    """A zero-impedance branch that was switched together with the breaker that carries it."""

    branch: str
    breaker: str
    on: bool
    """Back in service; False: taken out."""


class Run(NamedTuple):
    """How a topology run went."""

    kind: str
    """"nothing", "incremental" or "full"."""
    text: str
    """Kind and reason in words, such as "full, for the open end of LN L1"."""
    followed: list[FollowedBranch]
    left_out: list[str]
    findings: list[Finding]


class LogRow(NamedTuple):
    """A row of the log of an incremental run (docs/topology.md)."""

    table: str
    identity: str
    event: str
    status: int
    old_section: Optional[int]
    new_section: Optional[int]


class MovedNode(NamedTuple):
    """A node that went to another section in an incremental run."""

    node: str
    level: str
    old_section: Optional[int]
    new_section: Optional[int]


@dataclass(frozen=True)
class Outcome:
    """What a run behind switching has brought."""

    run: Run
    levels: int
    """Number of voltage levels that it has processed."""
    log: list[LogRow]
    """Of an incremental run; a full one keeps none."""
    moved: list[MovedNode]
    """Likewise."""
    islands: list[Island]
    """The live islands as they now are."""


class Supplied(NamedTuple):
    """A station, bus, unit or load, and whether it is supplied."""

    table: str
    """ST, BUS, UN or LD."""
    identity: str
    station: str
    level: str
    """Empty for a station."""
    state: str
    """"live", or what it is in its place."""
    p: float
    """MW of a load or unit, 0 for others."""
    q: float
    """Mvar, likewise."""


class IslandChange(NamedTuple):
    """What became of live islands, by their numbers before and after."""

    kind: str
    """"split", "joined", "died" or "arose"."""
    before: Tuple[int, ...]
    after: Tuple[int, ...]


@dataclass(frozen=True)
class Effect:
    """What switching has done to the supply."""

    lost: list[Supplied]
    """Live before and not after; in the state after."""
    regained: list[Supplied]
    """Live after and not before; in the state before."""
    islands: list[IslandChange]


class BreakerFlow(NamedTuple):
    """The power through a breaker."""

    identity: str
    level: str
    from_node: str
    to_node: str
    set: Optional[int]
    """Its place in `Flows.sets`; None for a breaker that is open or dead."""
    where: str
    """"radial", "bridge" or "loop"; empty where it has no flow."""
    state: str
    """"computed", or why there is no flow."""
    p: Optional[float]
    """MW from `from_node` towards `to_node`; None unless the state is "computed"."""
    q: Optional[float]
    """Mvar, likewise."""


class FlowSet(NamedTuple):
    """Nodes that closed live breakers join."""

    level: str
    nodes: int
    breakers: Tuple[int, ...]
    """Places in `Flows.breakers`."""
    surplus_p: float
    """MW that are injected into its nodes together."""
    surplus_q: float
    """Mvar, likewise."""
    state: str
    """"balanced", "lacks power", "not balanced" or "no voltage"."""


@dataclass(frozen=True)
class Flows:
    """The power through every breaker."""

    tolerance: float
    """Of the balance test, MW and Mvar."""
    breakers: list[BreakerFlow]
    """All, open ones included, by identity."""
    sets: list[FlowSet]


class Component(NamedTuple):
    """A component that may fail."""

    table: str
    """LN, XF, DLN, ZBR, CB, BUS or UN."""
    identity: str


Outage = Tuple[Component, ...]
"""What goes out at once: one component or several."""


class Totals(NamedTuple):
    """How much things are together."""

    stations: int
    buses: int
    units: int
    loads: int
    p: float
    """MW of the loads."""
    q: float
    """Mvar, likewise."""


class IslandPart(NamedTuple):
    """A live part of what was one live island."""

    station: str
    node: str
    """The part's first node on the voltage levels of what went out."""
    reference: str
    """Table and identity, such as "UN G1"; empty for none."""


class IslandLoss(NamedTuple):
    """What an outage has done to a live island."""

    island: int
    """Its number without any outage."""
    reference: str
    parts: list[IslandPart]
    """More than one: it has split; none: it has died."""
    lost_reference: bool
    """A part is live and has another reference, or none."""


class OutageResult(NamedTuple):
    """What an outage costs."""

    outage: Outage
    lost: list[Supplied]
    """What goes dead or off: stations, buses, units and loads."""
    totals: Totals
    """Of `lost`."""
    islands: list[IslandLoss]
    """Those that split, died or lost their reference."""
    full_run: bool
    """The outage was worked out by a full run."""
    run: str
    """How it was followed up."""
    note: str
    """What a reader should know, such as "out already"."""
    failure: str
    """Why there is no topology with the outage; empty when there is one."""

    @property
    def text(self) -> str:
        """Such as "LN L1 + CB B1"."""
        return outage_text(self.outage)

    @property
    def has_effect(self) -> bool:
        """True when something goes dead or off, or an island splits, dies or loses its reference."""
        return bool(self.lost or self.islands)


@dataclass(frozen=True)
class Screening:
    """What a screening has brought."""

    outages: list[OutageResult]
    """Sorted by what is lost: without a topology first, then by MW of loads and by buses, most first."""
    findings: list[Finding]
    """Of the run before all outages."""
    left_out: list[str]
    """Zero-impedance branches that this run took as out of service."""

    def __iter__(self) -> Iterator[OutageResult]:
        return iter(self.outages)

    def __len__(self) -> int:
        return len(self.outages)


def outage_text(outage: Outage) -> str:
    """An outage for people.

    >>> outage_text((Component("LN", "L1"), Component("CB", "B1")))
    'LN L1 + CB B1'
    """
    return " + ".join(f"{component.table} {component.identity}" for component in outage)


def order_of_loss(result: OutageResult) -> tuple[bool, float, int, bytes]:
    """What a screening sorts its results by, worst first."""
    return not result.failure, -result.totals.p, -result.totals.buses, result.text.encode()
