"""diff_test.py PLUGIN FAULTY COMMAND...: whether `nuvhost diff` finds every change and says right what
it breaks. COMMAND runs nuvhost, PLUGIN is the library, FAULTY the one at fault.

Random changes are made to the library's own catalogue, several hundred of them, each of one field of
one instruction; the table below says, apart from the program, whose saved programs each breaks.
"""

import copy
import hashlib
import json
import os
import random
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

PLUGIN, FAULTY, *COMMAND = sys.argv[1:]
EMULATED = len(COMMAND) > 1  # each call takes a second or more
NOBODY, HOSTS, NUVHOST, BOTH = set(), {"hosts"}, {"nuvhost"}, {"hosts", "nuvhost"}
LISTS = ("constants", "inputs", "results")


def run(*words, fault=""):
    return subprocess.run([*COMMAND, *words], capture_output=True, timeout=300,
                          env={**os.environ, "NUV_FAULT": fault})


def describe(library):
    return json.loads(run("--plugin", library, "describe", "--all", "--json").stdout)


CATALOGUE = describe(PLUGIN)
FOLDER = tempfile.TemporaryDirectory()


def saved(name, catalogue):
    path = Path(FOLDER.name) / name
    path.write_bytes(catalogue if isinstance(catalogue, bytes) else json.dumps(catalogue).encode())
    return str(path)


def diff(before, after):
    """The changes between two catalogues, as (identifier, list, field, before, after): (class,
    whose programs it breaks)."""
    ran = run("diff", "--json", saved("old.json", before), saved("new.json", after))
    answer = json.loads(ran.stdout)
    changes = {}
    for change in answer["changes"]:
        parameter = change["parameter"]
        key = (change["identifier"], parameter and parameter["list"],
               change["field"] or change["change"],
               json.dumps(change["before"]), json.dumps(change["after"]))
        assert key not in changes, f"{key} is told twice"
        changes[key] = (change["class"], set(change["breaks"]))
    broken = set().union(*(breaks for _, breaks in changes.values()))
    assert ran.returncode == (1 if broken else 0), ran
    assert answer["hostProgramsWork"] == ("hosts" not in broken)
    assert answer["nuvhostProgramsWork"] == ("nuvhost" not in broken)
    return changes


def called(record):
    name = record["group"] if record["name"] is None and "group" in record else record["name"]
    return (name or "").rstrip(" ")


