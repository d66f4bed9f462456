"""What tests of nuvhost's command share: a folder of their own to run it in, and their failures."""

import pathlib
import re
import subprocess
import sys
import tempfile

NATIVE = len(sys.argv) == 2  # else by an emulator, which has signals, terminals and links of its own
failures = []


def expect(condition, *what):
    if not condition:
        failures.append(" ".join(str(word) for word in what))


class Folder:
    def __init__(self):
        self.temporary = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self.temporary.name)

    def start(self, *words, **options):
        return subprocess.Popen([*sys.argv[1:], *words], cwd=self.path,
                                **{"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE,
                                   "stderr": subprocess.PIPE, **options})

    def run(self, *words, **options):
        """Exit code, output and complaints, which are UTF-8 whatever happens."""
        process = self.start(*words, **options)
        out, error = process.communicate(timeout=300)
        # What the leak sanitizer says of a thread that ends just then.
        error = re.sub(rb"==\d+==Unable to get registers from thread \d+\.\n", b"", error)
        return process.returncode, (out or b"").decode(), error.decode()

    def read(self, name):
        return (self.path / name).read_bytes()

    def state(self):
        return {file.name: file.read_bytes() for file in self.path.iterdir() if file.is_file()}


def main(checks, good):
    for check in checks:
        known = len(failures)
        check()
        failures[known:] = [f"{check.__name__}: {failure}" for failure in failures[known:]]
    print("\n".join(failures) or good)
    return 1 if failures else 0
