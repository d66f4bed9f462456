#!/usr/bin/env python3
"""What calls from Python cost: bench/python_calls.py [NUVHOST]

The medians of many calls, one after another, and the least of them.
"""

import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "python"))

import nuvformula  # noqa: E402
from nuvformula import process, values  # noqa: E402


def report(what, call, rounds, elements=None):
    times = []
    for _ in range(rounds):
        begin = time.perf_counter()
        call()
        times.append(time.perf_counter() - begin)
    times.sort()
    median, least = times[rounds // 2], times[0]
    line = f"{what:44} {median * 1e6:9.1f} us, at least {least * 1e6:9.1f} us"
    if elements:
        line += f"; {median * 1e9 / elements:7.1f} ns an element"
    print(line)


nuvhost = sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/linux/bin/nuvhost"
with nuvformula.Host(nuvhost) as f:
    report("two numbers, one result", lambda: f.Divide(1.5, 2.5), 20_000)
    few = [(6.0, 5.0), (5.0, 6.0), (4.0, 5.0), (5.0, 4.0)]
    report("four points, 15 results", lambda: f.PtsToBestCircle(points=few), 5_000)
    for fewest, way in ((process.FEWEST_IN_FILE, "as usual"), (10**9, "as JSON")):
        process.FEWEST_IN_FILE = fewest  # inputs alone
        for count in (63, 64, 1000, 100_000):
            given = [count / 3 + one / 7 for one in range(count)]
            kinds = [("list", given)]
            if values.numpy is not None:
                kinds.append(("NumPy", values.numpy.array(given)))
            for kind, one in kinds:
                report(f"{count} numbers there {way}, and back, {kind}", lambda: f.Reverse(one),
                       max(20, 200_000 // count), count)
