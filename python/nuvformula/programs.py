"""Inspection programs: `nuvhost run`, from Python values to Python values."""

import json
import os
import tempfile
from collections import namedtuple
from pathlib import Path

from nuvformula import values
from nuvformula.catalogue import UnknownNameError, did_you_mean
from nuvformula.process import run_to_end
from nuvformula.results import FormulaError, Picture, Result

Row = namedtuple("Row", "label value unit min max expect good")


class Run:
    """What came of a program: `run["Mean"]` is the value of the report's row with that label.

    status: "good" or "bad" where rows have limits, otherwise "ok". report: the rows, with label,
    value, unit, min, max, expect and good, None where there is none. steps: a Result by name.
    """

    def __init__(self, host, told):
        self.status = told["status"]
        self.report = [
            Row(row["label"], values.guess_from_json(row["value"]), row.get("unit"), row.get("min"),
                row.get("max"), row.get("expect"), row.get("good")) for row in told["report"]]
        self.steps = {step["name"]: _result(host, step) for step in told["steps"]}
        self._host = host

    def picture(self, image=None):
        """What the steps drew, over an image file where one is named."""
        drawn = [one for step in self.steps.values() for one in step.annotations]
        return Picture(self._host, image, drawn)

    def __getitem__(self, label):
        for row in self.report:
            if row.label == label:
                return row.value
        raise UnknownNameError(f"the report has no row {label!r}")

    def __repr__(self):
        return "\n".join([f"{row.label}: {row.value} {row.unit or ''}".rstrip()
                          for row in self.report] + [self.status])


def _result(host, step):
    instruction = host._instructions[step["instr"]]
    results = [values.FROM_JSON[kind](one["value"])
               for one, kind in zip(step.get("results", ()), instruction.result_kinds)]
    return Result(host, instruction.result_names, results, step)


def _with_data(program, data, folder):
    """The program with data in the place of its own, and paths that hold in any folder."""
    program = json.loads(json.dumps(program))

    def moved(path):
        return path if path == "-" else os.path.join(folder, path)

    if "image" in program:
        program["image"] = moved(program["image"])
    own = program.get("data", {})
    for datum in own.values():
        if isinstance(datum, dict) and isinstance(datum.get("file"), str):
            datum["file"] = moved(datum["file"])
    for name, value in (data or {}).items():
        if name not in own:
            raise ValueError(f"the program has no data {name!r}{did_you_mean(name, own)}")
        if isinstance(value, os.PathLike):
            datum = own[name] if isinstance(own[name], dict) else {}
            own[name] = dict(datum, file=os.path.abspath(value))
            continue
        try:
            own[name] = values.guess_to_json(value)
        except (TypeError, ValueError) as error:
            raise type(error)(f"data {name!r}: {error}") from None
    return program


def run(host, program, data):
    with tempfile.TemporaryDirectory(prefix="nuvformula-") as folder:
        path = name = program
        if isinstance(program, dict) or data:
            home = os.getcwd()
            name = "the program"
            if not isinstance(program, dict):
                name = os.fspath(program)
                home = os.path.dirname(os.path.abspath(program))
                program = json.loads(Path(program).read_text(encoding="utf-8-sig"))
            path = os.path.join(folder, "program.json")
            changed = _with_data(program, data, home)
            Path(path).write_text(json.dumps(changed, indent=1), encoding="utf-8")
        results = Path(folder, "results.json")
        ran = run_to_end([*host._command, "run", os.fspath(path), "--results", str(results)])
        said = ran.stderr.decode("utf-8", "replace").strip().replace(str(path), str(name))
        if ran.returncode not in (0, 1) or not results.exists():
            raise ValueError(said or f"nuvhost run ended with {ran.returncode}")
        told = json.loads(results.read_bytes())["runs"][0]
    outcome = Run(host, told)
    for step in told["steps"]:
        where = f"step \"{step['name']}\": "
        instruction = host._instructions[step["instr"]]
        host._tell(instruction, outcome.steps[step["name"]], step["state"] == "failed", 4, where)
    if told["status"] == "failed":  # in an expression
        raise FormulaError(str(name), "\n".join(told["errors"]))
    return outcome
