"""Every instruction has an entry in docs/instructions, and what the entries tell is so.

entries_test.py LIBRARY COMMAND...: the plug-in library, and how to start nuvhost.
"""

import pathlib
import re
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

from reference.checks import Checker  # noqa: E402
from reference.library import Library  # noqa: E402

# A page with faults, and behind "<-" how the complaint about a line begins.
FAULTY = pathlib.Path(__file__).resolve().with_name("faulty_entries.txt")


def marked(text):
    """The text without its marks, and (line, complaint) of each mark."""
    lines, marks = [], []
    for number, line in enumerate(text.splitlines(), 1):
        kept, found, complaint = line.partition(" <- ")
        lines.append(kept)
        if found:
            marks.append((number, complaint))
    return "\n".join(lines) + "\n", marks


def overlooked(library, library_bytes):
    """Which faults of a faulty page the checks do not find, and what they find beyond them."""
    text, marks = marked(FAULTY.read_text(encoding="utf-8"))
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "faulty.md"
        path.write_text(text, encoding="utf-8")
        found = Checker(library, library_bytes).check([path])
    found = [re.fullmatch(r".*?faulty\.md:(\d+): (.*)", one).groups() for one in found]
    return [f"overlooked in line {line}: {complaint}" for line, complaint in marks
            if not any(int(number) == line and text.startswith(complaint)
                       for number, text in found)] + \
           [f"complaint without a fault: line {number}: {text}" for number, text in found
            if int(number) not in {line for line, _ in marks}]


def differences(library, pages):
    """Where the command tells another place of an entry, or another summary."""
    found = []
    told = {one["identifier"]: one for one in library.instructions}
    for page in pages:
        for entry in page.entries:
            summary = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", entry.summary)
            summary = re.sub(r"(?<!\w)[*`]|[*`](?!\w)", "", summary)
            place = f"docs/instructions/{page.path.name}#{entry.anchor}"
            for identifier in entry.identifiers:
                one = told[identifier]
                if (one["summary"], one["helpFile"]) != (summary, place):
                    found.append(f"{identifier}: {place} \"{summary}\", but nuvhost tells "
                                 f"{one['helpFile']} \"{one['summary']}\"")
    return found


def main(library_file, *nuvhost):
    library = Library(list(nuvhost))
    library_bytes = pathlib.Path(library_file).read_bytes()
    faults = overlooked(library, library_bytes)
    checker = Checker(library, library_bytes)
    pages = sorted((ROOT / "docs/instructions").glob("*.md"))
    faults += checker.check(pages, complete=True)
    faults += differences(library, checker.pages)
    print(*faults, f"{checker.executed} examples run, {len(faults)} faults", sep="\n")
    return 1 if faults or checker.executed == 0 else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
