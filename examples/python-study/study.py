"""N-1 of the sample network: what the loss of each single component would cost.

Run it where the package dtsdb is found, after a build for example by

    PYTHONPATH=build/release/python /usr/bin/python3 examples/python-study/study.py
"""

from __future__ import annotations

import sys
from pathlib import Path

import dtsdb

MODEL = Path(__file__).resolve().parents[1] / "ieee14"


def describe(result: dtsdb.OutageResult) -> str:
    """What an outage costs, in one line."""
    totals = result.totals
    costs = [f"{totals.p:.1f} MW"] if totals.loads else []
    costs += [f"bus {thing.identity}" for thing in result.lost if thing.table == "BUS"]
    costs += [f"unit {thing.identity}" for thing in result.lost if thing.table == "UN"]
    costs += [f"island of {loss.reference} {'split' if loss.parts else 'dead'}"
              for loss in result.islands if len(loss.parts) != 1]
    return f"{result.text:28} {', '.join(costs) or 'another reference'}"


def main(model: str) -> None:
    with dtsdb.open(model) as network:
        found = network.validate()
        if not found.good:
            sys.exit("\n".join(f"{finding.table} {finding.identity}: {finding.text}" for finding in found))
        screening = dtsdb.study.run(network, network.outages(["LN", "XF", "BUS", "UN"]))
        costing = [result for result in screening if result.has_effect]
        load = network["LD"]["p"].sum()
        print(f"{len(screening)} outages, {len(costing)} with an effect; {load:.1f} MW of loads")
        for result in costing:
            print(describe(result))
        print()
        print("The branches among them, tried out one by one:")
        for branch in (result.outage[0] for result in costing if result.outage[0].table in ("LN", "XF")):
            with network.switch(("out", branch.table, branch.identity)) as switched:
                for island in network.topology().islands:
                    print(f"{branch.identity} out: island {island.number}, buses {island.counts.buses},"
                          f" loads {island.counts.loads}, reference {island.reference or '-'}")
                print(f"{branch.identity} out: without supply {len(switched.effect().lost)}")


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else str(MODEL))
