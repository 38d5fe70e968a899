"""Network analysis of a control centre: models, topology, breaker flows, outages, the realtime database.

    import dtsdb

    network = dtsdb.open("grid.zip")
    print(network.validate().good, network.topology().islands)

docs/python.md is the guide. Powers are in MW and Mvar, voltages in kV, currents in A.
"""

from __future__ import annotations

from typing import Iterable

from dtsdb import _core, errors, progress, results, study, table, tables
from dtsdb.errors import (
    Error,
    FaultyModelError,
    FileError,
    InternalError,
    NoTopologyError,
    RefusedError,
    UnknownComponentError,
    UnknownNameError,
    UsageError,
)
from dtsdb.network import Drawing, Edits, Event, Network, Switched, from_image, open
from dtsdb.realtime import Change, Realtime, realtime
from dtsdb.results import (
    BreakerFlow,
    Component,
    Counts,
    Dead,
    Effect,
    Finding,
    FlowSet,
    Flows,
    FollowedBranch,
    Island,
    IslandChange,
    IslandLoss,
    IslandPart,
    Item,
    LogRow,
    MovedNode,
    Node,
    Outage,
    OutageResult,
    Outcome,
    Run,
    Screening,
    Section,
    Supplied,
    Topology,
    Totals,
    Validation,
    order_of_loss,
    outage_text,
)
from dtsdb.table import Field, Table, TableInfo

__all__ = [
    "BreakerFlow", "Change", "Component", "Counts", "Dead", "Drawing", "Edits", "Effect", "Error", "Event",
    "FaultyModelError", "Field", "FileError", "Finding", "FlowSet", "Flows", "FollowedBranch", "InternalError",
    "Island", "IslandChange", "IslandLoss", "IslandPart", "Item", "LogRow", "MovedNode", "Network",
    "NoTopologyError", "Node", "Outage", "OutageResult", "Outcome", "Realtime", "RefusedError", "Run",
    "Screening", "Section", "Supplied", "Switched", "Table", "TableInfo", "Topology", "Totals",
    "UnknownComponentError", "UnknownNameError", "UsageError", "Validation", "all_pairs", "encoding", "errors",
    "from_image", "open", "order_of_loss", "outage_text", "progress", "realtime", "results", "sample_pairs",
    "set_encoding", "study", "table", "tables",
]

__version__: str = _core.version


def encoding() -> str:
    """What the bytes of identities mean: "GBK" or "UTF-8"."""
    return _core.encoding()


def set_encoding(name: str) -> None:
    """Chooses "gbk" or "utf-8", before the first model is opened; else the variable DTSDB_ENCODING does, or it is GBK.

    Text tables, CGMES and XIIDM files have an encoding of their own and are converted.
    """
    _core.set_encoding(name)


def all_pairs(outages: Iterable[results.Outage]) -> list[results.Outage]:
    """All pairs of two of these outages: the first with each behind it, and so on.

    >>> pairs = all_pairs([(("LN", "a"),), (("LN", "b"),), (("LN", "c"),)])
    >>> [results.outage_text(pair) for pair in pairs]
    ['LN a + LN b', 'LN a + LN c', 'LN b + LN c']
    """
    return _core.all_pairs(outages)


def sample_pairs(outages: Iterable[results.Outage], count: int, seed: int = 1) -> list[results.Outage]:
    """`count` of these pairs at random, all of them when there are no more. The same seed gives the same pairs."""
    return _core.sample_pairs(outages, count, seed)
