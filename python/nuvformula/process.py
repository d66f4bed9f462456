"""The process `nuvhost exec` behind a Host: lines there and back, arrays in a shared file."""

import contextlib
import json
import os
import secrets
import shutil
import subprocess
import tempfile
import threading
import weakref

from nuvformula.values import Block, from_bytes

FEWEST_IN_FILE = 64  # elements; fewer cost less as JSON


class HostError(RuntimeError):
    """nuvhost is missing, ended, or is not what it should be."""


def command_of(nuvhost):
    """The words that start nuvhost: those given, or $NUVHOST, or the one on the path."""
    if nuvhost is None:
        nuvhost = os.environ.get("NUVHOST") or shutil.which("nuvhost")
    if nuvhost is None:
        raise HostError("there is no nuvhost on the path: add its folder to PATH, name it in the "
                        "environment variable NUVHOST, or as nuvformula.Host(\"PATH/TO/nuvhost\")")
    if isinstance(nuvhost, (str, os.PathLike)):
        return [os.fspath(nuvhost)]
    return list(map(os.fspath, nuvhost))


def run_to_end(words, **options):
    """Runs nuvhost to its end; gives what subprocess.run does, its output as bytes."""
    try:
        return subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, check=False,
                              **options)
    except OSError as error:
        raise HostError(f"cannot start {words[0]}: {error.strerror}; is it the nuvhost that you "
                        "mean?") from None
    except subprocess.TimeoutExpired:
        raise HostError(f"{words[0]} does not answer; is it nuvhost?") from None


def _shared_file():
    """A file that nuvhost can open by its name, and whether it must be deleted."""
    if hasattr(os, "memfd_create"):
        number = os.memfd_create("nuvformula")
        return open(number, "r+b", buffering=0), f"/proc/{os.getpid()}/fd/{number}", False
    number, name = tempfile.mkstemp(prefix="nuvformula-")
    return open(number, "r+b", buffering=0), name, True


_living = weakref.WeakSet()  # processes, for a fork to let go of


def _leave_to_parent():
    for process in list(_living):
        process.let_go()


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_leave_to_parent)


