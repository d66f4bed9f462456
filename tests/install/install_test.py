"""Installs a build into a folder, moves it, and uses what is there as its users do: nuvhost, and a
host that is built by find_package, by pkg-config and by the lines of docs/hosting.md; and builds
the plug-in anew against what was installed.

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
PAGE = (ROOT / "docs/hosting.md").read_text(encoding="utf-8")
SAID = (ROOT / "examples/host/README.md").read_text(encoding="utf-8").split("```\n")[-2]
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
        cls.source = cls.prefix / "share/doc/nuvformula/examples/host/host.cpp"

    def use(self, built, plugin):
        if WINDOWS:  # finds its libraries beside itself
            built = shutil.copy(built, self.prefix / "bin")
        self.assert_says(execute(built, plugin))

    def assert_says(self, text):
        """That a host printed what its README says, in which a line stands for many."""
        lines = text.splitlines()
        begin, end = SAID.split("...\n")
        self.assertEqual(len(lines), 2 + int(COUNT) + 3)
        self.assertEqual("\n".join(lines[:4]), begin.strip())
        self.assertEqual("\n".join(lines[-4:]), end.strip())

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
            f"-DNuvFormula_ROOT={self.prefix}", f"-DHOST_SOURCE={self.source}", *words)
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
        run(COMPILER, "-std=c++20", self.source, "-o", built,
            *ask("--cflags", "--libs"), rest)
        self.use(built, self.plugin)

    def test_lines_of_the_page(self):
        blocks = re.findall(r"```sh\n(.*?)```", PAGE, re.DOTALL)
        lines = next(block for block in blocks if ("mingw" in block) == WINDOWS)
        folder = self.folder / "page"
        folder.mkdir()
        shutil.copy(self.source, folder)
        environment = {**os.environ, "PREFIX": str(self.prefix), "LC_ALL": "C.UTF-8",
                       "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml="}
        self.assert_says(run("sh", "-e", "-c", lines, cwd=folder, env=environment))

    @unittest.skipIf(TOOLCHAIN, "once is enough")
    def test_plugin_for_a_host(self):
        """Its headers and libraries are those of the folder that is named, none of the tree's."""
        build = self.folder / "foreign"
        run("cmake", "-G", "Ninja", "-S", ROOT, "-B", build, f"-DCMAKE_CXX_COMPILER={COMPILER}",
            f"-DFORMULA_HOST={self.prefix}")
        run("cmake", "--build", build)
        used = run("ninja", "-C", build, "-t", "deps")
        self.assertIn(str(self.prefix / "include/nuvformula/host/services.h"), used)
        self.assertNotIn(str(ROOT / "host"), used)
        built = build / "bin/NuvFormula.so"
        self.assertEqual(execute(self.program, "--plugin", built, "call", "Divide", 1, 8),
                         "quotient = 0.125\n")

    @unittest.skipUnless(WINDOWS, "files tell their version on Windows alone")
    def test_file_versions(self):
        files = sorted(self.prefix.glob("bin/*"))
        self.assertEqual([file_version(file) for file in files], [VERSION] * 8,
                         [file.name for file in files])


unittest.main(argv=sys.argv[:1])
