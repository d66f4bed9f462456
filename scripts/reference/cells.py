"""Cells of example tables: values as they are written there.

    0.25  -0  NaN  Infinity  true  "text"  (1, 2)  {a: 0.5, d: 20}  [1, 2]  [(1, 2), (3, 4)]

Texts are JSON strings, in which each character U+0000 to U+00FF stands for a byte.
"""

import json
import math
import re
from dataclasses import dataclass


class CellError(ValueError):
    """What is wrong with a cell."""


@dataclass(frozen=True)
class Point:
    x: float
    y: float


@dataclass(frozen=True)
class Line:
    a: float
    d: float


NUMBER = re.compile(r"[-+]?(?:\d+(?:\.\d*)?|\.\d+)(?:[eE][-+]?\d+)?|[-+]?Infinity|NaN")
STRING = re.compile(r'"(?:[^"\\]|\\.)*"')
WORD = re.compile(r"true|false")
POINT = re.compile(rf"\(\s*({NUMBER.pattern})\s*,\s*({NUMBER.pattern})\s*\)")
LINE = re.compile(rf"\{{\s*a:\s*({NUMBER.pattern})\s*,\s*d:\s*({NUMBER.pattern})\s*\}}")


def scan(text, at):
    """The value that begins at a position, and where it ends."""
    if text.startswith("[", at):
        values = []
        at = skip(text, at + 1)
        while not text.startswith("]", at):
            if values:
                if not text.startswith(",", at):
                    raise CellError(f'expected "," or "]" before "{text[at:]}"')
                at = skip(text, at + 1)
            value, at = scan(text, at)
            values.append(value)
            at = skip(text, at)
        return values, at + 1
    if found := POINT.match(text, at):
        return Point(float(found[1]), float(found[2])), found.end()
    if found := LINE.match(text, at):
        return Line(float(found[1]), float(found[2])), found.end()
    if found := STRING.match(text, at):
        try:
            return json.loads(found[0], strict=False), found.end()
        except ValueError as error:
            raise CellError(f"{found[0]} is no JSON string: {error}") from error
    if found := WORD.match(text, at):
        return found[0] == "true", found.end()
    if found := NUMBER.match(text, at):
        return float(found[0]), found.end()
    raise CellError(f'no value: "{text[at:]}"')


def skip(text, at):
    while at < len(text) and text[at] == " ":
        at += 1
    return at


def parse(text):
    """The values of a cell, which " ; " separates."""
    values = []
    at = skip(text, 0)
    while True:
        value, at = scan(text, at)
        values.append(value)
        at = skip(text, at)
        if at == len(text):
            return values
        if text[at] != ";":
            raise CellError(f'expected ";" before "{text[at:]}"')
        at = skip(text, at + 1)


def to_json(value):
    """A value as the line protocol writes it."""
    if isinstance(value, float) and not math.isfinite(value):
        return "NaN" if math.isnan(value) else "Infinity" if value > 0 else "-Infinity"
    if isinstance(value, Point):
        return {"x": to_json(value.x), "y": to_json(value.y)}
    if isinstance(value, Line):
        return {"a": to_json(value.a), "d": to_json(value.d)}
    if isinstance(value, list):
        return [to_json(one) for one in value]
    return value


ARRAY = 256  # what an array's type has beyond its elements'
TEXT = 259
POINTS = 516


def from_json(json_value, type_code):
    """A value of a declared type, from the line protocol."""
    if isinstance(json_value, list):
        return [from_json(one, type_code - ARRAY) for one in json_value]
    if isinstance(json_value, dict):
        members = {name: float(one) for name, one in json_value.items()}
        return Point(**members) if "x" in members else Line(**members)
    if isinstance(json_value, str) and type_code != TEXT:
        return float(json_value)
    return json_value


def show(value):
    """A value as a cell writes it; the same texts are the same values, to the last bit."""
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, (int, float)):
        if not math.isfinite(value):
            return to_json(float(value))
        return repr(float(value)).removesuffix(".0")
    if isinstance(value, Point):
        return f"({show(value.x)}, {show(value.y)})"
    if isinstance(value, Line):
        return f"{{a: {show(value.a)}, d: {show(value.d)}}}"
    if isinstance(value, list):
        return "[" + ", ".join(show(one) for one in value) + "]"
    return json.dumps(value).replace("|", "\\u007c")
