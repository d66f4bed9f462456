"""The wheel, used from an empty virtual environment: the example and the examples of the page.

package_test.py NUVHOST
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# Runs the page's examples, which must not see the sources.
DOCTEST = r"""
import doctest, re, sys
import nuvformula
assert sys.prefix in nuvformula.__file__, nuvformula.__file__
page = open("docs/python.md", encoding="utf-8").read()
blocks = "\n".join(re.findall(r"```python\n(.*?)```", page, re.S))
test = doctest.DocTestParser().get_doctest(blocks, {}, "docs/python.md", None, 0)
assert len(test.examples) > 15
result = doctest.DocTestRunner().run(test)
sys.exit(1 if result.failed else 0)
"""


def run(*words, **options):
    ran = subprocess.run(words, cwd=ROOT, capture_output=True, text=True, check=False, **options)
    if ran.returncode != 0:
        sys.exit(f"{' '.join(map(str, words))}: {ran.returncode}\n{ran.stdout}{ran.stderr}")
    return ran.stdout


def main(nuvhost):
    readme = (ROOT / "examples/python/README.md").read_text(encoding="utf-8")
    program = (ROOT / "examples/python/washer.py").read_text(encoding="utf-8")
    shown = dict(re.findall(r"```(python|text)\n(.*?)```", readme, re.S))
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        run("scripts/wheel", folder / "wheel")
        run("/usr/bin/python3", "-m", "venv", folder / "venv")
        python = folder / "venv/bin/python"
        run(python, "-m", "pip", "install", "--no-compile", "--no-index", *(folder / "wheel").iterdir())
        environment = dict(os.environ, NUVHOST=nuvhost)
        printed = run(python, "-W", "error", "-c", program.replace("washer.svg", f"{name}/washer.svg"),
                      env=environment)
        run(python, "-c", DOCTEST, env=environment)
        failures = [complaint for complaint, is_so in (
            ("the example prints " + printed, printed != shown["text"]),
            ("its page shows another program", shown["python"] != program),
            ("its picture lacks a circle",
             (folder / "washer.svg").read_text(encoding="utf-8").count("<circle") != 2),
        ) if is_so]
    print("\n".join(failures) or "as shown")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
