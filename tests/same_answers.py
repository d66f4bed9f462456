#!/usr/bin/env python3
"""Asks two builds of nuvhost the same random calls; every answer must be the same bytes.

The C library's trigonometric functions differ in their last bit: what comes from them may, too.

usage: same_answers.py [OPTION]... NUVHOST -- OTHER NUVHOST COMMAND...
  --calls  how many calls with short values; --seed another set of calls
  --long   calls of each instruction that looks at arrays or texts, with long ones of other lengths
  --exact  where both have one C library: no bit may differ

Instructions that touch the outer world (files, clock, keys) are left out: they answer for it.
"""

import argparse
import json
import math
import pathlib
import random
import re
import struct
import subprocess
import sys

HEADER = pathlib.Path(__file__).resolve().parents[1] / "nuvhost/library/outer_world.h"
OUTER_WORLD = set(re.findall(r'"(_[^"]+_)"', HEADER.read_text()))
SPECIAL = ["NaN", "Infinity", "-Infinity", 0, -0.0, 1, -1, 0.5, 1.5, 2.5, -0.5, 1e-300, 1e300,
           5e-324, 2147483647, -2147483648, 2147483648, 4294967296, 2.220446049250313e-16]
# Identifiers of instructions whose numbers may differ by this many units in the last place.
ULPS = {f"_Nuv_Trigonometric_{name}_": 2
        for name in ("Sin", "Cos", "Tan", "ArcSin", "ArcCos", "ArcTan")}
# The angles of lines through points.
ULPS |= {f"_Nuv_Geometric_{name}_": 1 for name in ("Pt2PtDistPitch", "AngleBis", "TwoPtsToLn")}
# A sum shows its parts' last bits at the size of the greatest: the inputs that say that size.
ULPS["_Nuv_Geometric_CMakeAnchor_"] = 3
SUMMED = {"_Nuv_Geometric_CMakeAnchor_": (0, 2)}
# What texts for some inputs are made of, by the instruction or by the input's name: random bytes
# would seldom mean anything to them.
PIECES = {
    "formatting": [*"eEfFgGaA-+ #0.", "%", "%", "%", "%%", "%f", "%g", "%.3", "12", "s", "n", "*"],
    "_Nuv_Number_CStringToNumber_": [*"0123456789abcdefxXpPeE+-. \t", "0x", "inf", "inity", "nan",
                                     "e-30", "e300", "p-10", "p1023", "000000000000"],
}
# Long arrays and texts are about so long, a little less or more: where the code turns to another
# way, as the lanes, blocks, tiles, networks, digits, subsets and samples of its kernels, sorts and
# fits, and not so long that the calls would take long.
LENGTHS = (2, 4, 8, 12, 15, 16, 24, 32, 48, 64, 96, 128, 512, 1024, 2048, 4096, 8000)
# What is given for these inputs with long arrays.
SENSIBLE = {"percent outliers": (0, 0, 5, 20, 45), "passes": (0, 1, 2, 31, 32, 33, 65, 1000),
            "tolerance": (0.01, 1, 30), "linear tolerance": (0.1, 5), "angular tolerance": (1, 20)}


def number(rng):
    kind = rng.randrange(6)
    if kind == 0:
        return rng.choice(SPECIAL)
    if kind == 1:
        return rng.randrange(-20, 21)
    if kind == 2:
        return rng.randrange(-200, 201) / 8
    if kind == 3:
        return rng.uniform(-1000, 1000)
    if kind == 4:
        return rng.gauss(0, 1) * 10 ** rng.randrange(-12, 13)
    value = struct.unpack("<d", rng.randbytes(8))[0]
    return value if abs(value) < float("inf") else "NaN"


ANY_CHARACTER = [chr(byte) for byte in [*range(1, 256), *b"0123456789.eExX+- %%"]]


