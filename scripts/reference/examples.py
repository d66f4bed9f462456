"""Examples: rows of the entries' tables as calls, and what differs from their answers."""

import json
import os
import re
import subprocess
import tempfile

from reference import cells
from reference.library import name_of

CATEGORIES = {"booleans": "Array: Boolean", "numbers": "Array: Number", "strings": "Array: String",
              "points": "Array: Point", "lines": "Array: Line"}
# What results of each type hold before a call that must leave them alone.
HELD = {256: True, 258: 7.5, 259: "held", 260: {"x": 7.5, "y": -7.5}, 261: {"a": 0.5, "d": 7.5}}
BEFORE = HELD | {code + 256: [held, held] for code, held in HELD.items()}
SAYS = re.compile(r'\s*(?:(error|complaint|warning)(?:\s+("(?:[^"\\]|\\.)*"))?|event\s+(-?\d+)\s+(\S+))\s*')


# Columns that stand for no parameter.
SPECIAL = ("says", "draws", "type", "identifier")
TEXTS = ("label", "font")  # what is a text of an annotation


class ColumnError(ValueError):
    """What is wrong with a column or a cell of a row."""


def bare(cell):
    """A cell without the backticks that may stand around it."""
    if len(cell) >= 2 and cell[0] == cell[-1] == "`":
        return cell.strip("`").strip()
    return cell


def position(name, parameters):
    """The position of a parameter by its name, "NAME (POSITION)" where two share it; or None."""
    names = [name_of(one) for one in parameters]
    if names.count(name) == 1:
        return names.index(name)
    found = re.fullmatch(r"(.*) \((\d+)\)", name)
    if found and int(found[2]) < len(names) and names[int(found[2])] == found[1]:
        return int(found[2])
    return None


class Column:
    """What a column of an example table stands for."""

    def __init__(self, title, instruction, first):
        """first: the section's first instruction, whose names hold for a family's others too."""
        self.title = title
        if title in SPECIAL:
            self.kind, self.at = title, None
            return
        name = self.title
        self.kind = "inputs"
        if name.startswith("→"):
            self.kind, name = "results", name[1:].strip()
        elif name.startswith("const ") and position(name, instruction["inputs"]) is None:
            self.kind, name = "constants", name[6:].strip()
        self.at = position(name, instruction[self.kind])
        if self.at is None:
            self.at = position(name, first[self.kind])
        if self.at is None or self.at >= len(instruction[self.kind]):
            raise ColumnError(f'"{name}" is none of the {self.kind} of {instruction["identifier"]}: '
                              + ", ".join(name_of(one) for one in instruction[self.kind]))


def says_of(cell):
    """(whether it succeeds, messages, events) that a cell tells.

    A complaint is an error that is reported by an instruction that succeeds.
    """
    good, messages, events = True, [], []
    at = 0
    while at < len(cell):
        found = SAYS.match(cell, at)
        if not found or found.end() < len(cell) and cell[found.end()] != ";":
            raise ColumnError(f'says: cannot read "{cell[at:]}"')
        kind, text, code, value = found.groups()
        if kind is None:
            events.append((int(code), cells.show(float(value))))
        else:
            good = good and kind != "error"
            if text is not None:
                messages.append(("warning" if kind == "warning" else "error", json.loads(text)))
            elif kind != "error":
                raise ColumnError(f"says: a {kind} needs its text")
        at = found.end() + 1
    return good, messages, events


def drawn_of(cell):
    """What a cell tells to be drawn, such as `circle center (1, 2) radius 3 ; point label "a"`:
    (figure, values by member), of which those named are compared. "nothing" is no figure."""
    figures = []
    at = 0
    while cell != "nothing" and at <= len(cell):
        found = re.compile(r"\s*(\w+)").match(cell, at)
        if not found:
            raise ColumnError(f'draws: no figure: "{cell[at:]}"')
        members = {}
        at = found.end()
        while member := re.compile(r"\s+(\w+)\s+").match(cell, at):
            at = member.end()
            if cell.startswith("null", at):
                members[member[1]], at = "null", at + 4
            else:
                value, at = cells.scan(cell, at)
                members[member[1]] = cells.show(value)
        figures.append((found[1], members))
        at = cells.skip(cell, at)
        if at < len(cell) and cell[at] != ";":
            raise ColumnError(f'draws: cannot read "{cell[at:]}"')
        at += 1
    return figures


def show_drawn(figure, names):
    """Those members of an annotation, as cells."""
    shown = {}
    for name in names:
        if name not in figure:
            raise ColumnError(f"draws: a {figure['op']} has no {name}")
        kind = cells.TEXT if name in TEXTS else cells.POINTS
        value = figure[name]
        shown[name] = "null" if value is None else cells.show(cells.from_json(value, kind))
    return shown


def constant_value(cell, constant):
    """A constant's value: a key for a choice, or its label as a text."""
    value = one_value(cell)
    if isinstance(value, str) and constant["choices"]:
        keys = [key for key, label in constant["choices"] if label.strip() == value.strip()]
        if len(keys) != 1:
            raise ColumnError(f'"{value}" is no label of {name_of(constant)}')
        return keys[0]
    if isinstance(value, float):
        if value != int(value):
            raise ColumnError(f"{cell} is not whole")
        return int(value)
    return value


def one_value(cell):
    values = cells.parse(cell)
    if len(values) != 1:
        raise ColumnError(f'"{cell}" is more than one value')
    return values[0]


