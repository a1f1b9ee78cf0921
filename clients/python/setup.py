"""Builds the tvapic package; its function table is generated from the catalogue.

`pip install ./clients/python` from a checkout needs nothing but the standard
library and setuptools: the build step runs the repository's generator
(../../tools/generate.py) and puts its tvapic/_remote.py into the build.
"""

import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

from setuptools import setup
from setuptools.command.build_py import build_py

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
GENERATOR = ROOT / "tools" / "generate.py"
CATALOGUE = ROOT / "catalogue"
TABLE = Path("python") / "tvapic" / "_remote.py"


class BuildWithTable(build_py):
    """Adds the generated function table to the package being built."""

    def run(self):
        super().run()
        target = Path(self.build_lib) / "tvapic" / "_remote.py"
        if GENERATOR.exists() and CATALOGUE.is_dir():
            with tempfile.TemporaryDirectory() as out:
                subprocess.run([sys.executable, str(GENERATOR), "--catalogue", str(CATALOGUE), "--out", out],
                               check=True)
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copyfile(Path(out) / TABLE, target)
        elif not target.exists():
            sys.exit(f"tvapic: cannot build the function table: {GENERATOR} is not there "
                     "(build from a checkout of the repository)")


setup(cmdclass={"build_py": BuildWithTable})