def change_one(instruction, rng):
    """Changes one thing; gives {(list, field, before, after): (class, breaks)}."""
    expected = {}

    def expect(where, field, before, after, breaks, kind=None):
        kind = "breaking" if breaks else kind or "text only"
        key = (where, field, json.dumps(before), json.dumps(after))
        expected[key] = (kind, breaks)

    def set_field(record, where, field, value, breaks, kind=None):
        expect(where, field, record[field], value, breaks, kind)
        record[field] = value

    where = rng.choice([None, *(name for name in LISTS if instruction[name])])
    if where is None:
        field, change, breaks, kind = rng.choice([
            ("name", lambda old: old + "x", NUVHOST, None), ("name", lambda old: old + " ", NOBODY, None),
            ("category", lambda old: "Other", NUVHOST, None), ("help", lambda old: old + 1, NOBODY, None),
            ("description", lambda old: "other", NOBODY, None), ("format", lambda old: 18, HOSTS, None),
            ("summary", lambda old: "other", NOBODY, None),
            ("repeatable", lambda old: not old, BOTH if instruction["repeatable"] else NOBODY,
             "compatible")])
        set_field(instruction, where, field, change(instruction[field]), breaks, kind)
        return expected

    records = instruction[where]
    at = rng.randrange(len(records))
    record = records[at]
    nameless = where == "constants" and record["name"] is None
    ways = ["name", "description", "type", "index", "removed", "added"]
    ways += ["default"] if where != "results" else []
    ways += ["group", "min", "max", "choice", "label"] if where == "constants" else []
    way = rng.choice(ways)
    if len({called(one) for one in records}) < len(records) and way == "removed":
        way = "type"  # which of two namesakes is gone, nobody can tell
    if way == "name":
        value = (record["name"] or "") + rng.choice(["x", " "])
        same = value.rstrip(" ") == called(record)
        set_field(record, where, way, value, NOBODY if same else NUVHOST)
    elif way == "group":
        set_field(record, where, way, "other", NUVHOST if nameless else NOBODY)
    elif way == "description":
        set_field(record, where, way, "other", NOBODY)
    elif way == "type":
        set_field(record, where, way, 262, BOTH)
    elif way == "index":
        set_field(record, where, way, record[way] + 1, HOSTS)
    elif way == "default":
        set_field(record, where, way, rng.choice([12345, -0.0, "NaN", {"x": 1, "y": 2}]), NUVHOST)
    elif way in ("min", "max"):
        step = rng.choice([-1, 1])
        old = record[way]
        narrower = old is None or (step > 0) == (way == "min")
        value = step if old is None else None if rng.random() < 0.3 else old + step
        breaks = NOBODY if value is None else BOTH if narrower else NOBODY
        set_field(record, where, way, value, breaks, "compatible")
    elif way == "choice":
        record["choices"].append([999, "other"])
        expect(where, "choices[999]", None, [999, "other"], NOBODY, "compatible")
        if len(record["choices"]) > 2:
            gone = record["choices"].pop(rng.randrange(len(record["choices"]) - 1))
            expect(where, f"choices[{gone[0]}]", gone, None, BOTH)
    elif way == "label" and record["choices"]:
        choice = rng.choice(record["choices"])
        value = choice[1] + rng.choice(["x", " "])
        breaks = NOBODY if value.endswith(" ") else NUVHOST
        expect(where, f"choices[{choice[0]}]", choice[:], [choice[0], value], breaks)
        choice[1] = value
    elif way == "removed":
        expect(where, way, record, None, BOTH)
        del records[at]
        for later in range(at, len(records)):
            expect(where, "position", later + 1, later, BOTH)
            records[later]["index"] = later
    elif way == "added":
        new = {**record, "name": rng.choice([record["name"], "another"]), "index": len(records)}
        shares = [called(one) for one in records].count(called(new)) == 1
        free = where == "results" or (where == "constants" or not instruction["repeatable"]) and (
            record["type"] < 512 and record["default"] is not None)
        expect(where, way, None, new, BOTH if not free else NUVHOST if shares else NOBODY, "compatible")
        records.append(new)
    return expected


