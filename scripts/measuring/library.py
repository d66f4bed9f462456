"""Calls of the library, by `nuvhost exec` (docs/exec.md)."""

import json
import subprocess
import tempfile

from reference.library import Library


class CalledLibrary(Library):
    def answers(self, calls, unit="radians"):
        """The results of calls (instruction, inputs, constants...), a list for each, in order.

        Ends the program where a call is refused, fails or warns: what is measured must be a result.
        """
        # By its identifier an instruction is found many times as soon.
        identifiers = {name: self.identifier_of(name) for name in {call[0] for call in calls}}
        requests = [{"instr": identifiers[name], "in": inputs, "const": list(constants)}
                    for name, inputs, *constants in calls]
        answers = self._exchange([{"set": {"angleUnit": unit}}, *requests])[1:]
        for request, answer in zip(requests, answers):
            if answer.get("status") != 0 or "messages" in answer:
                raise SystemExit(f"accuracy: {json.dumps(request)}: {json.dumps(answer)}")
        return [answer["out"] for answer in answers]

    def _exchange(self, requests):
        """By way of files: answers are flushed, and a pipe would wake its reader for each."""
        with tempfile.TemporaryFile() as asked, tempfile.TemporaryFile() as answered:
            asked.write("".join(json.dumps(request) + "\n" for request in requests).encode())
            asked.seek(0)
            subprocess.run([*self.nuvhost, "exec"], stdin=asked, stdout=answered, check=True)
            answered.seek(0)
            answers = list(map(json.loads, answered.read().decode().splitlines()))
        if len(answers) != len(requests):
            raise SystemExit(f"accuracy: {len(requests)} requests had {len(answers)} answers")
        return answers

    def firsts(self, calls, unit="radians"):
        """The first result of each call."""
        return [out[0] for out in self.answers(calls, unit)]

    def numbers(self, calls, unit="radians"):
        """The first result of each call, where that is a number."""
        return list(map(float, self.firsts(calls, unit)))
