"""No file of the user's is lost, and what cannot be written is told.

files_test.py COMMAND...: how to start nuvhost.
"""

import json
import os
import pathlib
import signal
import sys
import tempfile
import time

import runs
from runs import NATIVE, expect

PROGRAM = {"image": "part.svg", "data": {"n": {"file": "n.csv"}},
           "steps": [{"name": "s", "instr": "SumArr", "in": [{"data": "n"}]},
                     {"name": "wait", "instr": "Sleep", "in": [0]}]}
PNG = (b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x09\0\0\0\x07\x08\0\0\0\0crc_"
       b"\0\0\0\0IENDcrc_")
ROWS = b"part,status,s.sum\np.json,ok,3\n"


class Folder(runs.Folder):
    """With a program, its data and its image."""

    def __init__(self):
        super().__init__()
        self.write(p=0)
        (self.path / "n.csv").write_bytes(b"1\n2\n")
        (self.path / "part.svg").write_bytes(PNG)
        (self.path / "sub").mkdir()

    def write(self, **waits):
        """Programs, each with the milliseconds it waits for."""
        for name, wait in waits.items():
            steps = [PROGRAM["steps"][0], {**PROGRAM["steps"][1], "in": [wait]}]
            (self.path / f"{name}.json").write_text(json.dumps({**PROGRAM, "steps": steps}))


def draws_over_the_image():
    """That of the program's folder, which is looked at before anything runs."""
    folder = Folder()
    (folder.path / "sub" / "gr\u00f6\u00dfe.json").write_text(json.dumps({**PROGRAM, "image": "../part.svg"}))
    program = "sub/gr\u00f6\u00dfe.json"
    (folder.path / "m.csv").write_bytes(b"3\n")
    code = folder.run("run", program, "--data", "n.csv", "gone.csv", "m.csv", "--overlay", "o.svg")[0]
    expect(code == 2 and set(folder.state()) == {"p.json", "n.csv", "m.csv", "part.svg", "o-n.svg", "o-m.svg"},
           code, *folder.state())
    for name in ["o-n.svg", "o-m.svg"]:
        expect(b'viewBox="0 0 9 7"' in folder.read(name) and b"data:image/png;base64,iVBORw0KGgo" in
               folder.read(name), name)

    def refuses(complaint, *words):
        before = folder.state()
        code, out, error = folder.run("run", "p.json", *words, "--overlay", "x.svg")
        expect(code == 2 and out == "" and complaint in error, words, code, out, error)
        expect(folder.state() == before, "left", *folder.state())

    refuses("is named \"n\"", "--data", "n.csv", "./n.csv")
    (folder.path / "part.svg").write_bytes(PNG[:30])
    refuses("p.json:1:11: cannot take the image \"part.svg\": the file ends")
    expect(folder.run("run", "p.json")[0] == 0, "where nobody asks for the image")


def refuses_to_write_what_it_reads():
    folder = Folder()
    os.link(folder.path / "n.csv", folder.path / "hard.csv")
    os.link(folder.path / "p.json", folder.path / "hard.json")
    os.symlink("n.csv", folder.path / "soft.csv")
    (folder.path / "locked.csv").write_bytes(b"locked")
    (folder.path / "locked.csv").chmod(0o444)
    (folder.path / "twin.csv").write_bytes(b"twin")
    os.link(folder.path / "twin.csv", folder.path / "twin.svg")
    before = folder.state()
    rows = [
        (["--results", "n.csv"], "--results n.csv would overwrite the data file n.csv"),
        (["--results", "./sub/../n.csv"], "would overwrite the data file n.csv"),
        (["--results", "hard.csv"], "--results hard.csv would overwrite the data file n.csv"),
        (["--results", "soft.csv"], "--results soft.csv would overwrite the data file n.csv"),
        (["--data", "hard.csv", "--results", "n.csv"], "would overwrite the data file"),
        (["--results", "hard.json"], "--results hard.json would overwrite the program p.json"),
        (["--overlay", "part.svg"], "--overlay part.svg would overwrite the image part.svg"),
        (["--results", "twin.csv", "--overlay", "twin.svg"],
         "--overlay twin.svg would overwrite --results twin.csv"),
        (["--results", "twin.csv", "--report", "twin.svg"],
         "--report twin.svg would overwrite --results twin.csv"),
        (["--results", "locked.csv"], "the file is read-only"),
        (["--log", "n.csv"], "--log n.csv would overwrite the data file n.csv"),
        (["--log", "hard.json"], "--log hard.json would overwrite the program p.json"),
        (["--log", "part.svg"], "--log part.svg would overwrite the image part.svg"),
        (["--log", "out.csv", "--results", "./out.csv"], "would overwrite --log out.csv"),
        (["--data", "gone.csv", "--log", "sub/../gone.csv"], "would overwrite the data file gone"),
    ]
    for words, complaint in rows:
        code, out, error = folder.run("run", "p.json", *words)
        expect(code == 2 and out == "" and complaint in error, words, code, out, error)
        expect(folder.state() == before, words, "changed files")
    code, _, error = folder.run("--plugin", "n.csv", "--log", "hard.csv", "list")
    expect(code == 2 and "would overwrite the plug-in library" in error, error)
    expect(folder.state() == before, "changed the library")


