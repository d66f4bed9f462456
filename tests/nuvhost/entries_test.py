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
FAULTY = r"""# Faulty

## Divide

`_Nuv_Numeric_DivideNumbers_` 460114 <- help number: expected 460113

Divides *numerator* by *divisor*. <- italics: no input, result or constant "divisor"
It is exact, not
1. quick. <- the line begins like a list's item
It is _quick_. <- _quick_: italics are written with asterisks

**Fails** with "Numeric: Divide: Division by zero"
or "Numeric: Divide: Division by one". <- neither the library nor an example says

| numerator | denominator | → quotient | says |
|---|---|---|---|
| 1 | 4 | 0.25 | |
| 0 | -4 | -0 | |
| 0 | -4 | 0 | | <- quotient: expected 0, found -0
| NaN | 1 | Infinity | | <- quotient: expected Infinity, found NaN
| 1 | 3 | 0.333333333333333 | | <- quotient: expected 0.333333333333333, found 0.33333333333333
| 1 | 0 | | | <- status: expected 0, found 3
| 1 | 0 | | error | <- says: expected no message, found error "Numeric: Divide: Division by zero"
| 1 | 0 | 0 | error "Numeric: Divide: Division by zero" |
| 1 | 2 | 0.5 | error | <- status: expected a failure, found 0
| 1 | true | | | <- the call is refused
| 1 | (1 | | | <- denominator: no value
| 1 | <- 1 cells under 4 columns

See also: [Add](#addition), [Pi](no.md). <- link: no heading for #addition

## Max2 <- "Max2" has one example alone

`_Nuv_Numeric_Max2Numbers_` 460271

Gives the larger.

| number (0) | number (1) | → maximum |
|---|---|---|
| 1 | 4 | 4 |

## Min <- heading: expected "Min2"

`_Nuv_Numeric_Min2Numbers_` 460270

no sentence <- the text does not begin with a sentence

| number (0) | number (2) | → maximum | <- "number (2)" is none of the inputs
|---|---|---|
| 1 | | 1 | <- "maximum" is none of the results

## Circle

`_CAnnotCircle_` 460004

Draws a circle.

| radius | label | draws |
|---|---|---|
| 3 | "a" | circle center (0, 0) radius 3 label "a" fill false |
| 3 | "a" | circle radius 3.5 label "a" | <- draws: expected circle {'radius': '3.5'
| 3 | | circle radius 3 ; point | <- draws: expected ['circle', 'point'], found ['circle']
| 0 | | nothing |
| 3 | | nothing | <- draws: expected [], found ['circle']
| 3 | | circle width 3 | <- draws: a circle has no width

## Generate Engine Control Event <- "Generate Engine Control Event" has neither

`_Nuv_System_GenerateEngineControlEvent_` 1 <- no instruction _Nuv_System_GenerateEngineControlEvent_

Sends an event. Twice.

## Add <- "Add" has neither examples nor

`_Nuv_Numeric_AddNumbers_` 460110

Adds.
"""


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
    text, marks = marked(FAULTY)
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
