"""The fits among outliers, by the program fit_trials of the benchmarks."""

import re
import subprocess
from collections import defaultdict

from measuring.page import upward

HEADING = "## Fits among outliers"
SEED = 1
SIZES = ["8-14", "15-48", "49-512", "513-5000"]


def found(lines):
    """Figure and outliers -> share of outliers -> found, in percent."""
    table = defaultdict(dict)
    for line in lines:
        row = re.match(r"(\S.{16})(\S.{10})\s*(\d+) %\s*([\d.]+)", line)
        if row:
            table[f"{row[1].strip()}, {row[2].strip()}"][int(row[3])] = float(row[4])
    return table


def sums(lines):
    """Figure -> for each size, scenes with a larger sum, all scenes, the largest quotient."""
    table = {}
    for line in lines:
        cells = re.findall(r"(\d+)/ *(\d+) +(\S+)", line)
        if len(cells) == len(SIZES):
            row = table.setdefault(line[:17].strip(), [(0, 0, 0.0)] * len(SIZES))
            table[line[:17].strip()] = [
                (larger + int(cell[0]), scenes + int(cell[1]), max(quotient, float(cell[2])))
                for (larger, scenes, quotient), cell in zip(row, cells)]
    return table


def write(program, page):
    run = subprocess.run([program.resolve(), str(SEED)], stdout=subprocess.PIPE, encoding="utf-8")
    lines = run.stdout.splitlines()
    rates, totals = found(lines), sums(lines)
    trials, points = re.findall(r"\d+", lines[0])
    page.expect(run.returncode == 0, "fit_trials: not as promised")
    page.expect(len(rates) == 6 and len(totals) == 4 and
                all(list(row) == [10, 20, 30, 40] for row in rates.values()),
                "fit_trials: a table of another shape")
    page.write(f"""
        {HEADING}

        By `build/bench/bin/fit_trials {SEED}`; {SEED} is the seed of the second table, the first
        has its own, the share of outliers. The scenes are made with the C++ and the C library's
        functions: with others some may differ.

        In percent of {trials} trials of {points} points, how often a fit told the true share of
        outliers found the figure: with each parameter within three standard errors of the fit to
        the true points alone. Points scatter by 0.1 about a line of length 100 or a circle of
        diameter 100; outliers are spread over the scene or lie in one blob beside the figure, 1 or
        more off it.""")
    page.table(["figure, outliers", *(f"{share} %" for share in (10, 20, 30, 40))],
               [[name, *(f"{rate:.1f}" for rate in row.values())] for name, row in rates.items()])
    page.write("""
        The points kept shall have the least sum of squares of all choices. Of more points than can
        be tried nobody knows it, but it is not above that of the true points. The table counts the
        scenes whose sum is larger than that by more than a millionth, with the worst quotient; of
        up to 14 points the least is known, from all choices. The outliers are of seven kinds:
        spread, one and two blobs, far away, all in one place, along a second edge, along a smaller
        circle.""")
    page.table(["figure", *(f"{size.replace('-', ' to ')} points" for size in SIZES)],
               [[name, *(f"{larger} of {scenes}" + (f", {upward(quotient, 3)}" if larger else "")
                         for larger, scenes, quotient in row)] for name, row in totals.items()])
    page.write("""
        **Conclusion.** Told the share of outliers, the fits find line, circle and arc in more than
        99 of 100 scenes, even with 40 % of outliers.""")
    page.expect(min(rate for row in rates.values() for rate in row.values()) > 99,
                "fit_trials: found in no more than 99 %")
