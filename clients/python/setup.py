"""setuptools build of the tvapic package (`python3 setup.py build`, bdist_wheel).

pip uses the package's own build backend (see pyproject.toml), which needs no
package from an index; both put the table generated from the catalogue,
tvapic/_remote.py, into what they build.
"""

import sys
from pathlib import Path

from setuptools import setup
from setuptools.command.build_py import build_py

sys.path.insert(0, str(Path(__file__).resolve().parent / "_build"))
from tvapic_table import write_table  # noqa: E402


class BuildWithTable(build_py):
    """Adds the function table generated from the catalogue to the package."""

    def run(self):
        super().run()
        write_table(Path(self.build_lib) / "tvapic" / "_remote.py")


setup(cmdclass={"build_py": BuildWithTable})
