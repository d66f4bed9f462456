"""Whether bash and zsh complete a command line of nuvhost: each is typed at a shell on a terminal,
with the key Tab behind it, and the shell tells the words that come of it.

completion_test.py NUVHOST
"""

import json
import os
import pty
import re
import select
import sys
import tempfile
import time
import unittest
from pathlib import Path

NUVHOST = Path(sys.argv[1]).resolve()
PACKAGING = Path(__file__).resolve().parents[2] / "packaging"
# What is typed before Tab, and the last word behind it.
LINES = {
    "describ": "describe",
    "list --cat": "--category",
    "list --category Trig": "Trigonometric",
    "--plugin x run --part-c": "--part-column",
    "describe Divi": "Divide",
    r"describe Integer\ D": "Integer Divide",
    'describe "Numeric: Mul': "Numeric: Multiply",
    "describe 'Array: Number: Multip": "Array: Number: Multiply",
    r"describe Array:\ Number:\ Multip": "Array: Number: Multiply",
    r"--log 'a b' call Array:\ Nu": "Array: Number: ",
    "call FileC": "FileCopy",
    "describe _Nuv_Numeric_Incr": "_Nuv_Numeric_Increment_",
    # A name that several share is none; files are left to the shell.
    "describe Multip": "Multip",
    "run prog": "program.json",
    "call Add --log prog": "program.json",
}


class Shell:
    """An interactive shell where nuvhost, but for its help and list, tells its words as JSON."""

    def __init__(self, folder, *command, setup):
        program = folder / "nuvhost"
        program.write_text(f"""#!/bin/sh
for word; do case $word in --help|--identifiers) exec '{NUVHOST}' "$@";; esac; done
{sys.executable} -c 'import json, sys; print("=" + json.dumps(sys.argv[1:]) + "=")' "$@"
""")
        program.chmod(0o755)
        (folder / "program.json").touch()
        pid, self.terminal = pty.fork()
        if pid == 0:
            os.chdir(folder)
            os.execvpe(command[0], command, {
                "PATH": f"{folder}:/usr/bin:/bin", "HOME": str(folder), "TERM": "dumb",
                "LC_ALL": "C.UTF-8"})
        self.send(setup + "\necho rea''dy\n")
        self.read_until("ready\r\n")

    def send(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, mark):
        seen, end = "", time.monotonic() + 20
        while mark not in seen:
            if not select.select([self.terminal], [], [], max(0.0, end - time.monotonic()))[0]:
                raise AssertionError(f"no {mark!r} in {seen!r}")
            seen += os.read(self.terminal, 65536).decode("utf-8", "replace")
        return seen

    def complete(self, line):
        """The last word, once the line is completed and run."""
        self.send(f"nuvhost {line}\t\n")
        return json.loads(re.search(r"=(\[.*\])=", self.read_until("]="))[1])[-1]


class Completion(unittest.TestCase):
    def try_lines(self, *command, setup):
        with tempfile.TemporaryDirectory() as folder:
            shell = Shell(Path(folder), *command, setup=setup)
            for line, word in LINES.items():
                with self.subTest(line):
                    self.assertEqual(shell.complete(line), word)

    def test_bash(self):
        self.try_lines("bash", "--norc", "--noprofile", "-i",
                       setup=f"bind 'set bell-style none'; source {PACKAGING}/nuvhost.bash")

    def test_zsh(self):
        self.try_lines("zsh", "-f", "-i", setup=f"unsetopt zle_bracketed_paste beep; "
                       f"fpath=({PACKAGING} $fpath); autoload -U compinit; compinit -u -D")


unittest.main(argv=sys.argv[:1])