def text(rng, pieces=ANY_CHARACTER, size=None):
    size = rng.randrange(12) if size is None else size
    return "".join(rng.choice(pieces) for _ in range(size))


def point(rng):
    return {"x": number(rng), "y": number(rng)}


def line(rng):
    return {"a": number(rng), "d": number(rng)}


def boolean(rng):
    return rng.random() < 0.5


SCALARS = {256: boolean, 258: number, 259: text, 260: point, 261: line}


def value(rng, type_code):
    if type_code < 512:
        return SCALARS[type_code](rng)
    return [SCALARS[type_code - 256](rng) for _ in range(rng.randrange(10))]


def numbers_in_order(rng):
    """Functions of an index: any numbers, and such as make a sort, a search or a sum work hard."""
    step = rng.choice([-1, 0.125, 3])
    return rng.choice([
        lambda i: number(rng),
        lambda i: rng.gauss(0, 100),
        lambda i: rng.choice([0, -0.0, 1, 0.5]),
        lambda i: i * step + rng.randrange(3),
        lambda i: 1 + rng.randrange(4096) * 2.0**-52,
        lambda i: rng.randrange(256),
    ])


def points_near_a_figure(rng):
    """Along a line or an arc, one in five of them anywhere."""
    x, y, turn = rng.uniform(-500, 500), rng.uniform(-500, 500), rng.uniform(0, 6.3)
    radius, span = rng.choice([(0, 100), (50, 6.3), (50, 1.5)])
    noise = rng.choice([0, 0.01, 1])

    def near(_):
        if rng.random() < 0.2:
            return {"x": x + rng.uniform(-100, 100), "y": y + rng.uniform(-100, 100)}
        along, off = rng.uniform(-span, span) / 2, radius + rng.gauss(0, noise)
        u, v = (off * math.cos(along), off * math.sin(along)) if radius else (along, off)
        return {"x": x + u * math.cos(turn) - v * math.sin(turn),
                "y": y + u * math.sin(turn) + v * math.cos(turn)}
    return near


def long_array(rng, type_code, size):
    if type_code == 516 and boolean(rng):
        return list(map(points_near_a_figure(rng), range(size)))
    if type_code in (514, 516, 517):
        axes = {514: "n", 516: "xy", 517: "ad"}[type_code]
        rows = list(zip(*(map(numbers_in_order(rng), range(size)) for _ in axes)))
        return [row[0] if type_code == 514 else dict(zip(axes, row)) for row in rows]
    return [SCALARS[type_code - 256](rng) for _ in range(size)]


def depends_on_length(instruction, names):
    """Whether it takes arrays or texts; of the instructions of every type, which copy elements
    alike however many they are, only those that look at them."""
    of_lines = re.sub("_C[BNSP]?Arr", "_CLArr", instruction["identifier"])
    if "_CLArr" in of_lines and of_lines in names and "Diff" not in of_lines:
        return False
    return instruction["results"] and any(
        record["type"] == 259 or record["type"] > 511 for record in instruction["inputs"])


def near(rng, length):
    return length + rng.randrange(-1, 2)


def argument(rng, instruction, record, size):
    """A short value, or where there is a size an array of that size."""
    pieces = PIECES.get(instruction["identifier"], PIECES.get(record["name"]))
    if pieces and record["type"] == 259:
        return text(rng, pieces)
    if size is None:
        return value(rng, record["type"])
    if record["name"] in SENSIBLE:
        return rng.choice(SENSIBLE[record["name"]])
    if record["type"] == 259:
        return text(rng, rng.choice(["ab", ANY_CHARACTER]), rng.choice([size, rng.randrange(40)]))
    if record["type"] < 512:
        return value(rng, record["type"])
    return long_array(rng, record["type"], rng.choice([size, size, near(rng, size)]))


def constant(rng, record):
    if record["choices"]:
        return rng.choice(record["choices"])[0]
    if record["type"] == 256:
        return boolean(rng)
    return rng.randint(record["min"] or 0, record["max"] or 10)


