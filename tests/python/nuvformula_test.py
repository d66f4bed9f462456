"""The package nuvformula, on the built nuvhost.

nuvformula_test.py [--without-numpy] COMMAND...: how to start nuvhost.
"""

import inspect
import json
import math
import os
import random
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import warnings
from array import array
from fractions import Fraction
from pathlib import Path
from unittest import mock

ROOT = Path(__file__).resolve().parents[2]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "python"))
if sys.argv[1] == "--without-numpy":
    sys.modules["numpy"] = None
    del sys.argv[1]
COMMAND = [str(Path(word).resolve()) if "/" in word else word for word in sys.argv[1:]]

import nuvformula  # noqa: E402
from nuvformula import FormulaError, FormulaWarning, HostError, values  # noqa: E402
from nuvformula.catalogue import python_names  # noqa: E402
from nuvformula.results import attribute_names  # noqa: E402

numpy = values.numpy
NUMBERS = [0.0, -0.0, 1.5, -1 / 3, 5e-324, 1.7e308, math.inf, -math.inf, math.nan, 2**53 + 2.0]


def bits(numbers):
    """What tells -0 from 0, and takes any NaN for the same."""
    return [b"nan" if one != one else struct.pack("<d", one) for one in numbers]


def flat(pairs):
    return [one for pair in pairs for one in pair]


def plain(result):
    return result.tolist() if hasattr(result, "tolist") else result


