"""check_options_test.py FAULTY COMMAND...: the levels of `nuvhost check`, one law alone, JUnit's XML and
random calls, over a library at fault. COMMAND runs nuvhost.
"""

import json
import os
import shlex
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

FAULTY, *COMMAND = sys.argv[1:]
DANGER = ("--outer-world", "_Faulty_Danger_")  # whom it calls, it ends
FUZZ = ("--level", "stress", "--only", "fuzz")


def run(words, fault="", stdin=b""):
    return subprocess.run([*COMMAND, *words], input=stdin, capture_output=True, timeout=300,
                          env={**os.environ, "NUV_FAULT": fault})


def check(*words, fault="", code=0):
    ran = run(["check", FAULTY, *DANGER, *words], fault)
    assert ran.returncode == code, ran
    return ran.stdout.decode()


def laws(*words, **how):
    """{law: verdict} as told."""
    return {law["law"]: law["verdict"] for law in json.loads(check("--json", *words, **how))["laws"]}


class CheckOptions(unittest.TestCase):
    def test_levels(self):
        quick = laws("--level", "quick", fault="no name", code=1)
        self.assertEqual({law for law, verdict in quick.items() if verdict != "pass"}, {"texts"})
        self.assertTrue({"export", "clear", "repeatable"} <= quick.keys())
        self.assertFalse({"call-defaults", "unload"} & quick.keys())
        for words in (["--seed", "1"], ["--seconds", "1"], ["--level", "quick", *FUZZ[2:]],
                      ["--level", "quick", "--only", "call-texts"], FUZZ[2:]):
            self.assertIn(b"--level", run(["check", FAULTY, *words]).stderr)

    def test_one_law_alone(self):
        self.assertEqual(laws("--only", "call-texts"), {"call-texts": "pass"})
        self.assertEqual(laws("--only", "call-texts", "--only", "export"),
                         {"export": "pass", "call-texts": "pass"})
        self.assertEqual(laws("--only", "call-defaults", fault="status 7", code=1),
                         {"call-defaults": "FAIL"})
        self.assertEqual(laws("--only", "texts", fault="null library", code=1),
                         {"export": "FAIL", "texts": "skip"})
        unknown = run(["check", FAULTY, "--only", "call-text"])
        self.assertEqual(unknown.returncode, 2)
        self.assertIn(b'no law "call-text", did you mean "call-texts"', unknown.stderr)

    def test_junit(self):
        some = [word for law in ("export", "texts", "call-numbers") for word in ("--only", law)]
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder) / "check.xml"
            for fault, code in (("", 0), ("odd text", 1), ("null library", 1)):
                told = json.loads(check(*some, "--json", "--junit", str(file), fault=fault, code=code))
                root = xml.parse(file).getroot()
                suite = root.find("testsuite")
                counts = {"tests": str(len(told["laws"])), "failures": str(told["failed"]),
                          "errors": "0", "skipped": str(told["skipped"])}
                for element in (root, suite):
                    self.assertLessEqual(counts.items(), element.attrib.items())
                cases = suite.findall("testcase")
                self.assertEqual([(c.get("classname"), c.get("name")) for c in cases],
                                 [(law["group"], law["law"]) for law in told["laws"]])
                for case, law in zip(cases, told["laws"]):
                    verdict = "FAIL" if case.find("failure") is not None else (
                        "skip" if case.find("skipped") is not None else "pass")
                    self.assertEqual(verdict, law["verdict"])
                    self.assertGreaterEqual(float(case.get("time")), 0)
                    if verdict == "FAIL":
                        said = "\n".join(law["complaints"]).replace("\1", "\uFFFD")
                        self.assertEqual(case.find("failure").text.rstrip("\n"), said)
                        self.assertEqual(case.find("failure").get("message"), law["demand"])
            library = Path(folder) / "library.so"
            library.write_bytes(b"precious")
            for words in ([str(library)], ["--json"]):
                self.assertEqual(run(["check", "--junit", *words]).returncode, 2)
            self.assertEqual(library.read_bytes(), b"precious")
        printed = xml.fromstring(check("--only", "call-numbers", "--junit", fault="odd text", code=1))
        self.assertIn("<&\"'\uFFFD\uFFFD]]>", printed.find(".//failure").text)

    def test_random_calls_find_what_no_law_does_and_show_it_again(self):
        for fault, complaint in (("odd offset", '"_Faulty_Pick_": returned status 7'),
                                 ("crash between", 'crashed while executing "_Faulty_Double_"')):
            laws("--only", "call-numbers", "--only", "call-constants", fault=fault)
            told = check(*FUZZ, "--seed", "1", "--seconds", "3", "--json", fault=fault, code=1)
            law, = json.loads(told)["laws"]
            said, again, request = law["complaints"][0].split("\n")
            self.assertEqual((said, law["complaintCount"]), (complaint, 1))
            words = shlex.split(again)
            self.assertEqual(words[:3], ["nuvhost", "check", FAULTY])
            shown = run(words[1:], fault)
            self.assertEqual(shown.returncode, 1, shown)
            self.assertIn(f"        {said}\n        {again}\n        {request}\n",
                          shown.stdout.decode().replace("\r", ""))
            self.assertEqual(run(words[1:]).returncode, 0)  # without the fault
            answer = run(["--plugin", FAULTY, "exec"], fault, request.encode() + b"\n")
            if fault == "odd offset":
                self.assertEqual(json.loads(answer.stdout)["status"], 7)
            else:
                self.assertNotIn(b'"status"', answer.stdout)
                self.assertNotEqual(answer.returncode, 0, answer)

    def test_random_calls_go_on_behind_a_crash(self):
        told = check(*FUZZ, "--seed", "1", "--seconds", "3", "--json", fault="crash between", code=1)
        calls = int(json.loads(told)["laws"][0]["note"].split()[2])
        self.assertGreater(calls, 2000)
        note = check(*FUZZ, "--seed", "1", "--seconds", "1")
        self.assertIn("pass  stress       fuzz  (seed 1, ", note)

    def test_a_label_goes_without_its_last_blanks(self):
        step = {"name": "last", "instr": "Pick", "in": [[1, 7], 0], "const": {"order": "backward"}}
        with tempfile.TemporaryDirectory() as folder:
            program = Path(folder) / "program.json"
            program.write_text(json.dumps({"steps": [step]}))
            self.assertIn(b"element  7", run(["--plugin", FAULTY, "run", str(program)]).stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