def call(rng, instruction, size=None):
    inputs = instruction["inputs"]
    if instruction["repeatable"]:
        inputs = inputs + inputs[-1:] * rng.randrange(6)
    return json.dumps({
        "instr": instruction["identifier"],
        "const": [constant(rng, record) for record in instruction["constants"]],
        "in": [argument(rng, instruction, record, size) for record in inputs],
        "prev": [value(rng, record["type"]) for record in instruction["results"]],
    })


def answers(command, requests):
    done = subprocess.run([*command, "exec"], input=requests, stdout=subprocess.PIPE, check=True)
    return done.stdout.split(b"\n")


def numbers(value):
    """The numbers in a value, those that JSON has as texts included."""
    if isinstance(value, dict):
        value = list(value.values())
    if isinstance(value, list):
        return [number for item in value for number in numbers(item)]
    return [float(value)]


def close(ours, other, ulps, size):
    """Whether two numbers differ by some units in the last place of the greatest number at hand."""
    if ours == other or ours != ours and other != other:
        return True
    size = min(max(abs(ours), abs(other), size), sys.float_info.max)
    return abs(ours - other) <= ulps * math.ulp(size)


def same(request, ours, other):
    request = json.loads(request)
    ulps = ULPS.get(request["instr"])
    if ours == other or ulps is None:
        return ours == other
    ours, other = json.loads(ours), json.loads(other)
    results = numbers(ours.pop("out")), numbers(other.pop("out"))
    parts = numbers([request["in"][i] for i in SUMMED.get(request["instr"], ())])
    size = max(map(abs, parts), default=0.0)
    return (ours == other and len(results[0]) == len(results[1]) and
            all(close(*pair, ulps, size) for pair in zip(*results)))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--calls", type=int, default=1000)
    parser.add_argument("--long", type=int, default=len(LENGTHS))
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--exact", action="store_true")
    parser.add_argument("nuvhost")
    parser.add_argument("other", nargs="+")
    options = parser.parse_args()

    if options.exact:
        ULPS.clear()
    catalogues = [subprocess.run([*command, "describe", "--all", "--json"],
                                 stdout=subprocess.PIPE, check=True).stdout
                  for command in ([options.nuvhost], options.other)]
    if catalogues[0] != catalogues[1]:
        sys.exit("the two describe different catalogues")

    rng = random.Random(options.seed)
    instructions = [i for i in json.loads(catalogues[0]) if i["identifier"] not in OUTER_WORLD]
    requests = [call(rng, instructions[i % len(instructions)]) for i in range(options.calls)]
    names = {i["identifier"] for i in instructions}
    takers = [i for i in instructions if depends_on_length(i, names)]
    requests += [call(rng, instruction, near(rng, LENGTHS[(turn + i) % len(LENGTHS)]))
                 for turn in range(options.long) for i, instruction in enumerate(takers)]
    text_in = ("\n".join(requests) + "\n").encode()
    ours, others = answers([options.nuvhost], text_in), answers(options.other, text_in)
    if len(ours) != len(requests) + 1:
        sys.exit(f"{len(requests)} requests had {len(ours) - 1} answers")
    errors = [(q, a) for q, a in zip(requests, ours) if b'"error"' in a]
    if errors:
        sys.exit("refused: {}\n  {}".format(*errors[0]))

    differing = [(q, a, b) for q, a, b in zip(requests, ours, others) if not same(q, a, b)]
    differing += [("number of answers", len(ours), len(others))] if len(ours) != len(others) else []
    for request, mine, other in differing[:10]:
        print(f"{request}\n  {mine}\n  {other}")
    passed = len(requests) - len(differing)
    print(f"{passed} passed, {len(differing)} failed: answers of {len(instructions)} instructions")
    return 1 if differing else 0


if __name__ == "__main__":
    sys.exit(main())
