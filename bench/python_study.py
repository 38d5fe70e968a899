#!/usr/bin/python3
"""Cases a second of a study with one worker process and with several, as the package for Python works them off.

    PYTHONPATH=build/release/python bench/python_study.py MODEL [CASES] [JOBS...]
"""

from __future__ import annotations

import sys
import time

import dtsdb
from dtsdb import study


def main(model: str, count: int = 20000, *jobs: int) -> None:
    network = dtsdb.open(model)
    network.validate()
    cases = dtsdb.sample_pairs(network.outages(["LN", "XF", "CB"]), count)
    print(f"{model}: {len(network['CB'])} breakers, {len(cases)} pairs")
    for number in jobs or (1, 2):
        begin = time.perf_counter()
        study.run(network, cases, jobs=number, progress=False)
        print(f"jobs {number}: {len(cases) / (time.perf_counter() - begin):.0f} cases a second")


if __name__ == "__main__":
    main(sys.argv[1], *map(int, sys.argv[2:]))
