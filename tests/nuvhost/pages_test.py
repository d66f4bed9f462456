"""Runs the examples and the programs in the pages, and compares what they print.

pages_test.py COMMAND...: how to start nuvhost.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]


def blocks(page, language):
    text = (ROOT / page).read_text(encoding="utf-8")
    return re.findall(rf"```{language}\n(.*?)```", text, re.S)


def complaints(name, command, expected):
    """Runs a command in the top folder; what differs from success and the expected output."""
    # Without a desktop, on which an example would wait for an answer.
    environment = {name: value for name, value in os.environ.items() if name != "DISPLAY"}
    run = subprocess.run(command, cwd=ROOT, env=environment, capture_output=True, check=False,
                         timeout=300)
    found = []
    verdict = (expected or "").splitlines()[-1:] or [""]
    is_good = not re.search(r"\d (bad|failed)", verdict[0])
    if run.returncode != (0 if is_good else 1) or run.stderr:
        found.append(f"{name}: exit code {run.returncode}: {run.stderr.decode()}")
    if expected is not None and run.stdout != expected.encode():
        found += difflib.unified_diff(expected.splitlines(), run.stdout.decode().splitlines(),
                                      "expected", name, lineterm="")
    return found


def parts_of(readme):
    """How the page's first command chooses parts of its data."""
    command = blocks(readme, "sh")[0]
    return re.findall(r"--part-column|(?<=--part-column )\S+", command)


def main(nuvhost):
    failures = []
    for expected in sorted(ROOT.glob("examples/*/expected.txt")):
        program = (expected.parent / "program.json").relative_to(ROOT).as_posix()
        text = expected.read_bytes().decode()
        readme = expected.parent.relative_to(ROOT) / "README.md"
        failures += complaints(program, [*nuvhost, "run", program, *parts_of(readme)], text)
        if text not in blocks(readme, "text"):
            failures.append(f"{readme} does not show what the example prints")

    with tempfile.TemporaryDirectory() as folder:
        for page in ["README.md", "docs/programs.md"]:
            programs = [block for block in blocks(page, "json") if '"steps"' in block]
            if not programs:
                failures.append(f"{page} holds no program")
            for i, program in enumerate(programs):
                path = pathlib.Path(folder) / "program.json"
                path.write_text(program, encoding="utf-8")
                # In the format's page the first text block is what the first program prints.
                shown = blocks(page, "text")[0] if page.startswith("docs") and i == 0 else None
                failures += complaints(f"{page}, program {i}", [*nuvhost, "run", str(path)], shown)

    print("\n".join(failures) or "all as shown")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
