"""What the measurements say: what got slower, and how times grow."""

import math

# What more of a fall beyond the spread of both runs is, for a regression: runs differ by more than
# the rounds of one.
FALL = 1.10
# A local exponent above this is a bend: n log n has 1.15 from 100 to 1000, and less from there on.
BEND = 1.25
# From this size on the exponent is fitted: below, the call itself counts.
FROM = 1000
# The exponent of n log n from 1000 to 10 million is 1.09; the rest is for noise.
STEEPEST = 1.2
PAGE = 4096
# From this part of a cache on its edge is felt: others use it too.
PART = 1 / 3


def key(row):
    return f"{row['row']}/{row['size']}"


def regressions(now, before):
    """What got slower, as texts by row: against every peer that both runs have the ratio fell, by
    more than the spread of either run and by more than FALL; one peer that got faster is none."""
    kept = {key(row): row for row in before}
    found = {}
    for row in now:
        if key(row) not in kept:
            continue
        old = {peer["name"]: peer["ratio"] for peer in kept[key(row)]["peers"]}
        pairs = [(peer["name"], old[peer["name"]], peer["ratio"]) for peer in row["peers"]
                 if peer["name"] in old]
        if pairs and all(new[2] < was[0] and new[1] * FALL < was[1] for _, was, new in pairs):
            found[key(row)] = "; ".join(
                f"{was[1]:.2f} times as fast as {name} in the kept run, now {new[1]:.2f}"
                for name, was, new in pairs)
    return found


def exponent(points):
    """The slope of the straight line through the logarithms of sizes and times, from FROM on; none
    for fewer than two points."""
    logs = [(math.log(one["size"]), math.log(one["seconds"])) for one in points
            if one["size"] >= FROM]
    if len(logs) < 2:
        return None
    x = sum(a for a, _ in logs) / len(logs)
    y = sum(b for _, b in logs) / len(logs)
    return sum((a - x) * (b - y) for a, b in logs) / sum((a - x) ** 2 for a, _ in logs)


def slope(less, more):
    return math.log(more["seconds"] / less["seconds"]) / math.log(more["size"] / less["size"])


def bends(points, caches):
    """Where the curve turns upward, with why: (size, reason); the reason is None where there is
    neither a cache, of which sizes are given by name, that the values outgrow, nor a fault of a
    page for every eighth page of them."""
    found = []
    for less, more in zip(points, points[1:]):
        if more["size"] < FROM or slope(less, more) <= BEND:
            continue
        edges = [name for name, size in caches.items()
                 if less["bytes"] <= size and PART * size < more["bytes"]]
        reasons = [f"{' and '.join(edges)} outgrown"] if edges else []
        if more["faults"] * PAGE * 8 > more["bytes"]:
            reasons.append(f"{more['faults']:,.0f} page faults")
        found.append((more["size"], "; ".join(reasons) or None))
    return found


def is_steep(points, caches):
    """Whether times grow faster than n log n, but for bends that have a reason."""
    explained = {size for size, reason in bends(points, caches) if reason}
    slopes = [slope(less, more) for less, more in zip(points, points[1:])
              if less["size"] >= FROM and more["size"] not in explained]
    return sum(slopes) > STEEPEST * len(slopes)
