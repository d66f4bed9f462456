"""Batches: what is left of one that is interrupted or killed, and how it goes on.

batch_test.py COMMAND...: how to start nuvhost.
"""

import json
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import time

NATIVE = len(sys.argv) == 2  # else by an emulator, which has signals and terminals of its own
PROGRAM = {"data": {"n": {"file": "n.csv"}},
           "steps": [{"name": "s", "instr": "SumArr", "in": [{"data": "n", "column": "n"}]},
                     {"name": "wait", "instr": "Sleep", "in": [20]},
                     {"name": "one over", "instr": "Divide", "in": [1, {"step": "s"}]}]}
failures = []


def expect(condition, *what):
    if not condition:
        failures.append(" ".join(str(word) for word in what))


class Folder:
    """A folder with a program and a file of parts, of which each fifth fails."""

    def __init__(self, parts=200, wait=20):
        self.temporary = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.temporary.name)
        PROGRAM["steps"][1]["in"] = [wait]
        (self.path / "p.json").write_text(json.dumps(PROGRAM))
        rows = [f"part {i},{i % 5}\npart {i},0\n" for i in range(parts)]
        (self.path / "n.csv").write_text("serial,n\n" + "".join(rows))

    def start(self, *words, **options):
        return subprocess.Popen([*sys.argv[1:], "run", "p.json", "--part-column", "serial", *words],
                                cwd=self.path, stdin=subprocess.DEVNULL,
                                **{"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, **options})

    def run(self, *words):
        process = self.start(*words)
        out, error = process.communicate(timeout=300)
        return process.returncode, out.decode(), error.decode()

    def read(self, name):
        return (self.path / name).read_bytes()

    def files(self):
        return {file.name for file in self.path.iterdir()}


def ends_where_it_is_interrupted():
    folder = Folder()
    process = folder.start("--results", "out.json")
    time.sleep(1)
    process.send_signal(signal.SIGINT)
    out, error = process.communicate(timeout=60)
    runs = json.loads(folder.read("out.json"))["runs"]
    expect(process.returncode == 130, process.returncode, error)
    expect(0 < len(runs) < 200 and all(len(run["steps"]) == 3 for run in runs), len(runs))
    expect(f"interrupted: {len(runs)} of 200 were run" in error.decode(), error[-100:])
    expect(f"part {len(runs) - 1}: " in out.decode(), "the table")
    expect(folder.files() == {"p.json", "n.csv", "out.json"}, folder.files())

    slow = Folder(parts=2, wait=60000)
    process = slow.start("--results", "out.json")
    while not any(slow.path.glob("*.part")):
        time.sleep(0.01)
    process.send_signal(signal.SIGINT)
    time.sleep(0.5)
    expect(process.poll() is None, "the first ended it at once")
    process.send_signal(signal.SIGINT)
    process.communicate(timeout=10)
    expect(process.returncode == -signal.SIGINT, process.returncode)
    expect(slow.files() == {"p.json", "n.csv"}, slow.files())


def shows_on_a_terminal_how_far_it_is():
    import pty
    folder = Folder(parts=60)
    terminal, other_end = pty.openpty()
    process = folder.start(stderr=other_end)
    os.close(other_end)
    shown = b""
    try:
        while block := os.read(terminal, 4096):
            shown += block
    except OSError:  # the other end is closed
        pass
    process.communicate(timeout=60)
    found = re.findall(rb"(\d+) of 60 parts, [\d.]+ a second, (\d+) s left, (\d+) not good", shown)
    expect(found, shown[-300:])
    for run, _, not_good in found:
        expect(int(not_good) == (int(run) + 4) // 5, run, not_good)


def main():
    checks = []
    if NATIVE:
        checks += [ends_where_it_is_interrupted, shows_on_a_terminal_how_far_it_is]
    for check in checks:
        known = len(failures)
        check()
        failures[known:] = [f"{check.__name__}: {failure}" for failure in failures[known:]]
    print("\n".join(failures) or "nothing is lost")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
