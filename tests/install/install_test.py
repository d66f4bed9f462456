"""Installs a build into a folder, moves it, and uses what is there as its users do: nuvhost, and a
program that is built by find_package and by pkg-config.

install_test.py BUILD VERSION COMPILER [TOOLCHAIN EMULATOR...]: the build folder; the last ones where it
is for another system.
"""

import os
import re
import shlex
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

BUILD, VERSION, COMPILER, *CROSS = sys.argv[1:]
TOOLCHAIN, *EMULATOR = CROSS or [None]
CONSUMER = Path(__file__).resolve().parent / "consumer"
ROOT = CONSUMER.parents[2]
COUNT = re.search(r"kSize == (\d+)", (ROOT / "plugin/catalogue.h").read_text())[1]
WINDOWS = EMULATOR != [] and EMULATOR[0].endswith("wine")


def run(*words, encoding="utf-8", **options):
    ran = subprocess.run(list(map(str, words)), capture_output=True, encoding=encoding, **options)
    if ran.returncode != 0:
        raise AssertionError(f"{words} ended with {ran.returncode}:\n{ran.stdout}{ran.stderr}")
    return ran.stdout


def execute(program, *words):
    """Runs an installed program in an empty environment but for what finds Wine's own things."""
    kept = {name: os.environ[name] for name in ("HOME", "PATH", "WINEPREFIX") if name in os.environ}
    return run(*EMULATOR, program, *words, cwd="/", env=kept)


def file_version(path):
    """The version in a Windows file's fixed information."""
    content = path.read_bytes()
    at = content.index(struct.pack("<II", 0xFEEF04BD, 0x10000))
    high, low = struct.unpack_from("<II", content, at + 8)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}"


class Install(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        run("cmake", "--install", BUILD, "--prefix", cls.folder / "installed")
        cls.prefix = cls.folder / "a folder für später"
        (cls.folder / "installed").rename(cls.prefix)
        cls.program = cls.prefix / ("bin/nuvhost.exe" if WINDOWS else "bin/nuvhost")
        plugin = "bin/NuvFormula.dll" if WINDOWS else "lib/nuvformula/NuvFormula.so"
        cls.plugin = cls.prefix / plugin

    def use(self, built, plugin):
        if WINDOWS:  # finds its libraries beside itself
            built = shutil.copy(built, self.prefix / "bin")
        self.assertEqual(execute(built, plugin).strip(), f"{COUNT} instructions, 0.25, a file")

    def test_nuvhost(self):
        self.assertRegex(execute(self.program, "--version"),
                         rf"^nuvhost {VERSION}( \([0-9a-f]{{10}}(, modified)?\))?\s*$")
        self.assertEqual(len(execute(self.program, "list", "--identifiers").splitlines()),
                         int(COUNT))
        self.assertIn("Divides the numerator", execute(self.program, "describe", "Divide"))
        examples = self.prefix / "share/doc/nuvformula/examples"
        self.assertIn("1 part: 1 good", execute(self.program, "run", examples / "washer/program.json"))
        link = self.folder / "linked"
        if not WINDOWS:
            link.symlink_to(self.program)
            self.assertEqual(execute(link, "call", "Sqrt", "4"), "sqrt of n = 2\n")

    def test_find_package(self):
        words = [f"-DCMAKE_TOOLCHAIN_FILE={TOOLCHAIN}"] if TOOLCHAIN else []
        build = self.folder / "build"
        run("cmake", "-G", "Ninja", "-S", CONSUMER, "-B", build, f"-DCMAKE_CXX_COMPILER={COMPILER}",
            f"-DNuvFormula_ROOT={self.prefix}", *words)
        run("cmake", "--build", build)
        places = [Path(line) for line in (build / "places.txt").read_text().splitlines()]
        self.assertEqual(places, [self.plugin, self.program])
        self.use(build / ("consumer.exe" if WINDOWS else "consumer"), self.plugin)

    def test_pkg_config(self):
        def ask(*words):
            """Its words; each byte beyond ASCII comes behind a backslash."""
            environment = {**os.environ, "PKG_CONFIG_PATH": self.prefix / "lib/pkgconfig"}
            words = run("pkg-config", *words, "nuvformula", env=environment, encoding="latin-1")
            return [word.encode("latin-1").decode("utf-8") for word in shlex.split(words)]

        self.assertEqual(ask("--modversion"), [VERSION])
        for name, place in (("plugin", self.plugin), ("nuvhost", self.program)):
            self.assertEqual([Path(word).resolve() for word in ask(f"--variable={name}")], [place])
        built = self.folder / ("plain.exe" if WINDOWS else "plain")
        rest = "-static" if WINDOWS else f"-Wl,-rpath,{self.prefix / 'lib'}"
        run(COMPILER, "-std=c++20", CONSUMER / "main.cpp", "-o", built,
            *ask("--cflags", "--libs"), rest)
        self.use(built, self.plugin)

    @unittest.skipUnless(WINDOWS, "files tell their version on Windows alone")
    def test_file_versions(self):
        files = sorted(self.prefix.glob("bin/*"))
        self.assertEqual([file_version(file) for file in files], [VERSION] * 8,
                         [file.name for file in files])


unittest.main(argv=sys.argv[:1])
