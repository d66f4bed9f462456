"""Hostile drawings are well-formed pictures whose numbers are numbers and whose texts survive.

overlay_test.py COMMAND...: how to start nuvhost, which is asked to draw them.
"""

import json
import pathlib
import random
import re
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

NUMBER_KINDS = [0, -0.0, "NaN", "Infinity", "-Infinity", 1e300, 5e-324, 1e9, -1e9, 1 + 2**-52]
PIECES = [b"&", b"<", b">", b'"', b"'", b"]]>", b"&amp;", b"<!--", b"\n", b"\t", b"  ", b"\x01", b"\x1f",
          b"\x7f", b"\x80", b"\xff", b"\xc3\xa9", b"\xc3", b"\xe2\x82\xac", b"\xed\xa0\x80",
          b"\xc0\x80", b"\xef\xbf\xbe", b"\xf0\x9f\x94\xa9", b"\xf4\x90\x80\x80", b"abc", b"\r"]
FIGURES = ["point location", "segment start end", "line line", "circle center radius fill",
           "circles points radius fill", "rect center width height angle fill", "points points",
           "text location font paintBackground", "polyline points", "pixels points"]

SVG = "{http://www.w3.org/2000/svg}"
POSITIVE = r"(?!0+$)[0-9]{1,10}(\.[0-9]+)?"
NUMBER = r"-?[0-9]+(\.[0-9]+)?"
NUMBERS = {
    "d": rf"([MLhv]{NUMBER}( {NUMBER})?|Z)+",
    "viewBox": rf"{NUMBER}( {NUMBER}){{3}}",
    **{name: NUMBER for name in ["x", "y", "cx", "cy", "r"]},
    **{name: POSITIVE for name in ["width", "height", "font-size", "stroke-width",
                                   "stroke-opacity", "fill-opacity"]},
}


def lines(label):
    """The lines of a label as a picture shows them."""
    try:
        text = label.decode("utf-8")
    except UnicodeDecodeError:
        text = label.decode("latin-1")
    text = re.sub("[\x00-\x08\x0b\x0c\x0e-\x1f\x7f-\x9f\ufffe\uffff]", "\ufffd", text)
    return text.replace("\r", "").split("\n") if label else []


def complaints(svg, label):
    try:
        root = xml.etree.ElementTree.fromstring(svg)
    except xml.etree.ElementTree.ParseError as error:
        yield f"not well-formed: {error}"
        return
    for element in root.iter():
        for name, value in element.attrib.items():
            if name in NUMBERS and not re.fullmatch(NUMBERS[name], value):
                yield f"{element.tag}: {name}={value[:60]!r}"
            if name in ["fill", "stroke"] and not re.fullmatch("#[0-9a-f]{6}|none", value):
                yield f"{element.tag}: {name}={value[:60]!r}"
    texts = [element.text or "" for element in root.iter(SVG + "text")]
    expected = lines(label)
    if expected and texts[-len(expected):] != expected:
        yield f"{label!r}: {texts}"


def any_annotation(rng):
    def number():
        if rng.randrange(4) == 0:
            return rng.choice(NUMBER_KINDS)
        return rng.randrange(-2**31, 2**31) * 2.0 ** rng.randrange(-55, 5)

    def point():
        return {"x": number(), "y": number()}

    made = {"points": lambda: [point() for _ in range(rng.randrange(5))],
            "line": lambda: {"a": number(), "d": number()}, "font": lambda: any_text(rng),
            **dict.fromkeys(["location", "start", "end", "center"], point),
            **dict.fromkeys(["fill", "paintBackground"], lambda: rng.random() < 0.5)}
    operation, *members = rng.choice(FIGURES).split()
    return {"op": operation, **{name: made.get(name, number)() for name in members},
            "label": rng.choice([None, *[any_text(rng)] * 3]), "color": rng.randrange(2**32)}


def any_text(rng):
    """A character for each byte."""
    return b"".join(rng.choices(PIECES, k=rng.randrange(5))).decode("latin-1")


def main(command):
    rng = random.Random(11)
    requests = []
    with tempfile.TemporaryDirectory() as folder:
        for i in range(400):
            # The last one's text is read back from the picture and compared to the bytes.
            last = {"op": "text", "location": {"x": 1, "y": 1}, "font": "", "paintBackground": False,
                    "label": any_text(rng), "color": 0}
            drawn = [*(any_annotation(rng) for _ in range(rng.randrange(5))), last]
            requests.append({"draw": drawn})
            if rng.random() < 0.5:
                size = struct.pack(">II", rng.randrange(1, 2**31), rng.randrange(1, 2**31))
                requests[-1]["image"] = f"{i}.png"
                pathlib.Path(folder, f"{i}.png").write_bytes(
                    b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR" + size + b"\x08\0\0\0\0crc_\0\0\0\0IENDcrc_")
        lines_in = "".join(json.dumps(one) + "\n" for one in requests * 2).encode()
        ran = subprocess.run([*command, "exec"], input=lines_in, capture_output=True, check=True,
                             timeout=300, cwd=folder)
    answers = ran.stdout.splitlines()
    count = len(requests)
    failures = [] if answers[:count] == answers[count:] else ["another picture of the same"]
    for number, (request, answer) in enumerate(zip(requests, answers)):
        label = request["draw"][-1]["label"].encode("latin-1")
        failures += [f"{number}: {one}" for one in complaints(json.loads(answer)["svg"], label)]
    print("\n".join(failures[:20]) or f"{count} pictures are sound")
    return 1 if failures or len(answers) != 2 * count else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