class Row:
    """One row of a table: its call, and what it expects."""

    def __init__(self, entry, table, line, row, library):
        if len(row) != len(table.header):
            raise ColumnError(f"{len(row)} cells under {len(table.header)} columns")
        bound = [library.by_identifier[one] for one in entry.identifiers
                 if one in library.by_identifier]
        if not bound:
            raise ColumnError("the section has no instruction")
        row = [bare(cell) for cell in row]
        self.line = line
        self.instruction = self.pick(bound, dict(zip(table.header, row)))
        self.expected = {}
        self.says = (True, [], [])
        self.drawn = None  # not compared
        constants = [one["default"] for one in self.instruction["constants"]]
        inputs = [one["default"] for one in self.instruction["inputs"]]
        repeated = []
        for title, cell in zip(table.header, row):
            if title == "says":
                self.says = says_of(cell)
            if title == "draws" and cell:
                self.drawn = drawn_of(cell)
            if title in SPECIAL or cell == "":
                continue
            column = Column(title, self.instruction, bound[0])
            try:
                last = column.at == len(inputs) - 1 and self.instruction["repeatable"]
                if column.kind == "constants":
                    constants[column.at] = constant_value(
                        cell, self.instruction["constants"][column.at])
                elif column.kind == "results":
                    self.expected[column.at] = cells.show(one_value(cell))
                elif last:
                    inputs[column.at], *repeated = map(cells.to_json, cells.parse(cell))
                else:
                    inputs[column.at] = cells.to_json(one_value(cell))
            except cells.CellError as error:
                raise ColumnError(f"{title}: {error}") from error
        self.call = {"instr": self.instruction["identifier"], "const": constants,
                     "in": inputs + repeated}
        # A failure leaves the results as they were, unless the row tells what they are then.
        self.before = [BEFORE[one["type"]] for one in self.instruction["results"]]
        self.leaves_results = not self.says[0] and not self.expected

    @staticmethod
    def pick(bound, row):
        """The instruction that a row runs on."""
        if "type" in row:
            category = CATEGORIES.get(row["type"])
            found = [one for one in bound if one["category"] == category]
            if len(found) != 1:
                raise ColumnError(f'type: none of the section\'s instructions is for "{row["type"]}"')
            return found[0]
        if "identifier" in row:
            found = [one for one in bound if one["identifier"] == row["identifier"]]
            if len(found) != 1:
                raise ColumnError(f'identifier: the section has no "{row["identifier"]}"')
            return found[0]
        return bound[0]

    def faults(self, answer):
        """What differs in an answer, as texts."""
        if "error" in answer:
            return [f"the call is refused: {answer['error']}"]
        found = []
        good, messages, events = self.says
        told = [("error" if one["severity"] == 2 else "warning",
                 ": ".join(filter(None, (one["source"], one["text"]))))
                for one in answer.get("messages", [])]
        if good != (answer["status"] == 0):
            found.append(f"status: expected {'0' if good else 'a failure'}, "
                         f"found {answer['status']}")
        if messages != told:
            found.append(f"says: expected {show_messages(messages)}, found {show_messages(told)}")
        sent = [(one["code"], cells.show(float(one["value"])))
                for one in answer.get("events", [])]
        if events != sent:
            found.append(f"events: expected {events}, found {sent}")
        found += self.drawn_faults(answer.get("annotations", []))
        for at, expected in sorted(self.expected.items()):
            result = self.instruction["results"][at]
            value = cells.show(cells.from_json(answer["out"][at], result["type"]))
            if value != expected:
                found.append(f"{name_of(result)}: expected {expected}, found {value}")
        return found

    def drawn_faults(self, figures):
        if self.drawn is None:
            return []
        expected, drawn = [op for op, _ in self.drawn], [figure["op"] for figure in figures]
        if expected != drawn:
            return [f"draws: expected {expected}, found {drawn}"]
        try:
            return [f"draws: expected {op} {members}, found {told}"
                    for (op, members), figure in zip(self.drawn, figures)
                    if (told := show_drawn(figure, members)) != members]
        except ColumnError as error:
            return [str(error)]

    def kept_fault(self, answer):
        """What is wrong where a failing call found results that held something."""
        if answer.get("status") == 0 or answer.get("out") != self.before:
            return f"results held {self.before} and hold {answer.get('out')} after the failure"
        return None


def show_messages(messages):
    return " ; ".join(f"{kind} {json.dumps(text)}" for kind, text in messages) or "no message"


def run_rows(page_rows, library):
    """Runs rows (row, whether in degrees) in one process, in an empty folder; gives for each its
    answer, and the answer of a failing call to results that held something, or None."""
    requests = []
    for row, degrees in page_rows:
        unit = "degrees" if degrees else "radians"
        again = row.call | {"prev": row.before} if row.leaves_results else {"set": {}}
        requests += [{"set": {"angleUnit": unit}}, row.call, again]
    lines = "".join(json.dumps(one) + "\n" for one in requests)
    environment = {name: value for name, value in os.environ.items() if name != "DISPLAY"}
    with tempfile.TemporaryDirectory() as folder:
        ran = subprocess.run([*library.nuvhost, "exec"], cwd=folder, env=environment,
                             input=lines.encode(), capture_output=True, check=False, timeout=300)
    answers = [json.loads(line, parse_int=lambda digits: float(digits) if digits == "-0"
                          else int(digits)) for line in ran.stdout.decode().splitlines()]
    if len(answers) != len(requests):
        last = page_rows[min(len(answers) // 3, len(page_rows) - 1)][0]
        raise RuntimeError(f"nuvhost ended at line {last.line} with {ran.returncode}: "
                           f"{ran.stderr.decode(errors='replace')}")
    return [(answer, again if row.leaves_results else None)
            for (row, _), answer, again in zip(page_rows, answers[1::3], answers[2::3])]
