"""The page as it is written, and what was found wanting."""

import textwrap
from decimal import ROUND_CEILING, Decimal


class Page:
    def __init__(self):
        self.blocks = []
        self.complaints = []

    def write(self, text):
        """A heading, or paragraphs, each wrapped anew."""
        for paragraph in textwrap.dedent(text).strip().split("\n\n"):
            if not paragraph.startswith(("#", "```", "- ")):
                paragraph = textwrap.fill(" ".join(paragraph.split()), 100,
                                          break_long_words=False, break_on_hyphens=False)
            self.blocks.append(paragraph)

    def table(self, heads, rows):
        """A table; all columns but the first are to the right."""
        lines = [heads, ["---"] + ["--:"] * (len(heads) - 1), *rows]
        self.blocks.append("\n".join("| " + " | ".join(map(str, line)) + " |" for line in lines))

    def expect(self, holds, complaint):
        if not holds:
            self.complaints.append(complaint)

    def text(self):
        return "\n\n".join(self.blocks) + "\n"


def upward(number, digits=2):
    """A positive number at some significant digits, rounded up; 0 as it is."""
    number = Decimal(number)
    if number == 0:
        return "0"
    step = Decimal(1).scaleb(number.adjusted() - digits + 1)
    number = number.quantize(step, rounding=ROUND_CEILING)
    return f"{number:f}" if -3 <= number.adjusted() <= 3 else f"{number:.{digits - 1}e}"


def compact(number, digits=1):
    """A number at a few significant digits: 0.02, 12, 5e7."""
    if 0.001 <= number < 1000:
        return f"{number:.{digits}g}" if number < 10 else f"{number:.0f}"
    mantissa, exponent = f"{number:.{digits - 1}e}".split("e")
    return f"{mantissa}e{int(exponent)}"


def digits_text(digits):
    """A count of digits, rounded down."""
    return f"{int(digits * 10) / 10:.1f}"


def median(values):
    """The upper one of the two in the middle."""
    return sorted(values)[len(values) // 2]
