"""Makes the bar's edge points, upper.csv and lower.csv, and its image, bar.png.

The bar is made up: 8 mm wide, turned by 3 degrees; one pixel is 0.1 mm. Its upper edge has a burr
and ends in a step; its lower edge is plain. A rake's parallel lines find one point of each edge
every 4 pixels, from left to right. The same numbers come out every time.
"""

import math
import pathlib
import random
import struct
import zlib

FOLDER = pathlib.Path(__file__).resolve().parent
WIDTH, HEIGHT = 400, 220
ANGLE = math.radians(3)
LEFT_END = 14
RIGHT_END = 386
BAR_WIDTH = 80.0
UPPER = 60.0  # the upper edge's y at x = 0
BURR = (118, 134, 11.0)  # from, to, height
STEP = (278, 18.0)  # from, depth
NOISE = 0.08


def upper_edge(x):
    y = UPPER + x * math.tan(ANGLE)
    begin, end, height = BURR
    if begin < x < end:
        y -= height * (1 - abs(2 * x - begin - end) / (end - begin))
    if x >= STEP[0]:
        y += STEP[1]
    return y


def lower_edge(x):
    return UPPER + BAR_WIDTH / math.cos(ANGLE) + x * math.tan(ANGLE)


def edge_points(edge, rng):
    return [(x, edge(x) + rng.gauss(0, NOISE)) for x in range(LEFT_END + 6, RIGHT_END - 5, 4)]


def write_csv(name, points):
    lines = ["x,y", *(f"{x:.3f},{y:.3f}" for x, y in points)]
    (FOLDER / name).write_bytes(("\n".join(lines) + "\n").encode())


def grey(x, y, rng):
    def within(distance):
        return min(1, max(0, distance / 2 + 0.5))  # a lens that blurs a little

    x += 0.5
    y += 0.5
    part = (within(y - upper_edge(x)) * within(lower_edge(x) - y) * within(x - LEFT_END)
            * within(RIGHT_END - x))
    return round(45 + 130 * part + rng.uniform(-2, 2))


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
    rng = random.Random(20240301)
    write_csv("upper.csv", edge_points(upper_edge, rng))
    write_csv("lower.csv", edge_points(lower_edge, rng))
    write_png("bar.png", WIDTH, HEIGHT, lambda x, y: grey(x, y, rng))


if __name__ == "__main__":
    main()
