"""Values of instructions: from Python to the lines of `nuvhost exec`, and back.

A parameter's type is a number, as the library tells it; docs/exec.md tells the written forms.
"""

import itertools
import math
import operator
from array import array
from collections import namedtuple

try:
    import numpy
except ImportError:
    numpy = None

BOOLEAN, INTEGER, NUMBER, TEXT, POINT, LINE, CHOICE = 256, 257, 258, 259, 260, 261, 263
BOOLEANS, NUMBERS, TEXTS, POINTS, LINES = 512, 514, 515, 516, 517

TYPE_NAMES = {
    BOOLEAN: "boolean", INTEGER: "whole number", NUMBER: "number", TEXT: "text", POINT: "point",
    LINE: "line", CHOICE: "choice", BOOLEANS: "array of booleans", NUMBERS: "array of numbers",
    TEXTS: "array of texts", POINTS: "array of points", LINES: "array of lines",
}
IN_FILES = (BOOLEANS, NUMBERS, POINTS, LINES)  # what may travel in a file


class Point(namedtuple("Point", "x y")):
    """A point in the plane."""

    __slots__ = ()


class Line(namedtuple("Line", "a d")):
    """A line: its angle in radians, and its distance from the origin."""

    __slots__ = ()


class Block:
    """An array as the machine holds it: `scalars` is a contiguous buffer of doubles, or of bytes 0
    and 1, with one scalar an element, or two for points and lines."""

    def __init__(self, kind, scalars):
        self.kind = kind
        self.scalars = scalars
        self.count = len(scalars) // (2 if kind in (POINTS, LINES) else 1)

    def as_json(self):
        values = self.scalars.tolist()
        if self.kind == BOOLEANS:
            return list(map(bool, values))
        if not all(map(math.isfinite, values)):
            values = list(map(_finite, values))
        if self.kind == NUMBERS:
            return values
        first, second = "xy" if self.kind == POINTS else "ad"
        return [{first: one, second: other} for one, other in zip(values[::2], values[1::2])]


def _unexpected(wanted, value):
    shown = repr(value)
    if len(shown) > 60:
        shown = shown[:57] + "..."
    return TypeError(f"expected {wanted}, found {shown}")


def _is_boolean(value):
    return isinstance(value, bool) or (
        getattr(value, "shape", None) == () and getattr(value, "dtype", None) == bool)


def _float(value):
    kind = type(value)
    if kind is float:
        return value
    if kind is not int and (_is_boolean(value) or isinstance(value, (str, bytes, bytearray))
                            or getattr(value, "shape", ()) != ()):
        raise _unexpected("a number", value)
    try:
        return float(value)
    except OverflowError:
        raise ValueError("the number is too large for a double") from None
    except (TypeError, ValueError):
        raise _unexpected("a number", value) from None


def _finite(number):
    """As JSON has it, which knows no others."""
    if math.isfinite(number):
        return number
    return "NaN" if number != number else "Infinity" if number > 0 else "-Infinity"


def boolean_to_json(value):
    if _is_boolean(value):
        return bool(value)
    raise _unexpected("True or False", value)


def number_to_json(value):
    return _finite(_float(value))


def integer_to_json(value):
    if not _is_boolean(value):
        if isinstance(value, float) and value.is_integer():
            return int(value)
        try:
            return operator.index(value)
        except TypeError:
            pass
    raise _unexpected("a whole number", value)


def text_to_json(value):
    """The bytes of the text in UTF-8, or those given, each as one character."""
    if isinstance(value, str):
        data = value.encode("utf-8", "surrogateescape")
    elif isinstance(value, (bytes, bytearray)):
        data = bytes(value)
    else:
        raise _unexpected("a text", value)
    if 0 in data:
        raise ValueError("a text must not hold zero characters: they would end it")
    return data.decode("latin-1")


def _pair_to_json(value, first, second, what):
    if isinstance(value, (str, bytes, dict, set)):
        raise _unexpected(what, value)
    try:
        one, other = value
    except (TypeError, ValueError):
        raise _unexpected(what, value) from None
    return {first: number_to_json(one), second: number_to_json(other)}


def point_to_json(value):
    return _pair_to_json(value, "x", "y", "a point (x, y)")


def line_to_json(value):
    return _pair_to_json(value, "a", "d", "a line (a, d)")


def _list(value, what):
    if isinstance(value, (list, tuple)):
        return value
    if isinstance(value, (str, bytes, dict)):
        raise _unexpected(what, value)
    try:
        return list(value)
    except TypeError:
        raise _unexpected(what, value) from None


def _doubles(values):
    """An array of doubles; the error of a value that is no number names its position."""
    if set(map(type, values)) <= {float, int}:
        try:
            return array("d", values)
        except OverflowError:
            pass  # told below
    doubles = array("d")
    for position, value in enumerate(values):
        try:
            doubles.append(_float(value))
        except (TypeError, ValueError) as error:
            raise type(error)(f"element {position}: {error}") from None
    return doubles


