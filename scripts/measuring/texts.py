"""Formatted and scanned numbers against exact decimal expansions."""

import math
import struct
from decimal import ROUND_HALF_EVEN, Context, Decimal, localcontext

from measuring.scenes import Source

COUNT = 500
MOST_DIGITS = 1200  # more than any double has
FORMATS = ["PrintfNum %.{}e", "PrintfNum %.{}f", "PrintfNum %.{}g", "NumToString, {} decimals"]

FORMS = ["PrintfNum %.17g", "as few digits as will do"]
BETWEEN = "between two doubles, 800 digits"


def any_double(source):
    return source.double()


def moderate(source):
    return source.double((1023 - 30, 1023 + 30))


def subnormal(source):
    return source.double((0, 0))


def tie(source):
    """A few binary decimals, which end in 5: formats with fewer decimals lie between two texts."""
    return source.sign() * source.below(100_000) / 2 ** (1 + source.below(6))


NUMBERS = [("any double", any_double), ("2⁻³⁰ to 2³⁰", moderate), ("subnormal", subnormal),
           ("ties", tie)]


def scientific(number, digits):
    """As C writes %.{digits}e."""
    rounded = Context(prec=digits + 1, rounding=ROUND_HALF_EVEN).create_decimal(Decimal(number))
    sign, figures, _ = rounded.as_tuple()
    exponent = rounded.adjusted() if rounded else 0
    text = "".join(map(str, figures)).ljust(digits + 1, "0") if rounded else "0" * (digits + 1)
    point = "." if digits else ""
    return f"{'-' * sign}{text[0]}{point}{text[1:]}e{exponent:+03d}"


def fixed(number, decimals):
    """As C writes %.{decimals}f."""
    with localcontext() as context:
        context.prec = MOST_DIGITS
        return f"{Decimal(number).quantize(Decimal(1).scaleb(-decimals), ROUND_HALF_EVEN):f}"


def general(number, digits):
    """As C writes %.{digits}g: the shorter of both without zeros at the end."""
    digits = max(digits, 1)
    text = scientific(number, digits - 1)
    exponent = int(text[text.index("e") + 1:])
    if -4 <= exponent < digits:
        text = fixed(number, digits - 1 - exponent)
        return text.rstrip("0").rstrip(".") if "." in text else text
    head, tail = text.split("e")
    return (head.rstrip("0").rstrip(".") if "." in head else head) + "e" + tail


def formatted(library, page):
    rows = []
    for r, (label, draw) in enumerate(NUMBERS):
        row = [label]
        for f, (name, write_text) in enumerate(zip(FORMATS, [scientific, fixed, general, fixed])):
            source = Source(700 + 10 * r + f)
            cases = [(draw(source), source.below(6 if draw is tie else 41)) for _ in range(COUNT)]
            calls = [("NumToString", [x], False, 8, 0, digits) if name.startswith("Num") else
                     ("PrintfNum", [f"%.{digits}{name[-1]}", x]) for x, digits in cases]
            texts = library.firsts(calls)
            wrong = [(x, digits, text) for (x, digits), text in zip(cases, texts)
                     if text != write_text(x, digits)]
            page.expect(not wrong, f"{name}, {label}: {len(wrong)} misrounded, as {wrong[:1]}")
            row.append(f"{len(wrong)} of {COUNT}")
        rows.append(row)
    page.table(["numbers", *(name.format("n") for name in FORMATS)], rows)


def bits(number):
    return struct.pack("<d", number)


def halfway(source):
    """The exact text of the middle between two neighbours, or a text next to it; and the double
    that is nearest, of two equally near ones the one whose last bit is 0."""
    low = abs(source.double((0, 2045)))
    high = math.nextafter(low, math.inf)
    with localcontext() as context:
        context.prec = MOST_DIGITS
        middle = (Decimal(low) + Decimal(high)) / 2
        which = source.below(3) - 1
        middle += which * Decimal(1).scaleb(middle.adjusted() - 800)
    even = low if bits(low)[0] % 2 == 0 else high
    return str(middle), [low, even, high][which + 1]


def scanned(library, page):
    cases = []
    for r, (label, draw) in enumerate(NUMBERS[:3]):
        source = Source(800 + r)
        numbers = [draw(source) for _ in range(COUNT)]
        by_printf = library.firsts([("PrintfNum", ["%.17g", x]) for x in numbers])
        cases += [(f"{form}, {label}", written, numbers)
                  for form, written in zip(FORMS, (by_printf, list(map(repr, numbers))))]
    source = Source(810)
    cases.append((BETWEEN, *zip(*(halfway(source) for _ in range(COUNT)))))
    rows = []
    for label, written, numbers in cases:
        results = library.answers([("StringToNum", [text]) for text in written])
        wrong = [text for text, number, (result, success) in zip(written, numbers, results)
                 if success is not True or bits(float(result)) != bits(number)]
        page.expect(not wrong, f"StringToNum, {label}: {len(wrong)} wrong, as {wrong[:1]}")
        rows.append([label, f"{len(wrong)} of {COUNT}"])
    page.table(["text", "not the nearest double"], rows)


def write(library, page):
    page.write(f"""
        ## Numbers as texts, and back

        Each figure counts the wrong ones among {COUNT} random numbers: even over the exponents of
        doubles, of everyday sizes, below the smallest normal double, and ties, which lie in the
        middle between two texts. n is random, from 0 to 40, to 5 for ties. A text is right where
        it is the exact decimal expansion of the double, rounded half to even, to the last
        character.""")
    formatted(library, page)
    page.write("""
        StringToNum read texts by PrintfNum; texts with the fewest digits that tell a double from
        its neighbours; and the hardest there are, in the middle between two doubles or off it by
        one in the 800th digit. An answer is right where it is the very double, the nearest to the
        text, in each bit.""")
    scanned(library, page)
    page.write("""
        **Conclusion.** Texts are correctly rounded, however many digits are asked for, and read
        back without loss from 17 significant digits on ("%.17g"). A format with fewer decimals
        rounds the double, not the decimal number that someone typed: 2.675 is stored as
        2.67499999999999982236431605997495353221893310546875, and "%.2f" gives 2.67.""")
    typed = library.firsts([("PrintfNum", ["%.2f", 2.675]), ("PrintfNum", ["%.50f", 2.675])])
    page.expect(typed == ["2.67", "2.67499999999999982236431605997495353221893310546875"],
                f"2.675 is formatted as {typed}")
