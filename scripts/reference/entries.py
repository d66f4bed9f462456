"""Entries: the sections of docs/instructions/*.md, one for each operation.

    ## Divide

    `_Nuv_Numeric_DivideNumbers_` 460113

    Divides the numerator by the denominator. ...

    | numerator | denominator | → quotient | says |
    |---|---|---|---|
    | 1 | 4 | 0.25 | |

The identifiers under the heading bind a section to its instructions. A table whose columns are
inputs, constants ("const NAME") and results ("→ NAME") holds examples, which can be run.
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

BINDING = re.compile(r"(?:[-*] )?`([^`\s]+)`\s+(\d+)\s*$")
SENTENCE = re.compile(r"(?<!e\.g)(?<!i\.e)[.!?](?=$|\s)")
DEGREES = "Angles in degrees:"
NOT_EXECUTED = "Not executed:"


@dataclass
class Table:
    line: int
    header: list
    rows: list  # (line, cells)
    degrees: bool = False

    @property
    def has_examples(self):
        """Whether the columns show that this is a table of examples."""
        return any(name.startswith("→") or name in ("says", "draws") for name in self.header)


@dataclass
class Block:
    """A paragraph, a list, a heading or code: lines as they are. A table has its cells too."""
    line: int
    lines: list
    table: Table = None

    @property
    def text(self):
        return " ".join(line.strip() for line in self.lines)


@dataclass
class Entry:
    path: Path
    line: int
    heading: str
    bindings: list = field(default_factory=list)  # (line, identifier, help)
    blocks: list = field(default_factory=list)

    @property
    def identifiers(self):
        return [identifier for _, identifier, _ in self.bindings]

    @property
    def anchor(self):
        return anchor_of(self.heading)

    @property
    def summary(self):
        """The first sentence."""
        for block in self.blocks:
            if block.table is None:
                found = SENTENCE.search(block.text)
                return block.text[:found.end()] if found else block.text
        return ""

    @property
    def tables(self):
        return [block.table for block in self.blocks if block.table is not None]

    @property
    def not_executed(self):
        """Why there are no examples; empty where that is not told."""
        for block in self.blocks:
            if block.text.startswith(NOT_EXECUTED):
                return block.text.removeprefix(NOT_EXECUTED).strip()
        return ""


@dataclass
class Page:
    path: Path
    title: str = ""
    entries: list = field(default_factory=list)
    introduction: list = field(default_factory=list)


def anchor_of(heading):
    """The anchor of a heading: small letters, blanks as hyphens, without other signs."""
    kept = re.sub(r"[^\w\- ]", "", heading.strip().lower())
    return kept.replace(" ", "-")


def cells_of(line):
    """The cells of a table's row, which vertical bars separate; \\| is a bar in a cell."""
    cells = re.split(r"(?<!\\)\|", re.sub(r"(?<!\\)\|$", "", line.strip().removeprefix("|")))
    return [cell.strip().replace("\\|", "|") for cell in cells]


def table_of(line, lines):
    rows = [(line + i, cells_of(text)) for i, text in enumerate(lines)]
    return Table(line, rows[0][1], rows[2:])


def blocks_of(lines):
    """The blocks of numbered lines (number, text), which empty lines separate."""
    blocks = []
    current = []
    fence = False

    def close():
        if current:
            texts = [text for _, text in current]
            is_table = len(texts) > 1 and all(text.lstrip().startswith("|") for text in texts)
            number = current[0][0]
            blocks.append(Block(number, texts, table_of(number, texts) if is_table else None))
            current.clear()

    for number, text in lines:
        if text.lstrip().startswith("```"):
            fence = not fence
        starts_table = text.startswith("|") and current and not current[-1][1].startswith("|")
        ends_table = current and current[-1][1].startswith("|") and not text.startswith("|")
        if not fence and (not text.strip() or starts_table or ends_table):
            close()
        if text.strip() or fence:
            current.append((number, text.rstrip()))
    close()
    for before, block in zip(blocks, blocks[1:]):
        if block.table is not None and before.lines[-1].strip() == DEGREES:
            block.table.degrees = True
    return blocks


def read_page(path):
    """A file's title and its entries."""
    page = Page(Path(path))
    sections = [(0, None, [])]
    fence = False
    text = Path(path).read_bytes().decode("utf-8").replace("\r\n", "\n")
    for number, line in enumerate(text.split("\n"), 1):
        if line.startswith("```"):
            fence = not fence
        if not fence and line.startswith("# "):
            page.title = line[2:].strip()
        elif not fence and line.startswith("## "):
            sections.append((number, line[3:].strip(), []))
        else:
            sections[-1][2].append((number, line))
    page.introduction = blocks_of(sections[0][2])
    for number, heading, lines in sections[1:]:
        entry = Entry(page.path, number, heading)
        rest = 0
        for at, (line_number, line) in enumerate(lines):
            found = BINDING.match(line)
            if found:
                entry.bindings.append((line_number, found[1], int(found[2])))
                rest = at + 1
            elif line.strip():
                break
        entry.blocks = blocks_of(lines[rest:])
        page.entries.append(entry)
    return page
