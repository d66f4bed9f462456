#!/usr/bin/env python3
"""planted_test.py NEEDY PLANTED NUVHOST...: whether a plug-in gets the library that it needs from
beside itself, and not from the current folder."""

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path


def main(needy, planted, *nuvhost):
    with tempfile.TemporaryDirectory() as folder:
        beside, current = Path(folder, "beside"), Path(folder, "current")
        beside.mkdir()
        current.mkdir()
        shutil.copy(needy, beside)
        shutil.copy(planted, current)

        def complaint(plugin):
            return subprocess.run([*nuvhost, "--plugin", plugin, "list"], cwd=current, text=True,
                                  capture_output=True).stderr

        plugin = f"../beside/{Path(needy).name}"
        assert "cannot load" in complaint(plugin), complaint(plugin)
        shutil.copy(planted, beside)
        assert "has no library object" in complaint(plugin), complaint(plugin)
        # A library that is named by its file alone is the one in the current folder all the same.
        shutil.copy(needy, current)
        assert "has no library object" in complaint(Path(needy).name), complaint(Path(needy).name)


main(*sys.argv[1:])
