"""Batches: what is left of one that is interrupted or killed, and how it goes on.

batch_test.py COMMAND...: how to start nuvhost.
"""

import json
import os
import pathlib
import re
import signal
import sys
import time

import runs
from runs import NATIVE, expect

PROGRAM = {"data": {"n": {"file": "n.csv"}},
           "steps": [{"name": "s", "instr": "SumArr", "in": [{"data": "n", "column": "n"}]},
                     {"name": "wait", "instr": "Sleep", "in": [20]},
                     {"name": "one over", "instr": "Divide", "in": [1, {"step": "s"}]}]}


class Folder(runs.Folder):
    """With a program and a file of parts, of which each fifth fails."""

    def __init__(self, parts=200, wait=20):
        super().__init__()
        PROGRAM["steps"][1]["in"] = [wait]
        (self.path / "p.json").write_text(json.dumps(PROGRAM))
        rows = [f"part {i},{i % 5}\npart {i},0\n" for i in range(parts)]
        (self.path / "n.csv").write_text("serial,n\n" + "".join(rows))

    def start(self, *words, program="p.json", **options):
        return super().start("run", program, "--part-column", "serial", *words, **options)


def ends_where_it_is_interrupted():
    folder = Folder()
    process = folder.start("--results", "out.json")
    while not any(folder.path.glob("*.part")):
        time.sleep(0.01)
    process.send_signal(signal.SIGINT)
    out, error = process.communicate(timeout=60)
    runs = json.loads(folder.read("out.json"))["runs"]
    expect(process.returncode == 130, process.returncode, error)
    expect(len(runs) < 200 and all(len(run["steps"]) == 3 for run in runs), len(runs))
    expect(f"interrupted: {len(runs)} of 200 were run" in error.decode(), error[-100:])
    expect(not runs or f"part {len(runs) - 1}: " in out.decode(), "the table")
    expect(set(folder.state()) == {"p.json", "n.csv", "out.json"}, *folder.state())

    slow = Folder(parts=2, wait=60000)
    process = slow.start("--results", "out.json")
    while not any(slow.path.glob("*.part")):
        time.sleep(0.01)
    time.sleep(1)
    process.send_signal(signal.SIGINT)
    time.sleep(0.5)
    expect(process.poll() is None, "the first ended it at once")
    process.send_signal(signal.SIGINT)
    process.communicate(timeout=10)
    expect(process.returncode == -signal.SIGINT, process.returncode)
    expect(set(slow.state()) == {"p.json", "n.csv"}, *slow.state())


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


def loses_nothing_that_was_written():
    """Killed at any byte, --resume completes the results to what they would have been."""
    folder = Folder(parts=60, wait=10)
    for ending in ["csv", "jsonl"]:
        name = f"out.{ending}"
        code, out, error = folder.run("--results", "all." + ending)
        whole = folder.read("all." + ending)
        expect(code == 1 and whole.count(b"\n") == 60 + (ending == "csv"), code, error)
        process = folder.start("--results", name)
        while not (folder.path / name).exists() or folder.read(name).count(b"\n") < 10:
            time.sleep(0.005)
        process.kill()
        process.communicate()
        written = folder.read(name)
        expect(whole.startswith(written) and written != whole, ending, written[-80:])
        expect(folder.run("--results", name)[0] == 2 and folder.read(name) == written, "overwritten")
        sizes = [0, 3, whole.find(b"\n"), whole.find(b"\n") + 1, len(written), len(written) - 1,
                 len(whole) - 1, len(whole)]
        for size in sizes:
            (folder.path / name).write_bytes(whole[:size])
            again = folder.run("--results", name, "--resume")
            expect(folder.read(name) == whole, ending, "cut at", size, again)
            expect(again[0] == 1 and again[1].splitlines()[-1] == out.splitlines()[-1], again)
        (folder.path / name).unlink()
        expect(folder.run("--results", name, "--resume")[0] == 1, "there is none yet")
        expect(folder.read(name) == whole, "without a file")
        foreign = [b"abc", b"a,b\n1,2\n", whole.replace(b"part 0", b"part 7"),
                   whole + whole.splitlines(True)[-1], whole.replace(b"s.sum", b"t.sum")]
        for text in foreign:
            (folder.path / name).write_bytes(text)
            code, _, error = folder.run("--results", name, "--resume")
            expect(code == 2 and "nuvhost: " in error and folder.read(name) == text, text[:40], error)
        expect(folder.run("--results", name, "--overwrite")[0] == 1, "--overwrite")
        expect(folder.read(name) == whole, "--overwrite")