def replaces_results_as_a_whole():
    folder = Folder()
    (folder.path / "out.csv.part").write_bytes(b"4\n")
    (folder.path / "out.csv").write_bytes(b"old")
    (folder.path / "out.csv").chmod(0o640)
    code, _, error = folder.run("run", "p.json", "--data", "out.csv.part", "--results", "out.csv",
                                "--log", "log")
    state = folder.state()
    expect(code == 0 and state["out.csv.part"] == b"4\n", code, error)
    expect(state["out.csv"] == ROWS.replace(b"p.json,ok,3", b"out.csv.part,ok,4"), state["out.csv"])
    expect(set(state) == {"p.json", "n.csv", "part.svg", "out.csv.part", "out.csv", "log"}, state)

    folder.write(slow=2000)
    slow = folder.start("run", "slow.json", "--results", "both.json")
    while slow.poll() is None and not any(folder.path.glob("*[0-9a-f].part")):
        time.sleep(0.01)
    fast = folder.run("run", "p.json", "--results", "both.json")
    expect(fast[0] == 0 and slow.poll() is None, fast, slow.returncode)
    expect(json.loads(folder.state()["both.json"])["program"] == "p.json", "the fast run's")
    expect(slow.wait() == 0, slow.stderr.read())
    expect(json.loads(folder.state()["both.json"])["program"] == "slow.json", "the slow run's")
    if not NATIVE:
        return
    expect((folder.path / "out.csv").stat().st_mode & 0o777 == 0o640, "another mode")
    for name, target in [("link.csv", "sub/../out.csv"), ("dangling.csv", "sub/new.csv")]:
        (folder.path / name).symlink_to(target)
        expect(folder.run("run", "p.json", "--results", name)[0] == 0, name)
        expect((folder.path / target).read_bytes() == ROWS, target)
        expect((folder.path / name).is_symlink(), name, "is no link any more")
    (folder.path / "null.csv").symlink_to("/dev/null")
    expect("no regular file" in folder.run("run", "p.json", "--results", "null.csv")[2], "/dev/null")
    expect(pathlib.Path("/dev/null").is_char_device(), "/dev/null is gone")


def keeps_the_old_file_where_a_run_fails():
    folder = Folder()
    folder.write(slow=60000)
    (folder.path / "out.csv").write_bytes(b"old")
    before = folder.state()
    stops = [signal.SIGINT, signal.SIGTERM, signal.SIGABRT] if NATIVE else [signal.SIGKILL]
    for stop in stops:
        process = folder.start("run", "slow.json", "--results", "out.csv")
        while process.poll() is None and not any(folder.path.glob("*.part")):
            time.sleep(0.01)
        process.send_signal(stop)
        process.communicate(timeout=60)
        for _ in range(500):  # the emulator cleans up behind the process
            if NATIVE or folder.state() == before:
                break
            time.sleep(0.02)
        expect(process.returncode == -stop, process.returncode)
        expect(folder.state() == before, stop, "left", list(folder.state()))
    if not NATIVE:
        return

    def limit_files():
        import resource
        resource.setrlimit(resource.RLIMIT_FSIZE, (20, resource.RLIM_INFINITY))

    code, out, error = folder.run("run", "p.json", "--results", "out.csv", preexec_fn=limit_files)
    expect(code == 2 and "cannot write results to out.csv" in error and "SumArr" in out, code, error)
    expect(folder.state() == before, "a full disk left", list(folder.state()))


def tells_what_standard_output_did_not_take():
    folder = Folder()
    rows = [["list"], ["list", "--json"], ["describe", "Divide"], ["describe", "--all", "--json"],
            ["call", "Divide", "1", "2"], ["run", "p.json", "--results", "out.csv"], ["exec"],
            ["check"], ["--help"]]
    for words in rows:
        with open("/dev/full", "wb") as full:
            code, _, error = folder.run(*words, stdin=None, stdout=full) if words != ["exec"] else \
                exec_into(folder, full)
        expect(code == 2 and error.count("cannot write to standard output") == 1, words, code, error)
        if NATIVE and words != ["exec"]:
            code, _, error = folder.run(*words, stdout=None, preexec_fn=lambda: os.close(1))
            expect(code == 2 and "cannot write to standard output" in error, words, code, error)
        if words[0] == "run":
            expect(folder.state().pop("out.csv") == ROWS, folder.state()["out.csv"])


def exec_into(folder, full):
    with tempfile.TemporaryFile() as requests:
        requests.write(b'{"instr":"Divide"}\n')
        requests.seek(0)
        return folder.run("exec", stdin=requests, stdout=full)


def prints_utf8():
    folder = Folder()
    expect("\u0092s float" in folder.run("describe", "PrintfNum")[1], "the apostrophe")
    if not NATIVE:
        return
    (folder.path / os.fsdecode(b"n\xff.csv")).write_bytes(b"5\n")
    odd = b"n\xff.csv"
    code, out, error = folder.run("run", "p.json", "--data", odd, "n.csv", "--results", "out.json")
    expect(code == 0 and "n\u00ff.csv: ok" in out, code, out, error)
    expect(json.loads(folder.state()["out.json"])["runs"][0]["file"] == "n\u00ff.csv", "the results")
    for words in [["run", odd], ["run", "p.json", "--data", odd + b"x"], ["call", odd], ["list", odd],
                  ["list", "--category", odd], ["call", "Divide", odd], ["call", "SetString", odd],
                  ["run", "p.json", "--results", odd + b"/x.csv"], ["check", odd], ["--plugin", odd, "list"],
                  ["call", "LenStr", b"\xc3A"], [odd]]:
        code, _, error = folder.run(*words)  # which fails where they are not UTF-8
        expect(code == 2 and error, words, code, error)


if __name__ == "__main__":
    sys.exit(runs.main([refuses_to_write_what_it_reads, draws_over_the_image, replaces_results_as_a_whole,
                        keeps_the_old_file_where_a_run_fails, tells_what_standard_output_did_not_take,
                        prints_utf8], "nothing is lost"))