class Diff(unittest.TestCase):
    def test_saved_programs_know_the_catalogue(self):
        """Hosts store an instruction by its position and its identifier, and wire it by names and
        types: a change is one for every saved program. Whoever means it brings the digest up to
        date, with a line in the change log."""
        untold = {"summary", "helpFile", "silentFailure"}
        known = [{name: value for name, value in one.items() if name not in untold}
                 for one in CATALOGUE]
        self.assertEqual(hashlib.sha256(json.dumps(known).encode()).hexdigest(),
                         "a845d20e97ed6a96595d9a08d45d6dcaa196033f5ec1bab8e36a26f7eeed81e4")

    def test_finds_and_judges_each_random_change(self):
        rng = random.Random(14)
        seen = set()
        for _ in range(2 if EMULATED else 12):
            changed = copy.deepcopy(CATALOGUE)
            expected = {}
            rare = [one for one in changed if one["constants"]]
            for instruction in rare + rng.sample([o for o in changed if not o["constants"]], 50):
                for key, judged in change_one(instruction, rng).items():
                    expected[(instruction["identifier"], *key)] = judged
            found = diff(CATALOGUE, changed)
            self.assertEqual(found, expected)
            swapped = {"added": "removed", "removed": "added"}
            mirror = {(i, where, swapped.get(field, field), after, before)
                      for i, where, field, before, after in found}
            self.assertEqual(set(diff(changed, CATALOGUE)), mirror)
            seen |= {(key[1], key[2].partition("[")[0], *sorted(judged[1]))
                     for key, judged in found.items()}
        self.assertGreater(len(seen), 20 if EMULATED else 40)  # kinds of changes, so that none is missed by chance

    def test_judges_order_and_names(self):
        def judged(change):
            catalogue = copy.deepcopy(CATALOGUE)
            change(catalogue)
            for position, instruction in enumerate(catalogue):
                instruction["index"] = position
            return {(key[0], key[2]): breaks for key, (_, breaks) in diff(CATALOGUE, catalogue).items()}

        names = [one["identifier"] for one in CATALOGUE]
        new = {**copy.deepcopy(CATALOGUE[0]), "identifier": "_New_", "name": "New"}
        namesake = {**new, "name": "Divide "}
        self.assertEqual(judged(lambda c: None), {})
        self.assertEqual(judged(lambda c: c.append(new)), {("_New_", "added"): NOBODY})
        self.assertEqual(judged(lambda c: c.append(namesake)), {("_New_", "added"): NUVHOST})
        self.assertEqual(judged(lambda c: c.insert(261, new)), {
            ("_New_", "added"): NOBODY, (names[261], "position"): HOSTS, (names[262], "position"): HOSTS})
        self.assertEqual(judged(lambda c: c.pop()), {(names[262], "removed"): BOTH})
        self.assertEqual(judged(lambda c: c.insert(1, c.pop(0))), {
            (names[0], "position"): HOSTS, (names[1], "position"): HOSTS})

        add = next(one for one in CATALOGUE if len(one["inputs"]) > 1)["identifier"]

        def swap(catalogue):
            inputs = next(one for one in catalogue if one["identifier"] == add)["inputs"]
            inputs[0], inputs[1] = {**inputs[1], "index": 0}, {**inputs[0], "index": 1}
        self.assertEqual(judged(swap), {(add, "position"): BOTH})

    def test_refuses_what_is_no_catalogue(self):
        small = [copy.deepcopy(one) for one in CATALOGUE if one["constants"]][:2]
        good = saved("good.json", small)
        text = json.dumps(small).encode()
        refused = [b"", b"not a library", b"{}", b"[1]", b"[" * 300, text[:-1], text.replace(b"{", b"{\0", 1),
                   text.replace(b'"name"', b'"name": "x", "name"', 1), json.dumps(small + small[:1]).encode()]
        for path in ("", "constants", "inputs", "results"):
            for instruction in small:
                record = instruction[path][0] if path and instruction[path] else instruction
                for member in record.keys() - {"summary", "helpFile", "silentFailure"}:
                    kept = record.pop(member)
                    refused.append(json.dumps(small).encode())
                    if member not in (*LISTS, "choices", "default", "min", "max"):
                        record[member] = [[1], {}]
                        refused.append(json.dumps(small).encode())
                    record[member] = kept
        rng = random.Random(14)
        if EMULATED:
            refused = rng.sample(refused, 6)
        for content in refused:
            ran = run("diff", good, saved("bad.json", content))
            self.assertEqual(ran.returncode, 2, content)
            self.assertIn(b"bad.json", ran.stderr)
            self.assertEqual(ran.stdout, b"")
        for _ in range(2 if EMULATED else 40):
            broken = bytearray(text)
            for _ in range(rng.randrange(1, 4)):
                broken[rng.randrange(len(broken))] = rng.randrange(256)
            self.assertIn(run("diff", saved("bad.json", bytes(broken)), good).returncode, (0, 1, 2))
        self.assertEqual(run("diff", good, "nothing.json").returncode, 2)

    def test_reads_libraries(self):
        ran = run("diff", PLUGIN, saved("catalogue.json", CATALOGUE))
        self.assertEqual((ran.returncode, ran.stdout.splitlines()), (
            0, [b"0 breaking, 0 compatible, 0 text only", b"Programs that hosts saved: they still work",
                b"Programs of nuvhost: they still work"]))
        ran = run("diff", FAULTY, PLUGIN)
        self.assertEqual(ran.returncode, 1)
        self.assertIn(b"4 breaking, 263 compatible, 0 text only", ran.stdout)
        sound = saved("sound.json", describe(FAULTY))
        for fault, code, said in (("no name", 1, b'name was "Double", is null'),
                                  ("no descriptor", 2, b"crashed as its catalogue was read"),
                                  ("null library", 2, b"has no library object"),
                                  ("same identifier", 2, b"is the identifier of another")):
            ran = run("diff", sound, FAULTY, fault=fault)
            self.assertEqual(ran.returncode, code, fault)
            self.assertIn(said, ran.stdout + ran.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