class WithHost(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.f = nuvformula.Host(COMMAND)

    @classmethod
    def tearDownClass(cls):
        cls.f.close()

    def fails(self, kind, text, call, *inputs, **named):
        with self.assertRaises(kind) as caught:
            call(*inputs, **named)
        self.assertIn(text, str(caught.exception))
        return caught.exception


class Values(WithHost):
    def test_arrays_of_any_size_come_through(self):
        pairs = list(zip(NUMBERS, reversed(NUMBERS)))
        for count in (0, 1, 62, 63, 64, 65, 100_000):
            for family, element, key in (
                    ("Array_Number", NUMBERS, bits), ("Array_Boolean", [True, False, True], list),
                    ("Array_Point", pairs, lambda given: bits(flat(given))),
                    ("Array_Line", pairs, lambda given: bits(flat(given))),
                    ("Array_String", ["", "µ€\U0001d11e", "a\"\\\n\x01"], list)):
                given = (element * (count // len(element) + 1))[:count]
                with self.subTest(family, count=count):
                    joined = getattr(self.f, family).Concatenate(given, given[:1])
                    self.assertEqual(key(plain(joined)), key(given + given[:1]))

    def test_whatever_holds_numbers_is_an_array(self):
        given = [[1.0, 2.5, -3.0, 4.0] * 100, list(range(600)), (1, 2.5, Fraction(1, 4)),
                 array("f", [1, 0.5]), range(300), (one for one in [1, 2])]
        expected = [list(map(float, one)) for one in given[:-1]] + [[1.0, 2.0]]
        if numpy is not None:
            grid = numpy.arange(1200.0).reshape(300, 4)
            frozen = numpy.arange(400.0)
            frozen.flags.writeable = False
            more = [grid[:, 1], grid[::-1, 2], grid[:, 0].astype("f4"), grid[:, 0].astype(">f8"),
                    numpy.arange(300, dtype="u1"), frozen, [numpy.float32(0.5), numpy.int8(3)]]
            given += more
            expected += [list(map(float, one)) for one in more]
        for one, wanted in zip(given, expected):
            self.assertEqual(plain(self.f.Array_Number.Concatenate(one, [])), wanted)
        if numpy is not None:
            for points in (grid[:, ::2], numpy.asfortranarray(grid[:, :2]), grid[:5, 1:3]):
                self.assertEqual(self.f.Array_Point.Concatenate(points, []).tolist(),
                                 points.tolist())
            self.assertIsInstance(self.f.Array_Point.Create(0), numpy.ndarray)
            self.assertEqual(self.f.Array_Boolean.Concatenate(grid[:, 0] > 9, []).dtype, bool)
            self.assertEqual(self.f.Divide(numpy.int32(3), numpy.array(2)), 1.5)
            self.assertIs(self.f.NOT(numpy.bool_(True)), False)
        else:
            self.assertEqual(self.f.Array_Point.CreateInf((1, 2), [3, 4]), [(1, 2), (3, 4)])

    def test_texts_are_their_bytes(self):
        every = bytes(range(1, 256))
        for text in ("größer als 5 µm", "€\U0001d11e", every,
                     every.decode("utf-8", "surrogateescape")):
            wanted = text if isinstance(text, bytes) else text.encode("utf-8", "surrogateescape")
            self.assertEqual(self.f.LenStr(text), len(wanted))
            copy = self.f.SetString(text)
            self.assertEqual(copy.encode("utf-8", "surrogateescape"), wanted)

    def test_refuses_what_an_input_cannot_be(self):
        f = self.f
        for kind, text, call, *inputs in (
                (TypeError, "numerator: expected a number, found True", f.Divide, True),
                (TypeError, "expected a number, found 1j", f.Divide, 1j),
                (ValueError, "too large", f.Divide, 10**400),
                (TypeError, "expected True or False, found 1", f.NOT, 1),
                (TypeError, "one more; it takes numerator, denominator", f.Divide, 1, 2, 3),
                (TypeError, "string: expected a text, found 5", f.LenStr, 5),
                (ValueError, "zero characters", f.LenStr, "a\0b"),
                (TypeError, "element 0: expected a number, found True", f.MeanArr, [True]),
                (ValueError, "element 299: the number is too large", f.MeanArr, [1] * 299 + [9**999]),
                (TypeError, "expected numbers, found '123'", f.MeanArr, "123"),
                (TypeError, "element 1: expected a pair, found (1,)", f.PtsToBestCircle, 0,
                 [(1, 2), (1,)])):
            with self.subTest(text):
                self.fails(kind, text, call, *inputs)
        self.fails(TypeError, "takes no points_; did you mean points", f.PtsToBestCircle, points_=[])
        self.fails(TypeError, "given twice", f.Divide, 1, numerator=1)
        self.fails(TypeError, "number: expected a list", f.Numeric.Add, number=1)
        self.fails(ValueError, 'icon: expected one of "Error", "Question"', f.Message_Box, icon="x")
        if numpy is not None:
            for text, wrong in (("shape (n,)", numpy.ones((2, 2))), ("complex", numpy.ones(2) * 1j),
                                ("bool", numpy.ones(2) > 0), ("<U1", numpy.array(["1"]))):
                self.fails(TypeError, text, f.MeanArr, wrong)
            self.fails(TypeError, "(n, 2)", f.PtsToBestCircle, points=numpy.ones((2, 3)))


class Names(WithHost):
    def test_every_instruction_is_found_and_told(self):
        told = subprocess.run([*COMMAND, "describe", "--all", "--json"], capture_output=True,
                              check=True)
        for one in json.loads(told.stdout):
            function = self.f[f"{one['category']}: {one['name']}"]
            family = getattr(self.f, python_names([one["category"]])[0])
            self.assertIs(getattr(family, function.__name__), function)
            self.assertIs(getattr(self.f, one["identifier"]), function)
            self.assertTrue(inspect.getdoc(function).startswith(one["summary"]))
            # Its defaults, written out, are what the library has for defaults.
            instruction = self.f._instructions[one["identifier"]]
            named = {name: parameter.default
                     for name, parameter in inspect.signature(function).parameters.items()
                     if parameter.default is not parameter.empty}
            inputs, constants = instruction.bind((), named)
            inputs = [value.as_json() if isinstance(value, values.Block) else value
                      for value in inputs]
            self.assertEqual(inputs, [each["default"] for each in one["inputs"]][:len(inputs)])
            self.assertEqual(constants, [each["default"] for each in one["constants"]])

    def test_names_that_several_share_tell_the_ways(self):
        for look in (lambda: self.f.Multiply, lambda: self.f["Multiply"]):
            told = str(self.fails((AttributeError, KeyError), "several instructions", look))
            for way in (".Numeric.Multiply", '["Array: Number: Multiply"]'):
                self.assertIn(way, told)
        self.fails(AttributeError, "did you mean PtsToBestCircle", lambda: self.f.PtsToBestCirle)
        self.assertIn("PtsToBestCircle", dir(self.f))
        self.assertNotIn("Multiply", dir(self.f))

    def test_names_become_python_names(self):
        self.assertEqual(python_names(["percent outliers", "class", "|array|", "# invalid", "2nd",
                                       "", None, "number", "number", "n1 >= n2"]),
                         ["percent_outliers", "class_", "array", "invalid", "_2nd", "unnamed",
                          "unnamed_2", "number", "number_2", "n1_n2"])
        self.assertEqual(attribute_names(("log", "picture", "index")), ["log_", "picture_", "index"])

    def test_inputs_by_position_and_by_name(self):
        f = self.f
        self.assertEqual(f.Max2(3, number_2=4), 4)
        self.assertEqual(f.Numeric.Add(1, 2, 3), f.Numeric.Add(number=[1, 2, 3]))
        corners = [(0, 0), (2, 0), (2, 2), (0, 2)]
        by_name = f.PtsToBestCircleInf(point=corners, annotation_color=-1)
        self.assertEqual(by_name.center, (1, 1))
        self.assertEqual(by_name["center"], f.PtsToBestCircleInf(0, False, 1, -1, *corners)[3])
        self.assertEqual(f.NumToString(2, Integer_field_padding="Pad with '0'"),
                         f.NumToString(2, Integer_field_padding=1))


class Outcomes(WithHost):
    def test_failures_and_warnings_are_pythons(self):
        error = self.fails(FormulaError, "Numeric: Divide: Division by zero", self.f.Divide, 1, 0)
        self.assertEqual((error.source, error.text, error.result[0]),
                         ("Numeric: Divide", "Division by zero", 0))
        self.fails(FormulaError, "without a message, as it does where the array is empty",
                   self.f.MeanArr, [])
        with warnings.catch_warnings(record=True) as told:
            warnings.simplefilter("always")
            self.f.Correlate([5], [7])
            self.f.call("Correlate", [5], [7])
        self.assertEqual([(str(one.message), one.category, one.filename) for one in told],
                         [("Correlate: Constant array(s)!", FormulaWarning, __file__)] * 2)
        self.f.set(angle_unit="degrees")
        self.assertAlmostEqual(self.f.Sin(30), 0.5)
        self.f.set(angle_unit="radians")

    def test_a_program_gives_what_nuvhost_run_writes(self):
        program = ROOT / "examples/washer/program.json"
        with tempfile.TemporaryDirectory() as folder:
            picture, results = Path(folder, "p.svg"), Path(folder, "r.json")
            subprocess.run([*COMMAND, "run", program, "--overlay", picture, "--results", results],
                           check=True, capture_output=True)
            run = self.f.run(program)
            image = ROOT / "examples/washer/washer.png"
            self.assertEqual(run.picture(image).svg, picture.read_text(encoding="utf-8"))
            told = json.loads(results.read_text(encoding="utf-8"))["runs"][0]
            self.assertEqual([row.value for row in run.report],
                             [row["value"] for row in told["report"]])
            self.assertEqual((run.status, run["Outer diameter"]), ("good", run.report[0].value))
            # The same measures by calls, and the same picture of what they draw.
            points = [tuple(map(float, line.split(",")))
                      for line in (program.parent / "outer.csv").read_text().split()[1:]]
            with self.f.picture() as drawn:
                rim = self.f.PtsToBestCircle(10, points)
            self.assertEqual(rim.diameter, run.steps["rim"].diameter)
            self.assertEqual(drawn.annotations, run.steps["rim"].annotations)
            drawn.save(picture)
            self.assertEqual(picture.read_text(encoding="utf-8"), rim.picture()._repr_svg_())
            # Other data, from values and from files.
            for rims in (points, program.parent / "outer.csv"):
                changed = self.f.run(program, {"rim edge": rims, "discarded": 20})
                self.assertEqual(changed.steps["rim"].diameter,
                                 self.f.PtsToBestCircle(20, points).diameter)
        self.fails(ValueError, "did you mean rim edge", self.f.run, program, {"rim egde": 1})
        steps = [{"name": "a", "instr": "Divide", "in": [1, 0]}]
        self.fails(FormulaError, 'step "a": Numeric: Divide', self.f.run, {"steps": steps})
        with self.assertWarnsRegex(FormulaWarning, 'step "a": Correlate: Constant') as warned:
            self.f.run({"steps": [{"name": "a", "instr": "Correlate", "in": [[5], [7]]}]})
        self.assertEqual(warned.filename, __file__)


class Processes(unittest.TestCase):
    """What ends, breaks or shares the process behind a Host."""

    def stand_in(self, folder, script):
        """A nuvhost that describes well, and for exec does as a shell script says."""
        path = Path(folder, "nuvhost")
        real = " ".join(f"'{word}'" for word in COMMAND)
        path.write_text(f'#!/bin/sh\ncase "$*" in exec) ;; *) exec {real} "$@";; esac\n{script}\n')
        path.chmod(0o755)
        return path

    def test_what_is_no_nuvhost(self):
        with tempfile.TemporaryDirectory() as folder:
            for script, complaint in (
                    ("echo hello; cat >/dev/null", "no answer: hello"), ("exit 7", "exit code 7"),
                    ("echo '{}'; cat >/dev/null", "no answer: {}"),
                    ("read line; echo sorry >&2; kill -SEGV $$", "by signal 11"),
                    ("read line; echo sorry >&2; exit 1", "sorry"),
                    ('read line; printf \'{"status":0,"out":\'', "exit code 0")):
                with self.subTest(script):
                    f = nuvformula.Host(self.stand_in(folder, script))
                    for _ in range(2):  # it stays so
                        with self.assertRaisesRegex(HostError, complaint.replace("[", r"\[")):
                            f.Divide(1, 2)
            for nuvhost in (Path(folder, "missing"), "/bin/cat", ["sh", "-c", "exit 3"], folder):
                with self.assertRaisesRegex(HostError, "is it (the )?nuvhost"):
                    nuvformula.Host(nuvhost)
            searched = subprocess.run(
                [sys.executable, "-c", "import nuvformula; nuvformula.Host()"], text=True,
                env={"PATH": folder + "/none", "PYTHONPATH": str(ROOT / "python")},
                capture_output=True, check=False)
            self.assertIn("add its folder to PATH, name it in the environment", searched.stderr)

    def test_an_end_is_an_error_and_no_hang(self):
        f = nuvformula.Host(COMMAND)
        threading.Timer(0.3, lambda: f._process._child.kill()).start()
        began = time.monotonic()
        with self.assertRaisesRegex(HostError, "ended in the middle, by signal 9"):
            f.Sleep(30_000)
        self.assertLess(time.monotonic() - began, 20)

    def test_without_files_in_memory(self):
        with tempfile.TemporaryDirectory() as folder, mock.patch.object(os, "memfd_create"), \
                mock.patch.object(tempfile, "tempdir", folder):
            del os.memfd_create
            with nuvformula.Host(COMMAND) as f:
                self.assertEqual(sum(f.Array_Number.CreateRep(1000, 1.0)), 1000)
                self.assertEqual(len(os.listdir(folder)), 1)
            self.assertEqual(os.listdir(folder), [])

    def test_closing(self):
        before = len(os.listdir("/proc/self/fd"))
        with nuvformula.Host(COMMAND) as f:
            f.Array_Number.CreateRep(1000, 1.0)
            child = f._process._child
        f.close()
        with self.assertRaisesRegex(HostError, "closed"):
            f.Divide(1, 2)
        self.assertEqual(child.returncode, 0)
        self.assertEqual(len(os.listdir("/proc/self/fd")), before)
        forgotten = nuvformula.Host(COMMAND)
        child = forgotten._process._child
        del forgotten
        self.assertEqual(child.returncode, 0)

    def test_threads_take_turns(self):
        wrong = []

        def work(seed):
            for count in range(100):
                numbers = [float(seed * 1000 + count)] * random.Random(count).choice([1, 300, 3000])
                if plain(f.Array_Number.Concatenate(numbers, [])) != numbers:
                    wrong.append((seed, count))

        with nuvformula.Host(COMMAND) as f:
            threads = [threading.Thread(target=work, args=(seed,)) for seed in range(6)]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
        self.assertEqual(wrong, [])

    def test_interrupted_calls_leave_no_answer_behind(self):
        def interrupt(*_):
            raise KeyboardInterrupt

        texts = ["x" * 200_000]
        chance = random.Random(3)
        interrupted = 0
        previous = signal.signal(signal.SIGALRM, interrupt)
        try:
            with nuvformula.Host(COMMAND) as f:
                for number in range(1500):
                    try:
                        signal.setitimer(signal.ITIMER_REAL, chance.uniform(5e-6, 2e-4))
                        if number % 10 == 0:
                            f.Array_String.Size(texts)
                        f.Numeric.Add(number, 0.25)
                        signal.setitimer(signal.ITIMER_REAL, 0)
                    except KeyboardInterrupt:
                        interrupted += 1
                        self.assertEqual(f.Numeric.Add(number, 0.5), number + 0.5)
                signal.setitimer(signal.ITIMER_REAL, 0.2)
                with self.assertRaises(KeyboardInterrupt):
                    f.Sleep(1000)
                self.assertEqual(f.Numeric.Add(1, 2), 3)
        finally:
            signal.setitimer(signal.ITIMER_REAL, 0)
            signal.signal(signal.SIGALRM, previous)
        self.assertGreater(interrupted, 100)

    def test_a_fork_leaves_it_to_the_parent(self):
        f = nuvformula.Host(COMMAND)
        reader, writer = os.pipe()
        child = os.fork()
        if child == 0:
            try:
                f.Divide(1, 2)
            except HostError as error:
                os.write(writer, str(error).encode())
            f.close()
            time.sleep(20)  # until it is ended below
            os._exit(0)
        self.assertIn("make another one here", os.read(reader, 1000).decode())
        self.assertEqual(f.Divide(1, 2), 0.5)
        f.close()  # while the child lives, and not by force
        self.assertEqual(f._process._child.returncode, 0)
        os.kill(child, signal.SIGKILL)
        os.waitpid(child, 0)
        os.close(reader)
        os.close(writer)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