def _from_numpy(value, kind):
    """The scalars of what NumPy takes for an array; None where Python's own way must do."""
    if numpy is None or not hasattr(value, "__array__"):
        return None
    given = numpy.asarray(value)
    what = TYPE_NAMES[kind]
    pairs = kind in (POINTS, LINES)
    if given.ndim != (2 if pairs else 1) or (pairs and given.shape[1] != 2):
        shape = "(n, 2)" if pairs else "(n,)"
        raise TypeError(f"expected an {what} of shape {shape}, found the shape {given.shape}")
    if given.dtype.kind == "O":
        return None
    if given.dtype.kind not in ("b" if kind == BOOLEANS else "iuf"):
        raise TypeError(f"expected an {what}, found elements of type {given.dtype}")
    wanted = numpy.uint8 if kind == BOOLEANS else numpy.float64
    return numpy.ascontiguousarray(given, dtype=wanted).reshape(-1)


def numbers_to_block(value):
    scalars = _from_numpy(value, NUMBERS)
    if scalars is None:
        scalars = _doubles(_list(value, "numbers"))
    return Block(NUMBERS, scalars)


def booleans_to_block(value):
    scalars = _from_numpy(value, BOOLEANS)
    if scalars is None:
        scalars = array("B", map(boolean_to_json, _list(value, "booleans")))
    return Block(BOOLEANS, scalars)


def _pairs_to_block(value, kind, what):
    scalars = _from_numpy(value, kind)
    if scalars is None:
        pairs = _list(value, what + "s")
        for position, pair in enumerate(pairs):
            if isinstance(pair, (str, bytes, dict, set)) or getattr(pair, "__len__", int)() != 2:
                raise _unexpected(f"{what}s; element {position}: expected a pair", pair)
        scalars = _doubles(list(itertools.chain.from_iterable(pairs)))
    return Block(kind, scalars)


def points_to_block(value):
    return _pairs_to_block(value, POINTS, "point")


def lines_to_block(value):
    return _pairs_to_block(value, LINES, "line")


def texts_to_json(value):
    return [text_to_json(one) for one in _list(value, "texts")]


# By type; arrays that may travel in files become Blocks, all else is ready for JSON.
TO_JSON = {
    BOOLEAN: boolean_to_json, INTEGER: integer_to_json, NUMBER: number_to_json,
    TEXT: text_to_json, POINT: point_to_json, LINE: line_to_json, CHOICE: integer_to_json,
    BOOLEANS: booleans_to_block, NUMBERS: numbers_to_block, TEXTS: texts_to_json,
    POINTS: points_to_block, LINES: lines_to_block,
}


def text_from_json(value):
    """The text whose bytes the characters are: UTF-8, and other bytes as Python escapes them."""
    if value.isascii():
        return value
    return value.encode("latin-1").decode("utf-8", "surrogateescape")


def _pairs_from_json(value, make, first, second):
    pairs = [make(float(one[first]), float(one[second])) for one in value]
    return pairs if numpy is None else numpy.array(pairs, dtype=float).reshape(-1, 2)


def _numbers_from_json(value):
    return list(map(float, value)) if numpy is None else numpy.array(value, dtype=float)


FROM_JSON = {
    BOOLEAN: bool, INTEGER: int, NUMBER: float, TEXT: text_from_json, CHOICE: int,
    POINT: lambda value: Point(float(value["x"]), float(value["y"])),
    LINE: lambda value: Line(float(value["a"]), float(value["d"])),
    BOOLEANS: lambda value: value if numpy is None else numpy.array(value, dtype=bool),
    NUMBERS: _numbers_from_json,
    TEXTS: lambda value: list(map(text_from_json, value)),
    POINTS: lambda value: _pairs_from_json(value, Point, "x", "y"),
    LINES: lambda value: _pairs_from_json(value, Line, "a", "d"),
}


def from_bytes(data, kind):
    """An array from its scalars in a bytearray."""
    if numpy is not None:
        scalars = numpy.frombuffer(data, dtype=bool if kind == BOOLEANS else float)
        return scalars.reshape(-1, 2) if kind in (POINTS, LINES) else scalars
    if kind == BOOLEANS:
        return list(map(bool, data))
    scalars = array("d", bytes(data)).tolist()
    if kind == NUMBERS:
        return scalars
    return list(map(Point if kind == POINTS else Line, scalars[::2], scalars[1::2]))


def guess_to_json(value):
    """A value whose type nobody has declared, by what it looks like."""
    if value is None or isinstance(value, dict):
        return value
    if isinstance(value, (str, bytes)):
        return text_to_json(value)
    if _is_boolean(value):
        return bool(value)
    if isinstance(value, Line):
        return line_to_json(value)
    if isinstance(value, tuple) and len(value) == 2 and not _is_boolean(value[0]):
        return point_to_json(value)
    if isinstance(value, (list, tuple)):
        return [guess_to_json(tuple(one) if isinstance(one, list) else one) for one in value]
    if getattr(value, "shape", ()) != ():
        return guess_to_json(numpy.asarray(value).tolist())
    return number_to_json(value)


def guess_from_json(value):
    """The same back. What reads "NaN" may be a number or a text; it is taken for the number."""
    if isinstance(value, str):
        return float(value) if value in ("NaN", "Infinity", "-Infinity") else text_from_json(value)
    if isinstance(value, dict):
        return FROM_JSON[POINT if "x" in value else LINE](value)
    if isinstance(value, list):
        kinds = {"x": POINTS, "a": LINES}
        if value and isinstance(value[0], dict):
            return FROM_JSON[kinds[next(iter(value[0]))]](value)
        return [guess_from_json(one) for one in value]
    return value if value is None or isinstance(value, bool) else float(value)
