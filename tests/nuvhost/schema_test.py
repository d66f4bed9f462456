"""The schema of programs takes every example and refuses what is wrong."""

import copy
import json
import pathlib
import re
import sys

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]

NULL = object()  # stands for null, since None takes a member away

GOOD = {
    "steps": [
        {"name": "a", "instr": "_Nuv_Numeric_AddNumbers_", "in": [1, "NaN", {"data": "d", "columns": ["x", 1]}]},
        {"name": "b", "instr": "AND", "in": {"bool": [True, {"step": "a", "result": 0}]}},
        {"name": "c", "instr": "SetNumber", "in": [{"data": "d", "column": "x", "row": 0, "where": {"y": 1}}]},
        {"name": "e", "instr": "SumArr", "in": [{"value": [], "allowEmpty": True}]},
        {"name": "f", "instr": "SetNumber", "in": [{"expr": "a + 1"}]},
    ],
    "image": "part.png",
    "data": {"d": {"file": "d.csv", "decimal": ",", "allowEmpty": True}, "e": {"value": []}, "p": [{"x": 1, "y": "Infinity"}]},
    "settings": {"angleUnit": "degrees", "defaultColor": 4294967295, "maxArrayElements": 1},
    "report": [{"label": "A", "value": {"step": "a"}, "decimals": 0}],
}

# Where a good program is changed, and to what; None takes the member away.
BROKEN = [
    (["steps"], None),
    (["steps"], []),
    (["steps"], {}),
    (["step"], []),
    (["title"], 3),
    (["image"], ""),
    (["image"], {"file": "part.png"}),
    (["settings", "angleUnit"], "grad"),
    (["settings", "defaultColor"], -1),
    (["settings", "maxArrayElements"], 0),
    (["settings", "unit"], 1),
    (["data", "d"], NULL),
    (["data", "d", "file"], ""),
    (["data", "d", "files"], "x"),
    (["data", "d", "decimal"], ";"),
    (["data", "d", "allowEmpty"], 1),
    (["data", "e", "value"], None),
    (["data", "e", "value"], {"value": []}),
    (["data", ""], 1),
    (["data", "p", 0, "z"], 1),
    (["data", "p", 0, "x"], "inf"),
    (["steps", 0, "name"], None),
    (["steps", 0, "name"], ""),
    (["steps", 0, "instr"], None),
    (["steps", 0, "inn"], []),
    (["steps", 0, "in"], 1),
    (["steps", 0, "in", 0], {"stp": "a"}),
    (["steps", 0, "in", 2, "columns"], ["x"]),
    (["steps", 0, "in", 2, "column"], "x"),
    (["steps", 1, "in", "bool", 1, "result"], -1),
    (["steps", 1, "const"], [[1]]),
    (["steps", 2, "in", 0, "row"], -1),
    (["steps", 2, "in", 0, "where"], {}),
    (["steps", 2, "in", 0, "where", "y"], [1]),
    (["steps", 3, "in", 0, "allowEmpty"], "yes"),
    (["steps", 4, "in", 0, "expr"], 3),
    (["steps", 4, "in", 0, "result"], "sum"),
    (["report", 0, "value"], {"expr": ""}),
    (["report", 0, "value"], None),
    (["report", 0, "value"], 3),
    (["report", 0, "decimals"], 18),
]


def changed(program, path, value):
    program = copy.deepcopy(program)
    part = program
    for key in path[:-1]:
        part = part[key]
    if value is None:
        del part[path[-1]]
    else:
        part[path[-1]] = None if value is NULL else value
    return program


def main():
    schema = json.loads((ROOT / "docs/program.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    failures = []

    programs = {str(path): path.read_text(encoding="utf-8")
                for pattern in ("examples/*/program.json", "docs/instructions/pictures/*.json")
                for path in sorted(ROOT.glob(pattern))}
    if not programs:
        failures.append("no example has a program")
    for page in ["README.md", "docs/programs.md"]:
        blocks = re.findall(r"```json\n(.*?)```", (ROOT / page).read_text(encoding="utf-8"), re.S)
        programs.update({f"{page}, program {i}": block for i, block in enumerate(blocks)
                         if '"steps"' in block})
    programs["the good program"] = json.dumps(GOOD)
    for name, text in programs.items():
        for error in validator.iter_errors(json.loads(text)):
            failures.append(f"{name}: {error.json_path}: {error.message}")
    for path, value in BROKEN:
        if validator.is_valid(changed(GOOD, path, value)):
            failures.append(f"taken: {path} = {value}")

    print("\n".join(failures) or f"{len(programs)} programs taken, {len(BROKEN)} refused")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
