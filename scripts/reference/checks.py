"""Checks of entries against the built library."""

import re

from reference.entries import anchor_of, read_page
from reference.examples import Column, ColumnError, Row, run_rows
from reference.library import name_of

CODE = re.compile(r"(`+)(?:(?!`).|(?<=`)`)*?\1|`[^`]*`")
ITALIC = re.compile(r"(?<![*\\\w])\*(?![\s*])((?:[^*\\]|\\.|(?<=\s)\*(?=\s))+?)(?<!\s)\*(?!\*)")
UNDERLINE = re.compile(r"(?<![\w\\])_[^_\s](?:[^_]*[^_\s])?_(?!\w)")
LINK = re.compile(r"\]\(([^()\s]*(?:\([^()]*\))?[^()\s]*)\)")
MESSAGE = re.compile(r'"((?:[^"\\]|\\.)*)"')
KEYWORD = re.compile(r"\*\*(?:Fails|Warns|Complains)\*\*")
PLACE = re.compile(r"\b[A-Z]{4,}\b")
ITEM = re.compile(r"\s*(?:[-*+]|\d+[.)]) ")
LONGEST_SUMMARY = 100


class Checker:
    """Checks pages; faults are lines "FILE:LINE: what"."""

    def __init__(self, library, library_bytes):
        self.library = library
        self.bytes = library_bytes
        self.faults = []
        self.pages = []
        self.executed = 0

    def fault(self, page, line, text):
        self.faults.append(f"{page.path}:{line}: {text}")

    def check(self, paths, complete=False):
        self.pages = [read_page(path) for path in paths]
        for page in self.pages:
            self.check_page(page)
        self.check_bound_once()
        if complete:
            self.check_complete()
        return self.faults

    def check_page(self, page):
        if not page.title:
            self.fault(page, 1, 'no title "# FAMILY"')
        if not page.entries:
            self.fault(page, 1, "no section")
        headings = [entry.anchor for entry in page.entries]
        for entry in page.entries:
            if headings.count(entry.anchor) > 1:
                self.fault(page, entry.line, f'two sections are headed "{entry.heading}"')
            self.check_binding(page, entry)
            self.check_summary(page, entry)
            self.check_prose(page, entry)
        self.check_links(page, page.introduction)
        self.check_examples(page)

    def bound(self, entry):
        return [self.library.by_identifier[one] for one in entry.identifiers
                if one in self.library.by_identifier]

    def check_binding(self, page, entry):
        if not entry.bindings:
            self.fault(page, entry.line, f'"{entry.heading}" has no line `IDENTIFIER` HELP')
        for line, identifier, help_number in entry.bindings:
            instruction = self.library.by_identifier.get(identifier)
            if instruction is None:
                self.fault(page, line, f"no instruction {identifier}")
            elif instruction["help"] != help_number:
                self.fault(page, line, f"help number: expected {instruction['help']}, "
                                       f"found {help_number}")
        names = {one["name"].strip() for one in self.bound(entry)}
        if len(entry.bindings) == 1 and names and not any(
                entry.heading == name or entry.heading.startswith(name + " (") for name in names):
            self.fault(page, entry.line, f'heading: expected "{names.pop()}", '
                                         f'found "{entry.heading}"')

    def check_summary(self, page, entry):
        summary = entry.summary
        line = entry.blocks[0].line if entry.blocks else entry.line
        if not summary.endswith((".", "!", "?")):
            self.fault(page, line, "the text does not begin with a sentence")
        if len(summary) > LONGEST_SUMMARY:
            self.fault(page, line, f"the first sentence has {len(summary)} characters, more than "
                                   f"{LONGEST_SUMMARY}: \"{summary}\"")

    def check_prose(self, page, entry):
        bound = self.bound(entry)
        names = {name_of(one) for instruction in bound for kind in ("constants", "inputs", "results")
                 for one in instruction[kind]}
        for block in entry.blocks:
            if block.lines[0].lstrip().startswith("```"):
                continue
            if block.table is not None and self.is_example(entry, block.table):
                continue
            self.check_lines(page, block)
            plain = CODE.sub("", block.text)
            for found in ITALIC.finditer(plain):
                name = re.sub(r"\\(.)", r"\1", found[1]).strip()
                if name not in names and re.sub(r" \(\d+\)$", "", name) not in names:
                    self.fault(page, self.line_of(block, found[1]),
                               f'italics: no input, result or constant "{name}"')
            for found in UNDERLINE.finditer(plain):
                self.fault(page, self.line_of(block, found[0]),
                           f"{found[0]}: italics are written with asterisks, code in backticks")
            self.check_messages(page, entry, block, plain)
        self.check_links(page, entry.blocks)

    def check_lines(self, page, block):
        """A line that begins like an item would become one, though it is not in a list."""
        for i, line in enumerate(block.lines[1:], 1):
            if ITEM.match(line) and not ITEM.match(block.lines[0]):
                self.fault(page, block.line + i, "the line begins like a list's item; a list "
                                                 "stands behind an empty line")

    @staticmethod
    def line_of(block, text):
        """The line that holds a text, or as much of its beginning as one line does."""
        words = text.split(" ")
        for count in range(len(words), 0, -1):
            for i, line in enumerate(block.lines):
                if " ".join(words[:count]) in line:
                    return block.line + i
        return block.line

    def check_messages(self, page, entry, block, plain):
        found = KEYWORD.search(plain)
        if not found:
            return
        shown = {text for table in entry.tables for _, row in table.rows for cell in row
                 for text in MESSAGE.findall(cell)}
        for message in MESSAGE.findall(plain[found.end():]):
            if message not in shown and not self.says(message.replace('\\"', '"')):
                self.fault(page, self.line_of(block, message),
                           f'neither the library nor an example says "{message}"')

    def says(self, message):
        """Whether the library holds a message's source and text. What stands in capitals in the
        text is a place that is filled, such as "Failed to delete NAME"."""
        parts = message.split(": ")
        for i in range(1, len(parts)):
            source, text = ": ".join(parts[:i]), ": ".join(parts[i:])
            pieces = PLACE.split(text)
            if not self.occurs(source):
                continue
            if len(pieces) == 1 and self.occurs(text):
                return True
            if len(pieces) > 1 and all(piece.encode("latin-1", "replace") in self.bytes
                                       for piece in pieces) and len(max(pieces, key=len)) > 7:
                return True
        return False

    def occurs(self, text):
        try:
            return text.encode("latin-1") + b"\0" in self.bytes
        except UnicodeEncodeError:
            return False

    def check_links(self, page, blocks):
        for block in blocks:
            for target in LINK.findall(CODE.sub("", block.text)):
                if re.match(r"[a-z]+:", target):
                    continue
                name, _, anchor = target.partition("#")
                path = page.path.parent / name if name else page.path
                line = self.line_of(block, target)
                if not path.exists():
                    self.fault(page, line, f"link: no file {target}")
                elif anchor and anchor not in self.anchors_of(path):
                    self.fault(page, line, f"link: no heading for {target}")

    def anchors_of(self, path):
        text = path.read_text(encoding="utf-8")
        return {anchor_of(heading) for heading in re.findall(r"^#+ (.*)$", text, re.M)}

    def is_example(self, entry, table):
        """Whether a table holds examples: it has results or says, or all columns are inputs."""
        if table.has_examples:
            return True
        bound = self.bound(entry)
        try:
            return bool(bound and [Column(title, bound[0], bound[0]) for title in table.header])
        except ColumnError:
            return False

    def check_examples(self, page):
        rows = []
        for entry in page.entries:
            count = 0
            for table in entry.tables:
                if not self.is_example(entry, table):
                    continue
                self.check_columns(page, entry, table)
                for line, cells in table.rows:
                    count += 1
                    try:
                        rows.append((Row(entry, table, line, cells, self.library), table.degrees))
                    except ColumnError as error:
                        self.fault(page, line, str(error))
            if count == 0 and not entry.not_executed:
                self.fault(page, entry.line, f'"{entry.heading}" has neither examples nor '
                                             '"Not executed: REASON."')
            elif count == 1:
                self.fault(page, entry.line, f'"{entry.heading}" has one example alone')
        if not rows:
            return
        try:
            for (row, _), (answer, again) in zip(rows, run_rows(rows, self.library)):
                kept = [] if again is None else [row.kept_fault(again)]
                for text in filter(None, row.faults(answer) + kept):
                    self.fault(page, row.line, text)
        except RuntimeError as error:
            self.fault(page, 1, str(error))
        self.executed += len(rows)

    def check_columns(self, page, entry, table):
        """Columns must be known even where all their cells are empty."""
        if len(set(table.header)) < len(table.header):
            self.fault(page, table.line, "two columns bear the same name")
        bound = self.bound(entry)
        for title in table.header:
            try:
                if bound:
                    Column(title, bound[0], bound[0])
            except ColumnError as error:
                self.fault(page, table.line, str(error))

    def check_bound_once(self):
        seen = {}
        for page in self.pages:
            for entry in page.entries:
                for line, identifier, _ in entry.bindings:
                    if identifier in seen:
                        self.fault(page, line, f"{identifier} has an entry at {seen[identifier]}")
                    seen[identifier] = f"{page.path}:{line}"

    def check_complete(self):
        bound = {one for page in self.pages for entry in page.entries for one in entry.identifiers}
        for instruction in self.library.instructions:
            if instruction["identifier"] not in bound:
                self.faults.append(f"no entry: {instruction['category']}: {instruction['name']} "
                                   f"({instruction['identifier']})")
