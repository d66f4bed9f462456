"""Makes the washer's edge points, outer.csv and inner.csv, and its image, washer.png.

The washer is made up: outer diameter 24.1 mm, hole 13.1 mm, centres 0.15 mm apart; one pixel is
0.1 mm. The edge points have noise, and 8 in 100 lie far off, as where dirt or glare misleads an
edge finder. The same numbers come out every time.
"""

import math
import pathlib
import random
import struct
import zlib

FOLDER = pathlib.Path(__file__).resolve().parent
SIZE = 320
OUTER = (161.3, 158.6, 120.5)  # x, y and radius in pixels
INNER = (162.5, 159.5, 65.5)
NOISE = 0.25
GROSS = 0.08


def edge_points(circle, count, rng):
    x, y, radius = circle
    gross = set(rng.sample(range(count), round(GROSS * count)))
    for i in range(count):
        angle = 2 * math.pi * i / count
        off = rng.gauss(0, NOISE)
        if i in gross:
            off = rng.choice([-1, 1]) * rng.uniform(5, 25)
        yield x + (radius + off) * math.cos(angle), y + (radius + off) * math.sin(angle)


def write_csv(name, points):
    lines = ["x,y", *(f"{x:.3f},{y:.3f}" for x, y in points)]
    (FOLDER / name).write_bytes(("\n".join(lines) + "\n").encode())


def coverage(circle, x, y):
    """How much of a pixel lies within a circle, as seen through a lens that blurs a little."""
    center_x, center_y, radius = circle
    return min(1, max(0, (radius - math.hypot(x + 0.5 - center_x, y + 0.5 - center_y)) / 2 + 0.5))


def grey(x, y, rng):
    metal = 175 + 14 * math.sin(3 * math.atan2(y - OUTER[1], x - OUTER[0]))
    part = coverage(OUTER, x, y) * (1 - coverage(INNER, x, y))
    return round(45 + (metal - 45) * part + rng.uniform(-2, 2))


def write_png(name, width, height, pixel):
    """A grey image of 8 bits a pixel."""
    rows = b"".join(b"\0" + bytes(pixel(x, y) for x in range(width)) for y in range(height))

    def chunk(kind, content):
        check = zlib.crc32(kind + content)
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", check)

    header = struct.pack(">IIBBBBB", width, height, 8, 0, 0, 0, 0)
    (FOLDER / name).write_bytes(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                                + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main():
    rng = random.Random(20240229)
    write_csv("outer.csv", edge_points(OUTER, 240, rng))
    write_csv("inner.csv", edge_points(INNER, 160, rng))
    write_png("washer.png", SIZE, SIZE, lambda x, y: grey(x, y, rng))


if __name__ == "__main__":
    main()
