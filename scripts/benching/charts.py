"""The page's charts, as SVG."""

import math
from html import escape

KINDS = {  # colour and names
    "plain loop": ("#1f77b4", ("plain loop",)),
    "bound": ("#7a7a7a", ("mem", "virtual call", "plain sums")),
    "standard library": ("#e08a00", ("std::", "sort and")), "Highway": ("#9467bd", ("vqsort",)),
    "OpenCV": ("#d62728", ("OpenCV",)), "NumPy": ("#2ca02c", ("NumPy",))}
INK, GRID, OURS = "#333", "#ddd", "#00796b"


def colour(peer):
    return next(one for one, starts in KINDS.values() if peer.startswith(starts))


def svg(width, height, parts):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
            f'font-family="system-ui, DejaVu Sans, sans-serif" font-size="12" fill="{INK}">\n'
            f'<rect width="{width}" height="{height}" rx="6" fill="#fff"/>\n'
            + "\n".join(parts) + "\n</svg>\n")


def text(x, y, words, **attributes):
    more = "".join(f' {name.replace("_", "-")}="{one}"' for name, one in attributes.items())
    return f'<text x="{x:.0f}" y="{y:.0f}"{more}>{escape(words)}</text>'


def line(x1, y1, x2, y2, stroke, width=1.0, **attributes):
    more = "".join(f' {name.replace("_", "-")}="{one}"' for name, one in attributes.items())
    return (f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" stroke="{stroke}" '
            f'stroke-width="{width}"{more}/>')


def power(exponent):
    return f"{10 ** exponent:,}" if exponent >= 0 else f"{10.0 ** exponent:g}"


def ratios(rows):
    """A line a row, a mark a peer at how many times as long it takes, from quartile to quartile."""
    rows = [row for row in rows if row["peers"]]
    left, right, top, step = 240, 40, 56, 17
    width, height = 900, top + step * len(rows) + 12
    bounds = [one for row in rows for peer in row["peers"] for one in peer["ratio"]]
    low, high = math.floor(math.log10(min(bounds))), math.ceil(math.log10(max(bounds)))

    def x(ratio):
        return left + (math.log10(ratio) - low) / (high - low) * (width - left - right)

    parts = []
    at = left
    for kind, (filled, _) in KINDS.items():
        parts += [f'<circle cx="{at}" cy="16" r="4" fill="{filled}"/>', text(at + 8, 20, kind)]
        at += 30 + 7 * len(kind)
    for exponent in range(low, high + 1):
        here = x(10.0 ** exponent)
        parts += [line(here, top - 6, here, height - 8, OURS if exponent == 0 else GRID,
                       1.5 if exponent == 0 else 1),
                  text(here, top - 10, "ours" if exponent == 0 else f"{power(exponent)}×",
                       text_anchor="middle", fill=OURS if exponent == 0 else INK)]
    for at, row in enumerate(rows):
        y = top + step * at + step / 2
        parts.append(text(left - 10, y + 4, f"{row['row']}, {row['size']:,}", text_anchor="end"))
        for peer in row["peers"]:
            first, middle, last = map(x, peer["ratio"])
            stroke = colour(peer["name"])
            parts += [line(first, y, last, y, stroke, 2),
                      f'<circle cx="{middle:.1f}" cy="{y:.1f}" r="4" fill="{stroke}"/>']
    return svg(width, height, parts)


def curves(all_curves):
    """The times of all instructions over the sizes, both as logarithms, beside n and n squared."""
    left, right, top, bottom, width, height = 70, 160, 20, 40, 960, 520
    points = [one for curve in all_curves for one in curve["points"]]
    sizes = [math.log10(one["size"]) for one in points]
    times = [math.log10(one["seconds"]) for one in points]
    low, high = math.floor(min(times)), math.ceil(max(times))
    first, last = min(sizes), max(sizes)

    def x(size):
        return left + (math.log10(size) - first) / (last - first) * (width - left - right)

    def y(seconds):
        return height - bottom - (math.log10(seconds) - low) / (high - low) * (height - top - bottom)

    units = {-9: "1 ns", -6: "1 µs", -3: "1 ms", 0: "1 s"}
    parts = []
    for exponent in range(low, high + 1):
        here = y(10.0 ** exponent)
        parts.append(line(left, here, width - right, here, GRID))
        if exponent in units:
            parts.append(text(left - 8, here + 4, units[exponent], text_anchor="end"))
    for exponent in range(math.ceil(first), math.floor(last) + 1):
        here = x(10.0 ** exponent)
        parts += [line(here, top, here, height - bottom, GRID),
                  text(here, height - bottom + 18, power(exponent), text_anchor="middle")]
    for curve in all_curves:
        path = " ".join(f"{x(one['size']):.1f},{y(one['seconds']):.1f}" for one in curve["points"])
        parts.append(f'<polyline points="{path}" fill="none" stroke="{OURS}" stroke-opacity="0.4">'
                     f'<title>{escape(curve["category"])}: {escape(curve["name"].strip())}</title>'
                     '</polyline>')
    ends = sorted((y(one["seconds"]), x(one["size"]), curve["name"].strip())
                  for curve in all_curves for one in curve["points"][-1:])
    named = []  # the slowest, as far as there is room
    for down, across, name in ends:
        if len(named) < 6 and all(down - above >= 12 for above, at in named if at == across):
            named.append((down, across))
            parts.append(text(across + 4, down + 4, name, font_size=11))
    # From 10 ns at 10 on, to where the frame ends.
    for slope, name, beside in ((1, "n", 5), (2, "n²", -24)):
        end = min(last, first + (high + 8) / slope)
        parts += [line(x(10 ** first), y(1e-8), x(10 ** end), y(10 ** (slope * (end - first) - 8)),
                       "#d62728", 1.5, stroke_dasharray="5 4"),
                  text(x(10 ** end) + beside, y(10 ** (slope * (end - first) - 8)) + 10, name,
                       fill="#d62728")]
    parts.append(text((left + width - right) / 2, height - 6, "elements or characters",
                      text_anchor="middle"))
    return svg(width, height, parts)