class Process:
    """One `nuvhost exec`. `lock` is to be held from request() to the last take()."""

    def __init__(self, words):
        self.lock = threading.Lock()
        self._owner = os.getpid()
        self._in_step = True
        self._closed = None  # why, once it is
        self._file = None
        self._used = 0  # bytes of it, by the call at hand
        self._complaints = tempfile.TemporaryFile()
        # Not in the terminal's group of processes: Ctrl-C is Python's, and no call is lost for it.
        group = ({"creationflags": subprocess.CREATE_NEW_PROCESS_GROUP} if os.name == "nt"
                 else {"start_new_session": True})
        try:
            self._child = subprocess.Popen([*words, "exec"], bufsize=0, stdin=subprocess.PIPE,
                                           stdout=subprocess.PIPE, stderr=self._complaints, **group)
        except OSError as error:
            raise HostError(f"cannot start {words[0]}: {error.strerror}; is it the nuvhost that "
                            "you mean?") from None
        self._input = self._child.stdin.fileno()
        self._output = self._child.stdout.fileno()
        _living.add(self)

    def check(self):
        """Raises HostError where there is nobody to ask."""
        if self._owner != os.getpid():
            raise HostError("this Host belongs to the process that made it; make another one here")
        if self._closed is not None:
            raise HostError(self._closed)

    def ask(self, request):
        """The answer to a request, an object; ValueError where the request was refused."""
        self.check()
        line = json.dumps(request).encode() + b"\n"
        if not self._in_step:
            self._fall_into_step()
        self._in_step = False
        self._write(line)
        data = self._read(1 << 12)
        while not data.endswith(b"\n"):
            data += self._read(1 << 20)
        self._in_step = True
        try:
            answer = json.loads(data)
            refusal = answer.get("error")
            if refusal is None and "instr" in request:
                answer["out"], answer["status"]  # both are always there
        except (ValueError, AttributeError, KeyError):
            shown = data[:200].decode("utf-8", "replace").strip()
            self._end(f"what was started as nuvhost answers what is no answer: {shown}")
        if refusal is not None:
            raise ValueError(refusal)
        return answer

    def _place(self, block):
        """A block as a request holds it: in the file where it is large, or as a list."""
        if block.count < FEWEST_IN_FILE:
            return block.as_json()
        data = memoryview(block.scalars).cast("B")
        self._open_file()
        offset = self._used
        try:
            self._file.seek(offset)
            written = self._file.write(data)
            while written < len(data):
                written += self._file.write(data[written:])
        except OSError:  # no room
            return block.as_json()
        self._used += len(data)
        return {"file": self._name, "offset": offset, "count": block.count}

    def request(self, members, has_arrays):
        """A request with all its blocks placed, and where large arrays among its results go."""
        self.check()
        self._used = 0
        for member in ("in", "const"):
            if member in members:
                members[member] = [self._place(one) if type(one) is Block else one
                                   for one in members[member]]
        if has_arrays:
            self._open_file()
            members["outFile"] = self._name
        return members

    def take(self, value, kind, size):
        """An array of a result that stands in the file; an element has so many bytes."""
        data = bytearray(value["count"] * size)
        self._file.seek(value["offset"])
        read = 0
        while read < len(data):
            got = self._file.readinto(memoryview(data)[read:])
            if not got:
                self._end("the file for large arrays was cut short")
            read += got
        return from_bytes(data, kind)

    def close(self):
        """Ends the process, by force where it does not end. A second time does nothing."""
        if self._owner != os.getpid():
            return
        with self.lock:
            self._close("this Host is closed; make another one")

    def let_go(self):
        """After a fork, in the child: the process stays the parent's."""
        for stream in (self._child.stdin, self._child.stdout, self._file):
            if stream is not None:
                with contextlib.suppress(OSError):
                    stream.close()
        self._child.returncode = 0  # nobody to wait for

    def _open_file(self):
        if self._file is None:
            self._file, self._name, self._must_delete = _shared_file()

    def _write(self, line):
        try:
            written = os.write(self._input, line)
            while written < len(line):
                line = memoryview(line)[written:]
                written = os.write(self._input, line)
        except OSError:
            self._died()

    def _read(self, most):
        try:
            data = os.read(self._output, most)
        except OSError:
            data = b""
        if not data:
            self._died()
        return data

    def _fall_into_step(self):
        """After an interrupted call, of which nobody knows how far it came: ends the line that may
        have been begun, asks what is refused by a name of its own, and skips all until then."""
        mark = secrets.token_hex(16).encode()
        self._write(b'\n{"' + mark + b'": 0}\n')
        tail = b""
        while mark not in tail or not tail.endswith(b"\n"):
            tail = (tail + self._read(1 << 16))[-4096:]

    def _died(self):
        try:
            code = self._child.wait(10)
        except subprocess.TimeoutExpired:
            self._end("nuvhost no longer answers")
        how = f"by signal {-code}" if code < 0 else f"with exit code {code}"
        self._complaints.seek(0)
        told = self._complaints.read()[-2000:].decode("utf-8", "replace").strip()
        self._end(f"nuvhost ended in the middle, {how}; what it kept is lost, make another Host"
                  + (f":\n{told}" if told else ""))

    def _end(self, why):
        self._close(why)
        raise HostError(why)

    def _close(self, why):
        if self._closed is not None:
            return
        self._closed = why
        _living.discard(self)
        self._child.stdin.close()
        self._child.stdout.close()
        try:
            self._child.wait(20 if self._in_step else 1)  # else a call may go on for long
        except subprocess.TimeoutExpired:
            self._child.kill()
            self._child.wait()
        self._complaints.close()
        if self._file is not None:
            self._file.close()
            if self._must_delete:
                os.unlink(self._name)
