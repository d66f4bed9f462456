"""The page docs/performance.md."""

from benching import charts, figures
from measuring.page import Page

# By definition each element of one input meets each one of another.
MULTIPLIES = {"_Nuv_Array_CNArrMathCorrelateCircular_": "windows times pattern"}

# What is wanted: what is said, rows, sizes, peers, and how many times as long these shall take at
# least, or None and the nanoseconds an element that ours may take; and what bounds ours where it
# does not hold.
LIMITS = [
    ("Sort takes at most vqsort's time", "Sort", (1000, 10000, 100000, 1000000),
     ("vqsort", "vqsort, AVX2"), 1.0,
     "keys are split across lines of the cache"),
    ("Sort of 100 takes at most 1.3 times vqsort's", "Sort", (100,), ("vqsort", "vqsort, AVX2"),
     1 / 1.3, "as above"),
    ("IndexArray from 1,000 on is 8 times as fast as std::sort of indices", "IndexArray",
     (1000, 10000, 100000, 1000000), ("std::sort",), 8.0,
     "a third of the time goes to reading the numbers, making words of them and of their indices, "
     "and writing the indices as numbers"),
    ("point Sort by x from 1,000 on is 5 times as fast as std::sort", "point Sort, x",
     (1000, 10000, 100000, 1000000), ("std::sort",), 5.0,
     "points are fetched from all over the array, which from 100,000 on is not in a near cache"),
    ("point Sort by distance from 1,000 on is 5 times as fast as std::sort", "point Sort, distance",
     (1000, 10000, 100000, 1000000), ("std::sort",), 5.0, "as above"),
    ("10 passes of Smooth are 4 times as fast as plain loops", "Smooth 10",
     (1000, 100000, 1000000), ("plain loop",), 4.0,
     "both wait for memory at 1,000,000; with AVX2 the arithmetic units are all busy"),
    ("a line fit takes at most OpenCV's time", "line fit, no outliers", (100, 1000, 10000),
     ("OpenCV L2",), 1.0, ""),
    ("a circle fit from 1,000 points on takes at most 12 ns a point", "circle fit, no outliers",
     (1000, 10000), None, 12.0,
     "three quarters are the host's own fit and its distance of each point from the centre"),
    ("ReplaceStr takes at most 1.7 times one search and one copy", "ReplaceStr, 10000",
     (1 << 20,), ("memmem, memcpy",), 1 / 1.7, ""),
]


def nanoseconds(row):
    return row["seconds"][1] * 1e9 / row["size"]


def short(number):
    return f"{number:.2f}" if number < 10 else f"{number:.1f}" if number < 100 else f"{number:.0f}"


def spread(three):
    """A median with its quartiles."""
    return f"{short(three[1])} ({short(three[0])} to {short(three[2])})"


def table(rows):
    """The one table: a line a row, as cells."""
    return [[row["row"], f"{row['size']:,}", short(nanoseconds(row)),
             ", ".join(f"{peer['name']} {spread(peer['ratio'])}" for peer in row["peers"])]
            for row in rows]


def limits(rows):
    """What is wanted and what is measured, the worst of sizes and peers, as cells."""
    by_key = {figures.key(row): row for row in rows}
    cells = []
    for label, name, sizes, peers, least, bound in LIMITS:
        found = []
        for size in sizes:
            row = by_key.get(f"{name}/{size}")
            if row and peers is None:
                found.append((nanoseconds(row), size, f"{nanoseconds(row):.1f} ns"))
            for peer in row["peers"] if row and peers else ():
                if peer["name"] in peers:
                    found.append((-peer["ratio"][1], size,
                                  f"{spread(peer['ratio'])} times {peer['name']}'s speed"))
        if found:
            worst, size, told = max(found)
            holds = worst <= least if peers is None else -worst >= least
            cells.append([label, f"{told} at {size:,}", "yes" if holds else f"**no**: {bound}"])
    return cells


def summary(rows):
    """In how many comparisons ours is faster; bounds are none."""
    bounds = charts.KINDS["bound"][1]
    ratios = [(peer["ratio"][1], row, peer["name"]) for row in rows for peer in row["peers"]
              if not peer["name"].startswith(bounds)]
    least, row, peer = min(ratios, key=lambda one: one[0])
    return (f"Of {len(ratios)} comparisons with another way to the same answer ours is faster in "
            f"{sum(ratio > 1 for ratio, _, _ in ratios)}; it stands worst in {row['row']} of "
            f"{row['size']:,}, where {peer} takes {short(least)} times as long.")


