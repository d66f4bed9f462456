#!/usr/bin/env python3
"""transcript_test.py [--update] PROGRAM...: whether nuvhost answers as the transcripts beside this
file say. PROGRAM is the command that runs it, such as `wine nuvhost.exe`.

A transcript is a text of blocks:

    --- NAME              a file of that name, up to the next line ---
    --- <                 what the next command reads from standard input
    $ nuvhost WORD...     a command, its standard output below it, each line of standard error
    ! LINE                behind an exclamation mark, and last the exit code where it is not 0
    [1]
    $ cat NAME            a file that a command wrote
    # ...                 a remark, before a file or a command

Each transcript has an empty folder of its own. A line `...` stands for any lines, and `...` within
one for any text. With --update the answers are written anew; look at the difference.
"""

import re
import shlex
import subprocess
import sys
import tempfile
from pathlib import Path


def blocks_of(text):
    """(kind, head, lines): a remark, a file or a command."""
    blocks = []
    lines = iter(text.splitlines())
    for line in lines:
        if line.startswith("--- "):
            content = []
            for part in lines:
                if part == "---":
                    break
                content.append(part)
            blocks.append(("file", line[4:], content))
        elif line.startswith("$ "):
            blocks.append(("command", line[2:], []))
        elif blocks and blocks[-1][0] == "command" and not line.startswith("# "):
            blocks[-1][2].append(line)
        else:
            blocks.append(("remark", line, []))
    return blocks


def answer_of(program, folder, words, stdin):
    if words[0] == "cat":
        return (folder / words[1]).read_text(encoding="utf-8").splitlines()
    ran = subprocess.run(program + words[1:], cwd=folder, input=stdin, capture_output=True,
                         timeout=120)
    answer = ran.stdout.decode("utf-8").splitlines()
    answer += ["! " + line for line in ran.stderr.decode("utf-8").splitlines()]
    return answer + ([f"[{ran.returncode}]"] if ran.returncode != 0 else [])


def fits(expected, answer):
    pattern = "".join(r"(?:.*\n)*?" if line == "..."
                      else re.escape(line).replace(r"\.\.\.", ".*") + r"\n" for line in expected)
    return re.fullmatch(pattern, "".join(line + "\n" for line in answer)) is not None


def play(program, transcript, update):
    """Runs a transcript; gives its complaints."""
    complaints = []
    written = []
    commands = 0
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        stdin = b""
        for kind, head, lines in blocks_of(transcript.read_text(encoding="utf-8")):
            if kind == "remark":
                written.append(head)
                continue
            if kind == "file":
                written += ["--- " + head, *lines, "---"]
                content = "".join(line + "\n" for line in lines).encode("utf-8")
                if head == "<":
                    stdin = content
                else:
                    (folder / head).parent.mkdir(parents=True, exist_ok=True)
                    (folder / head).write_bytes(content)
                continue
            commands += 1
            expected = lines[:]
            blank = []
            while expected and expected[-1] == "":
                blank.append(expected.pop())
            answer = answer_of(program, folder, shlex.split(head), stdin)
            stdin = b""
            while answer and answer[-1] == "":
                answer.pop()
            good = fits(expected, answer)
            written += ["$ " + head, *(expected if good else answer), *blank]
            if not good:
                complaints.append(f"{transcript.name}: $ {head}\n" +
                                  "".join(f"    {line}\n" for line in answer))
    if commands == 0:
        complaints.append(f"{transcript.name}: no command")
    if update and complaints:
        transcript.write_text("\n".join(written) + "\n", encoding="utf-8")
    return complaints


def main(arguments):
    update = arguments[:1] == ["--update"]
    program = [str(Path(word).resolve()) if "/" in word else word for word in arguments[update:]]
    transcripts = sorted(Path(__file__).parent.glob("*.txt"))
    complaints = [one for transcript in transcripts for one in play(program, transcript, update)]
    print("\n".join(complaints) + f"{len(transcripts)} transcripts, {len(complaints)} differences")
    sys.exit(1 if complaints or not transcripts else 0)


main(sys.argv[1:])
