"""Writes profile.csv: grey values along a line across the edge of a part.

The part is bright, the table before it dark. The lens blurs the edge, the sensor adds noise, and a
speck of dust on the table shines.
"""

import math
import pathlib
import random

PIXELS = 320
EDGE = 187.4  # where the grey value is halfway between table and part
TABLE, PART = 62.0, 171.0
BLUR = 2.5  # standard deviation, in pixels
NOISE = 9.0  # standard deviation, in grey values
SPECK = range(71, 77)
SPECK_GREY = 190.0


def main():
    rng = random.Random(4711)
    lines = ["grey"]
    for pixel in range(PIXELS):
        share = 0.5 * (1.0 + math.erf((pixel - EDGE) / (BLUR * math.sqrt(2.0))))
        grey = SPECK_GREY if pixel in SPECK else TABLE + (PART - TABLE) * share
        lines.append(str(min(255, max(0, round(rng.gauss(grey, NOISE))))))
    path = pathlib.Path(__file__).with_name("profile.csv")
    path.write_text("\n".join(lines) + "\n", encoding="ascii", newline="\n")


if __name__ == "__main__":
    main()
