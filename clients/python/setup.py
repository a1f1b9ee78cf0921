"""setuptools build of the tvapic package (`python3 setup.py build`, bdist_wheel).

pip uses the package's own build backend (see pyproject.toml), which needs no
package from an index; both put the modules generated from the catalogue
(tvapic/_generated_*.py and the stubs) into what they build.
"""

import sys
from pathlib import Path

from setuptools import setup
from setuptools.command.build_py import build_py

sys.path.insert(0, str(Path(__file__).resolve().parent / "_build"))
from tvapic_table import write_modules  # noqa: E402


class BuildWithTable(build_py):
    """Adds the modules generated from the catalogue to the package."""

    def run(self):
        super().run()
        write_modules(Path(self.build_lib) / "tvapic")


setup(cmdclass={"build_py": BuildWithTable}, package_data={"tvapic": ["py.typed", "*.pyi"]})
