"""Hostile drawings are well-formed pictures whose numbers are numbers and whose texts survive.

overlay_test.py COMMAND...: how to start the test program that draws them.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

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


def main(command):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([*command, "--gtest_filter=Overlay.HostileDrawings"], check=True,
                       timeout=300, cwd=folder, capture_output=True,
                       env={**os.environ, "OVERLAY_DRAWINGS": "."})
        pictures = sorted(pathlib.Path(folder).glob("*.svg"))
        failures = [f"{picture.name}: {complaint}" for picture in pictures
                    for complaint in complaints(picture.read_bytes(),
                                                picture.with_suffix(".label").read_bytes())]
    if len(pictures) < 100:
        failures.append(f"only {len(pictures)} pictures")
    print("\n".join(failures[:20]) or f"{len(pictures)} pictures are sound")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
