"""Whether docs/accuracy.md is what scripts/accuracy prints, whether every figure is as good as it
must be, and whether a library that is wrong in the eleventh digit would be found out.

accuracy_test.py NUVHOST: the program.
"""

import difflib
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/accuracy.md"
sys.path.insert(0, str(ROOT / "scripts"))
sys.dont_write_bytecode = True

from measuring import angles, fits, sums, texts, trials  # noqa: E402
from measuring.library import CalledLibrary  # noqa: E402
from measuring.page import Page  # noqa: E402

NUVHOST = sys.argv[1]


def spoilt(value):
    """A number wrong in the eleventh digit, a text in its last character, also within others."""
    if isinstance(value, bool):
        return value
    if isinstance(value, dict):
        return {key: spoilt(part) for key, part in value.items()}
    if isinstance(value, list):
        return list(map(spoilt, value))
    if isinstance(value, str):
        return value[:-1] + str((int(value[-1]) + 1) % 10) if value[-1:].isdigit() else value
    return value * (1 + 1e-11)


class WrongLibrary(CalledLibrary):
    """Of which some instructions, or all, are wrong."""

    def __init__(self, names=None):
        super().__init__([NUVHOST])
        self.names = names

    def answers(self, calls, unit="radians"):
        return [spoilt(out) if self.names is None or name in self.names else out
                for (name, *_), out in zip(calls, super().answers(calls, unit))]


def complaints(library, *measures):
    page = Page()
    for measure in measures:
        measure(library, page)
    return page.complaints


class Accuracy(unittest.TestCase):
    def test_page(self):
        run = subprocess.run([sys.executable, ROOT / "scripts/accuracy", "--nuvhost", NUVHOST],
                             capture_output=True, encoding="utf-8")
        self.assertEqual((run.returncode, run.stderr), (0, ""))
        # The section on outliers takes the benchmarks' program.
        page, heading, _ = PAGE.read_text(encoding="utf-8").partition("\n" + trials.HEADING)
        self.assertTrue(heading)
        self.assertEqual("\n".join(difflib.unified_diff(
            page.splitlines(), run.stdout.splitlines(), PAGE.name, "scripts/accuracy",
            lineterm="")), "")

    def test_wrong_answers_are_found(self):
        sums.SAMPLES = fits.SCENES = 3
        angles.COUNT = texts.COUNT = 20
        found = "\n".join(complaints(WrongLibrary(), sums.write, fits.write, angles.write,
                                     texts.write))
        expected = [f"{name}: too few correct digits" for name, *_ in sums.SETS]
        expected += [f"mean {mean:g}, subtracted" for mean in sums.MEANS]
        expected += [f"line {kind.name}: off by" for kind in fits.LINES]
        expected += [f"{kind.name}: centre off by" for kind in fits.CIRCLES]
        expected += [f"{name}, {label}:" for functions, ranges in
                     ((angles.FORWARD, angles.ANGLES), (angles.INVERSE, angles.RATIOS))
                     for name, _ in functions for label, _ in ranges]
        expected += [f"ArcTan, {label}:" for label, _ in angles.BEYOND]
        expected += [f"{name} in degrees" for name in ("Sin", "Cos", "ArcSin", "ArcCos", "ArcTan")]
        expected += ["DegToRad:", "RadToDeg:", "2.675"]
        expected += [f"{name}, {label}:" for name in texts.FORMATS for label, _ in texts.NUMBERS]
        expected += [f"StringToNum, {form}, {label}:" for form in texts.FORMS
                     for label, _ in texts.NUMBERS[:3]]
        expected += [f"StringToNum, {texts.BETWEEN}:"]
        self.assertEqual([text for text in expected if text not in found], [])

    def test_instructions_that_part_are_found(self):
        sums.SAMPLES = fits.SCENES = 3
        for name, measure, count in (("Mean", sums.published_sets, len(sums.SETS)),
                                     ("Cp", sums.published_sets, len(sums.SETS)),
                                     ("CpkArr", sums.published_sets, len(sums.SETS)),
                                     ("PtsToBestLnInf", fits.lines, len(fits.LINES)),
                                     ("RakeLineFit", fits.lines, len(fits.LINES) - 1),
                                     ("PtsToBestCircleInf", fits.circles, len(fits.CIRCLES))):
            found = complaints(WrongLibrary({name}), measure)
            self.assertEqual(sum("that compute the same differ" in text for text in found), count,
                             name)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