def growth(page, measured):
    page.write("""
        ## How times grow

        Each instruction on arrays or texts, over sizes from 10 to 10,000,000, up to the first
        that takes more than a second; inputs are random, positions and counts work on about half
        of the array, and where nothing else has a size, one input is repeated. A call is measured
        after others of the same size. The exponent is that of the straight line through the
        logarithms of times and sizes from 1000 on: 0 where the time does not depend on the size,
        1 where it is in proportion, 1.09 for n log n. A curve bends where its exponent from one
        size to the next is above 1.25; the last column names the cache that inputs and results
        outgrow there, from a third of it on, and how many fresh pages one call takes from the
        system.

        ![The time of each instruction over the size of its inputs](performance-growth.svg)""")
    rows, steep = [], []
    for curve in measured["curves"]:
        points = curve["points"]
        slope = figures.exponent(points)
        if slope is None:
            continue
        name = f"{curve['category']}: {curve['name'].strip()}"
        multiplies = MULTIPLIES.get(curve["identifier"])
        found = figures.bends(points, measured["caches"])
        told = ([f"by definition {multiplies}"] if multiplies else
                [f"{size:,}: {reason or 'not known why'}" for size, reason in found])
        if figures.is_steep(points, measured["caches"]) and not multiplies:
            steep.append(name)
        rows.append([name, f"{slope:.2f}", f"{points[-1]['size']:,}",
                     short(points[-1]["seconds"] * 1e9 / points[-1]["size"]), "; ".join(told)])
    page.write(f"""
        {len(rows)} instructions. Faster than n log n, once bends with a reason are left out (by a
        mean exponent above {figures.STEEPEST} from size to size), grow those that multiply two
        lengths by definition, and else {", ".join(steep) or "none"}. The caches:
        {", ".join(f"{name} {size >> 10:,} KiB" for name, size in measured["caches"].items())}.""")
    page.table(["instruction", "exponent", "up to", "ns an element there", "bends"], rows)


def missing(run):
    """The peers that are not installed."""
    return ", ".join(name for name, version in run["peers"].items() if version is None)


def write(run, growth_run):
    page = Page()
    peers = ", ".join(f"{name} {version}" for name, version in run["peers"].items() if version)
    rows, machine = run["rows"], run["machine"]
    page.write(f"""
        # Performance

        What instructions cost beside what else one would take, by `scripts/bench`, which builds,
        measures, writes this page, and names what got slower since the run kept in
        `bench/kept.json`. {summary(rows)}
        {f"Left out, since not installed: {missing(run)}." if missing(run) else ""}""")
    page.table(["machine", ""], [["processor", machine["processor"]], ["compiler", run["compiler"]],
                                 ["system", machine["system"]], ["peers", peers],
                                 ["date", run["date"]]])
    page.write("""
        An instruction and its peers run in turn, in batches of some milliseconds, in one process
        and on one processor that is else idle (`nice -n -15 taskset -c 0 scripts/bench`), NumPy
        in a second process that waits meanwhile; what counts is the processor's time. Inputs and
        outputs are taken in turn by all, over a million elements where the work depends on the
        values. A ratio is a peer's time over ours in the same round: above 1 ours is faster. It
        is the median of 7 to 31 rounds, with the quartiles in parentheses. Quote ratios, not
        times; where a million elements go through memory, ratios differ by up to a third between
        runs.

        The peers are Debian's packages. Plain loops are compiled with -O3 for any x86-64
        processor, so with SSE2, where ours takes AVX2 or AVX-512 if there is; they give the same
        bits.
        vqsort is Highway's, in the widest lanes of the processor, which may be AVX-512, and in
        those of AVX2. memcpy copies as many bytes as the instruction reads and writes, "plain
        sums" adds up what any fit needs of the points, "memmem, memcpy" searches and copies the
        text once: what about bounds the time, but is no answer. OpenCV correlates and fits in
        floats. NumPy adds up in another order; where it can, it writes to an array that it is
        given, else it makes a new one each time.

        ![How many times as long as ours the peers take](performance-ratios.svg)

        Each row at 100,000 elements, or at the largest size below that was measured; from
        quartile to quartile. Right of "ours" ours is faster.

        ## Wanted and measured""")
    page.table(["wanted", "worst measured", "holds"], limits(rows))
    page.write("""
        ## All rows

        Sizes are elements, characters or points; a call of an instruction on two numbers takes
        twice what its row says.""")
    page.table(["row", "size", "ours, ns an element", "peers: times as long as ours"], table(rows))
    if growth_run:
        growth(page, growth_run)
    return page.text()
