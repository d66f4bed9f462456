"""Whichever call on a file fails: it is told or made good, nothing of the user's is lost, and nothing
unfinished stays.

file_faults_test.py FAILING COMMAND...: the library that fails a call, and how to start nuvhost.
"""

import errno
import json
import os
import sys

FAILING = sys.argv.pop(1)

import runs  # noqa: E402
from runs import expect  # noqa: E402

FAULTS = [str(errno.ENOSPC), str(errno.EACCES), str(errno.EIO), str(errno.EINTR), "short"]
PROGRAM = {"data": {"n": {"file": "n.csv"}},
           "steps": [{"name": "s", "instr": "SumArr", "in": [{"data": "n", "column": "n"}]},
                     {"name": "log", "instr": "Log", "in": ["seen"]}],
           "report": [{"label": "Sum", "value": {"step": "s"}}]}
PARTS = "".join(f"{part},{number}\n" for part in range(3) for number in range(4))
INPUTS = {"p.json": json.dumps(PROGRAM).encode(), "n.csv": b"part,n\n" + PARTS.encode(),
          "old.csv": b"part,status\na,ok\n", "source": b"x" * 100_000, "target": b"old", "from": b"f"}
COMMANDS = [
    ["run", "p.json", "--part-column", "part", "--results", "out.csv", "--log", "out.log"],
    ["run", "p.json", "--results", "out.json", "--overlay", "out.svg"],
    ["report", "old.csv", "--report", "out.html"],
    ["exec"],
]
CALLS = [("FileCopy ", "source", "new", True), ("FileCopy ", "source", "target", False),
         ("FileMove ", "from", "to"), ("FileDelete ", "to"), ("FileExists", "source"),
         ("FolderCreate ", "a/b/c"), ("FolderDelete ", "a")]


class Folder(runs.Folder):
    def __init__(self):
        super().__init__()
        for name, content in INPUTS.items():
            (self.path / name).write_bytes(content)
        self.requests = [{"instr": name, "in": [str(self.path / word) if isinstance(word, str) else word
                                                for word in words]} for name, *words in CALLS]

    def answer(self, words, at, fault):
        """Exit code, output, complaints, and the call that was failed or "" where there was none."""
        mark = self.path / "mark"
        environment = {**os.environ, "LD_PRELOAD": FAILING, "NUV_FAULT_AT": str(at),
                       "NUV_FAULT": fault, "NUV_FAULT_MARK": str(mark)}
        (self.path / "requests").write_text("".join(json.dumps(one) + "\n" for one in self.requests))
        with open(self.path / "requests", "rb") as requests:
            code, out, error = self.run(*words, stdin=requests, env=environment)
        failed = mark.read_text() if mark.exists() else ""
        mark.unlink(missing_ok=True)
        (self.path / "requests").unlink()
        return code, out, error, failed


def judge_files(folder, words, whole, failed, where):
    state = folder.state()
    for name, content in INPUTS.items():
        if words == ["exec"] and name in ("target", "from"):
            continue
        expect(state.get(name) == content, where, name, "is not what it was")
    for name, content in state.items():
        cut = name in ("out.csv", "out.log") and whole.get(name, b"").startswith(content[:1])
        good = content in (whole.get(name), INPUTS.get(name)) or cut
        expect(good or failed in ("unlink", "remove"), where, "left", name)
    if words == ["exec"]:
        expect(state.get("target") in (b"old", INPUTS["source"]), where, "target is damaged")


def judge_answers(folder, whole, got, where):
    """What an instruction says it did is done."""
    answers = [json.loads(line) for line in got.splitlines()]
    expect(len(answers) == len(CALLS), where, got)
    for (name, source, *words), one, other in zip(CALLS, map(json.loads, whole.splitlines()), answers):
        done = other["out"] == [True]
        expect(one == other or other["out"] == [False], where, other)
        if name == "FileCopy " and done:
            expect(folder.state().get(words[0]) == INPUTS[source], where, words[0], "is no copy")
        if name in ("FileMove ", "FileDelete ", "FolderDelete ") and done:
            expect(not (folder.path / source).exists(), where, source, "is still there")


def complaint(error):
    return any("cannot " in line for line in error.splitlines())


def fails_in_turn(words, fault):
    reference = Folder()
    code, out, error, _ = reference.answer(words, 1_000_000, fault)
    expect(code == 0, words, code, error)
    whole = reference.state()
    at = 0
    while True:
        folder = Folder()
        got_code, got_out, got_error, failed = folder.answer(words, at, fault)
        if not failed:
            break
        where = (*words[:1], failed, at, fault, got_code, got_error[-200:])
        judge_files(folder, words, whole, failed, where)
        if got_code != 0:
            expect(got_code in (1, 2) and complaint(got_error), where)
        elif words == ["exec"]:
            judge_answers(folder, out, got_out, where)
        else:
            expect(got_out == out, where, "another output")
            missing = set(whole) - set(folder.state())
            expect(not missing or got_error != error, where, "without a word for", missing)
        at += 1
    return at


def every_call_fails():
    total = sum(fails_in_turn(words, fault) for words in COMMANDS for fault in FAULTS)
    expect(total > 300, total, "calls")
    print(total, "calls failed")


if __name__ == "__main__":
    sys.exit(runs.main([every_call_fails], "nothing is lost"))
