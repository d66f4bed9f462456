#!/usr/bin/env python3
"""memory_test.py NUVHOST...: whatever allocation of nuvhost fails, each command ends with its exit
code and its whole answer, or with exit code 2 and a complaint. NUVHOST lets one fail, or all from
one on, as its environment says."""

import os
import subprocess
import sys
import tempfile
from pathlib import Path

NOTHING_FAILED = 77
FILES = {
    "program.json": """{"data": {"d": {"file": "values.csv"}, "more": {"file": "values.json"}},
        "steps": [{"name": "max", "instr": "MaxArr", "in": [{"data": "d", "column": "n"}]},
                  {"name": "sum", "instr": "Numeric: Add",
                   "in": [{"data": "more", "column": "n", "row": 0}, {"expr": "max * 2 + 1"}]},
                  {"name": "dot", "instr": "IO: Annotations: Point", "in": [{"x": 1, "y": 2}]}],
        "report": [{"label": "Sum", "value": {"step": "sum"}, "min": 1}]}""",
    "values.csv": 'n,t\n1,a\n2,"b"\n',
    "values.json": '[{"n": 1}, {"n": 2}]',
    "results.csv": "part,status\na,good\nb,bad\n",
    "results.jsonl": '{"part": "a", "status": "good"}\n',
}
COMMANDS = [
    ["run", "program.json", "--results", "OUT.csv"],
    ["run", "program.json", "--overlay", "OUT.svg", "--report", "OUT.html"],
    ["report", "results.csv"],
    ["report", "results.jsonl", "--report", "OUT.html"],
    ["exec"],
    ["describe", "Divide"],
]
REQUESTS = b'{"instr": "Numeric: Add", "in": [1, 2], "prev": [0]}\n[1\n'


def main(nuvhost):
    failures = 0
    with tempfile.TemporaryDirectory() as folder:
        for name, text in FILES.items():
            Path(folder, name).write_text(text)

        def run(words, at=None, fails_all=False):
            environment = dict(os.environ)
            if at is not None:
                environment["NUV_FAIL_AT"] = str(at)
            if fails_all:
                environment["NUV_FAIL_ALL"] = "1"
            for out in Path(folder).glob("OUT.*"):
                out.unlink()
            return subprocess.run([*nuvhost, *words], cwd=folder, env=environment, input=REQUESTS,
                                  capture_output=True, timeout=60)

        for words in COMMANDS:
            whole = run(words)
            assert whole.returncode in (0, 1), (words, whole)
            for fails_all in (False, True):
                at = 0
                while True:
                    got = run(words, at, fails_all)
                    if got.returncode == NOTHING_FAILED:
                        break
                    where = (words, at, fails_all, got)
                    if got.returncode == 2:
                        assert got.stderr, where
                    elif words != ["exec"]:
                        assert got.returncode == whole.returncode, where
                        assert got.stdout == whole.stdout, where
                    else:  # a line that cannot be answered has an error for an answer
                        assert got.returncode == 0 and got.stdout.count(b"\n") == 2, where
                    failures += 1
                    at += 1 + at // 8  # every one of the first, then fewer and fewer
    assert failures > 500, failures
    print(f"{failures} failures, each ended in order")


main(sys.argv[1:])