def answers_alike_side_by_side():
    """Every output of two or three processes has the bytes of that of one."""
    folder = Folder(parts=40, wait=2)
    shown = {"title": "Alike",
             "data": {"n": {"file": "n.csv"}}, "steps": [
                 {"name": "max", "instr": "MaxArr", "in": [{"data": "n", "column": "n"}]},
                 {"name": "over", "instr": "Divide", "in": [-1, {"step": "max"}]},
                 {"name": "all", "instr": "AbsoluteValue", "in": [{"data": "n", "column": "n"}]},
                 {"name": "text", "instr": "PrintfNum", "in": ["\u00e4 %.17g\n\"", {"step": "over"}]},
                 {"name": "log", "instr": "Log", "in": [{"step": "text"}]},
                 {"name": "draw", "instr": "_CAnnotText_", "in": {
                     "location": {"x": 8, "y": 8}, "label": {"step": "text"}, "font": "Arial 12"}},
                 {"name": "circle", "instr": "_CAnnotPoint_", "in": {
                     "location": {"x": 1, "y": "NaN"}, "label": ""}}],
             "report": [{"label": "Over", "value": {"step": "over"}, "min": -0.4},
                        {"label": "All", "value": {"step": "all"}}]}
    (folder.path / "bare.json").write_text(json.dumps(
        {key: value for key, value in shown.items() if key != "report"}))
    (folder.path / "p.json").write_text(json.dumps(shown))
    rows = [["p.json", "--results", "out.csv"], ["p.json", "--results", "out.jsonl", "--keep-going"],
            ["p.json", "--results", "out.json", "--overlay", "o.svg"], ["bare.json", "--trace"],
            ["p.json", "--until", "over"], ["p.json", "--log", "log.txt"], ["bare.json"],
            ["p.json", "--report", "page.html"]]
    for words in rows:
        answers = []
        for jobs in ["1", "2", "3"]:
            before = folder.state()
            answer = folder.run(*words[1:], "--jobs", jobs, program=words[0])
            made = {name: text for name, text in folder.state().items() if name not in before}
            if "log.txt" in made:  # whose entries bear the time
                made["log.txt"] = made["log.txt"].count(b"\n")
            for name in made:
                (folder.path / name).unlink()
            answers.append((*answer, made))
        expect(answers[0][0] == 1 and "40 parts: " in answers[0][1], words, answers[0][:3])
        for jobs, answer in zip([2, 3], answers[1:]):
            for kind, one, other in zip(["code", "out", "error", "files"], answers[0], answer):
                expect(one == other, words, "with", jobs, "jobs:", kind, one, other)


def outlives_a_process_that_ends():
    folder = Folder(parts=12, wait=100)
    process = folder.start("--jobs", "2", "--results", "out.csv")
    while not (folder.path / "out.csv").exists() or folder.read("out.csv").count(b"\n") < 3:
        time.sleep(0.005)
    children = pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split()
    os.kill(int(children[0]), signal.SIGKILL)
    out, error = process.communicate(timeout=60)
    rows = folder.read("out.csv").decode().splitlines()[1:]
    lost = [row for row in rows if row.split(",")[1] == "failed" and row.split(",")[2] == ""]
    expect(process.returncode == 1 and len(rows) == 12 and len(lost) == 1, rows)
    name = lost[0].split(",")[0] if lost else ""
    expect(f"{name}: the process that ran this part ended before" in error.decode(), error)

    process = folder.start("--jobs", "2", "--results", "two.csv")
    while not (folder.path / "two.csv").exists() or folder.read("two.csv").count(b"\n") < 2:
        time.sleep(0.005)
    process.send_signal(signal.SIGINT)
    out, error = process.communicate(timeout=60)
    count = folder.read("two.csv").count(b"\n") - 1
    expect(process.returncode == 130 and 0 < count < 12, process.returncode, count, error)
    expect(re.search(f"^{count} parts?: ".encode(), out, re.M), out)
    expect(folder.run("--jobs", "3", "--results", "two.csv", "--resume")[0] == 1, "--resume")
    expect(folder.read("two.csv") != folder.read("out.csv"), "the lost part")
    folder.run("--results", "one.csv")
    expect(folder.read("two.csv") == folder.read("one.csv"), "resumed side by side")


def gets_by_with_few_files():
    import resource
    folder = Folder(parts=30, wait=0)
    wanted = folder.run("--results", "one.csv")

    def limited(files, name):
        return folder.run("--results", name, "--jobs", "4", preexec_fn=lambda: resource.setrlimit(
            resource.RLIMIT_NOFILE, (files, files)))

    expect(limited(48, "few.csv") == wanted, "48 files")
    expect(folder.read("few.csv") == folder.read("one.csv"), "results with 48 files")
    code, _, error = limited(10, "none.csv")
    expect(code == 2 and "fewer --jobs" in error, "10 files", code, error)
    expect(folder.read("none.csv").count(b"\n") <= 1, "rows of parts that were not run")
    code, _, error = folder.run("--data", "n=-")
    expect(code == 2 and "standard input cannot be" in error, code, error)


if __name__ == "__main__":
    sys.exit(runs.main([answers_alike_side_by_side, loses_nothing_that_was_written] + NATIVE * [
        outlives_a_process_that_ends, ends_where_it_is_interrupted, gets_by_with_few_files,
        shows_on_a_terminal_how_far_it_is], "nothing is lost"))
