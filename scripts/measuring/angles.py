"""Trigonometric instructions against values to 50 digits."""

import math
from decimal import Decimal

from measuring import exact
from measuring.page import median, upward
from measuring.scenes import Source

COUNT = 300


def step(error):
    """The next of some coarse steps, which outlive the small differences between C libraries."""
    return next((f"{limit:g}" for limit in (0.6, 1, 1.5, 2, 3) if error <= limit), "more than 3")


def scaled(source, low, high):
    """Of either sign; even over the powers of two between."""
    return source.double((1023 + low, 1023 + high - 1))


def near_multiples(source):
    """The doubles nearest to whole multiples of a quarter turn: the hardest to reduce."""
    return float(exact.PI_LONG / 2 * (source.below(1_000_000) - 500_000))


ANGLES = [
    ("up to a half turn", lambda source: source.between(-3.14, 3.14)),
    ("2⁻⁵⁰⁰ to 2⁻¹", lambda source: scaled(source, -500, -1)),
    ("4 to 2²⁰", lambda source: scaled(source, 2, 20)),
    ("2²⁰ to 2⁶⁰", lambda source: scaled(source, 20, 60)),
    ("2⁶⁰ to the greatest", lambda source: scaled(source, 60, 1024)),
    ("nearest to multiples of π/2", near_multiples),
]
RATIOS = [
    ("−1 to 1", lambda source: source.between(-1.0, 1.0)),
    ("2⁻⁵⁰⁰ to 2⁻¹", lambda source: scaled(source, -500, -1)),
    ("within 2⁻¹ to 2⁻⁵³ of ±1", lambda source:
        source.sign() * (1.0 - abs(scaled(source, -53, -1)))),
]
BEYOND = [
    ("1 to 2⁶⁰", lambda source: scaled(source, 0, 60)),
    ("2⁶⁰ to the greatest", lambda source: scaled(source, 60, 1024)),
]


def deg_to_rad(degrees):
    return Decimal(degrees) * exact.PI / 180


def rad_to_deg(radians):
    return Decimal(radians) * 180 / exact.PI


FORWARD = [("Sin", exact.sin), ("Cos", exact.cos), ("Tan", exact.tan)]
INVERSE = [("ArcSin", exact.arcsin), ("ArcCos", exact.arccos), ("ArcTan", exact.arctan)]
CONVERSIONS = [("DegToRad", deg_to_rad), ("RadToDeg", rad_to_deg)]
DEGREES_UP_TO = [("180°", 180), ("100 turns", 36_000), ("10 million turns", 3_600_000_000)]


def errors_of(library, name, function, arguments, unit="radians"):
    """In units in the last place of the exact values."""
    results = library.numbers([(name, [x]) for x in arguments], unit)
    return [exact.ulps(result, function(x)) for result, x in zip(results, arguments)]


def in_radians(library, page, functions, ranges, seed):
    rows = []
    for r, (label, draw) in enumerate(ranges):
        row = [label]
        for f, (name, function) in enumerate(functions):
            if draw in [draw for _, draw in BEYOND] and name != "ArcTan":
                row.append("")
                continue
            source = Source(seed + 10 * r + f)
            arguments = [draw(source) for _ in range(COUNT)]
            worst = max(errors_of(library, name, function, arguments))
            page.expect(worst <= 1, f"{name}, {label}: {worst:.2f} ulps")
            row.append(step(worst))
        rows.append(row)
    page.table(["arguments", *(name for name, _ in functions)], rows)


def conversions(library, page):
    rows = []
    for f, (name, function) in enumerate(CONVERSIONS):
        source = Source(500 + f)
        arguments = [source.double((100, 1900)) for _ in range(COUNT)]
        errors = errors_of(library, name, function, arguments)
        page.expect(max(errors) <= 1.6, f"{name}: {max(errors):.2f} ulps")
        rows.append([name, *map(upward, (max(errors), median(errors)))])
    for f, (name, function) in enumerate(INVERSE):
        source = Source(510 + f)
        arguments = [source.between(-1.0, 1.0) for _ in range(COUNT)]
        worst = max(errors_of(library, name, lambda x, function=function: rad_to_deg(function(x)),
                              arguments, "degrees"))
        page.expect(worst <= 2.2, f"{name} in degrees: {worst:.2f} ulps")
        rows.append([f"{name} in degrees", step(worst), ""])
    page.table(["instruction", "worst error", "median"], rows)


def in_degrees(library, page):
    rows = []
    for f, (name, function) in enumerate(FORWARD[:2]):
        row = [f"{name} in degrees"]
        for r, (label, limit) in enumerate(DEGREES_UP_TO):
            source = Source(520 + 10 * f + r)
            arguments = [source.between(-limit, limit) for _ in range(COUNT)]
            results = library.numbers([(name, [x]) for x in arguments], "degrees")
            worst = max(abs(Decimal(result) - function(deg_to_rad(x)))
                        for result, x in zip(results, arguments))
            # The rounding of the angle in radians, and that of the result.
            page.expect(worst <= 1.6 * math.ulp(limit * math.pi / 180) + 2e-16,
                        f"{name} in degrees up to {label}: off by {worst:.1e}")
            row.append(upward(worst, 1))
        rows.append(row)
    page.table(["instruction", *(f"up to {label}" for label, _ in DEGREES_UP_TO)], rows)


def write(library, page):
    page.write(f"""
        ## Trigonometric instructions

        Against values to 50 digits, at {COUNT} random doubles of each range, even over the powers
        of two where it spans many. Errors are in ulps, units in the last place of the exact value:
        the double nearest to it is off by half a unit, and none can do better.

        Sin, Cos, Tan and their inverses are those of the C library, here the GNU C library's; the
        system's own on Windows may differ in the last bit. So their errors are told in steps: 0.6,
        1, 1.5, 2 and 3.""")
    in_radians(library, page, FORWARD, ANGLES, 400)
    in_radians(library, page, INVERSE, RATIOS + BEYOND, 600)
    page.write("""
        **Conclusion.** In radians every answer is the double nearest to the exact value or, where
        that lies near the middle between two, one of these, for angles of any size: large ones are
        reduced with all the digits of π that they need. But the double behind 2⁶⁰ is 256 further
        on, many turns away; what such an angle means is up to its source.

        Degrees are converted by a product with π and a quotient, each rounded, and π itself is
        rounded to a double; DegToRad and RadToDeg, and angles in degrees where the host is set to
        them, are so.""")
    conversions(library, page)
    page.write("""
        Sines and cosines of angles in degrees have the error of the converted angle, absolute and
        in proportion to the angle. The worst errors:""")
    in_degrees(library, page)
    page.write("""
        **Conclusion.** The sine of 180° is 1.2e-16, not 0, and the cosine of 90° 6.1e-17: compare
        with a tolerance. Bring angles of many turns into one turn while they are in degrees, where
        multiples of 360 are exact.""")
    folded = library.numbers([("Sin", [180.0]), ("Cos", [90.0])], "degrees")
    page.expect([f"{value:.1e}" for value in folded] == ["1.2e-16", "6.1e-17"],
                f"sine of 180°, cosine of 90°: {folded}")
