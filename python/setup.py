"""The version is the project's own; pyproject.toml holds all else."""

import re
from pathlib import Path

from setuptools import setup

lists = Path(__file__).resolve().parent.parent / "CMakeLists.txt"
setup(version=re.search(r"project\(\w+ VERSION ([\d.]+)", lists.read_text(encoding="utf-8"))[1])
