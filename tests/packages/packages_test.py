#!/usr/bin/env python3
"""packages_test.py [--bare ROOT] FOLDER...: does with the packages in these folders what users do.

A tar.gz and a zip are unpacked into folders of other names, the zip's programs run under Wine. A deb
is installed, used and removed in the bare Debian system at ROOT; without one it is only unpacked.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
VERSION = re.search(r"VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text())[1]
COUNT = int(re.search(r"kSize == (\d+)", (ROOT / "plugin/catalogue.h").read_text())[1])
OPTIONS = argparse.Namespace(bare=None, folders=[])


def package(pattern):
    found = [path for folder in OPTIONS.folders for path in folder.glob(pattern)]
    if len(found) != 1:
        raise AssertionError(f"{len(found)} packages {pattern} in {OPTIONS.folders}")
    return found[0]


def run(*words, **options):
    ran = subprocess.run(list(map(str, words)), capture_output=True, encoding="utf-8", **options)
    if ran.returncode != 0:
        raise AssertionError(f"{words} ended with {ran.returncode}:\n{ran.stdout}{ran.stderr}")
    return ran.stdout


class Packages(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def use(self, nuvhost, examples, work):
        """Lists, runs an example with an overlay, checks; `nuvhost` takes its words."""
        self.assertRegex(nuvhost("--version"), rf"^nuvhost {VERSION}\b")
        self.assertEqual(len(nuvhost("list", "--identifiers").splitlines()), COUNT)
        overlay = work / "Überlagerung 1.svg"
        told = nuvhost("run", examples / "washer/program.json", "--overlay", overlay)
        self.assertIn("1 part: 1 good", told)
        self.assertRegex(nuvhost("check"), r"\n\d+ passed, 0 failed, 0 skipped; \d+ instructions not called\s*$")
        return overlay

    def test_tar(self):
        run("tar", "xzf", package("nuvformula-*-linux-x86_64.tar.gz"), "-C", self.folder)
        (unpacked,) = self.folder.iterdir()
        home = unpacked.rename(self.folder / "another name")
        overlay = self.use(lambda *words: run(home / "bin/nuvhost", *words, env={}, cwd="/"),
                           home / "share/doc/nuvformula/examples", self.folder)
        self.assertIn("<svg", overlay.read_text())
        commands = re.findall(r"^  ([a-z]+) ", run(home / "bin/nuvhost", "--help"), re.M)
        pages = {path.stem for path in (home / "share/man/man1").iterdir()}
        self.assertEqual(pages, {"nuvhost", *(f"nuvhost-{command}" for command in commands)})
        for page in pages:
            told = run("man", "--warnings", "-l", home / f"share/man/man1/{page}.1",
                       env={**os.environ, "LC_ALL": "C.UTF-8", "MANWIDTH": "90"})
            self.assertRegex(told, rf"NAME\n +{page} - \w")

    def test_zip(self):
        home = self.folder / "Prüfung Größe 2"
        with zipfile.ZipFile(package("nuvformula-*-windows-x86_64.zip")) as archive:
            archive.extractall(home)
        (unpacked,) = home.iterdir()
        overlay = self.use(
            lambda *words: run(ROOT / "scripts/wine", unpacked / "bin/nuvhost.exe", *words),
            unpacked / "share/doc/nuvformula/examples", home)
        self.assertIn("<svg", overlay.read_text())

    def test_deb(self):
        deb = package("nuvformula_*_amd64.deb")
        fields = dict(re.findall(r"^ ([\w-]+): (.*)$", run("dpkg-deb", "-I", deb), re.M))
        self.assertEqual((fields["Package"], fields["Version"]), ("nuvformula", VERSION))
        self.assertEqual(set(re.findall(r"[a-z][\w+-]+(?= \()", fields["Depends"])),
                         {"libc6", "libgcc-s1", "libstdc++6"})
        contents = run("dpkg-deb", "-c", deb)
        for path in ("man/man1/nuvhost-run.1.gz", "bash-completion/completions/nuvhost",
                     "zsh/vendor-completions/_nuvhost", "doc/nuvformula/copyright"):
            self.assertIn(f" ./usr/share/{path}\n", contents)
        if OPTIONS.bare is None:
            run("dpkg-deb", "-x", deb, self.folder)
            self.use(lambda *words: run(self.folder / "usr/bin/nuvhost", *words, env={}),
                     self.folder / "usr/share/doc/nuvformula/examples", self.folder)
            return

        as_root = [] if os.geteuid() == 0 else ["sudo"]

        def inside(*words):
            environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "HOME": "/root"}
            return run(*as_root, "/usr/sbin/chroot", OPTIONS.bare, *words, env=environment)

        shutil.copy(deb, OPTIONS.bare / "tmp")
        inside("apt-get", "install", "--yes", f"/tmp/{deb.name}")
        self.use(lambda *words: inside("nuvhost", *words),
                 Path("/usr/share/doc/nuvformula/examples"), Path("/tmp"))
        files = [path for path in inside("dpkg", "-L", "nuvformula").splitlines() if "uv" in path]
        inside("apt-get", "purge", "--yes", "nuvformula")
        self.assertEqual([path for path in files if (OPTIONS.bare / path[1:]).exists()], [])


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--bare", type=Path, metavar="ROOT", help="a bare Debian system")
    parser.add_argument("folders", type=Path, nargs="+", metavar="FOLDER")
    parser.parse_args(namespace=OPTIONS)
    unittest.main(argv=sys.argv[:1])
