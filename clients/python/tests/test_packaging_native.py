"""The installed package: its generated modules and stubs come with it, and it
finds libtvAPIC beside itself or through the system's loader."""
import os
import subprocess
import sys
import zipfile
from pathlib import Path

import pytest

from inprocess import in_process_suite, need

pytestmark = in_process_suite
PROJECT = Path(__file__).resolve().parents[1]
GENERATED = ["_remote.py", "_native.py", "_objects.py", "native.pyi", "objects.pyi", "_remote.pyi"]


@pytest.fixture(scope="module")
def installed(tmp_path_factory):
    if not (PROJECT.parents[1] / "tools" / "generate.py").is_file():
        pytest.skip("not in a checkout of the repository: no generator to build with")
    target = tmp_path_factory.mktemp("site")
    run = subprocess.run([sys.executable, "-m", "pip", "install", "--no-index", "--no-deps", "--quiet",
                          "--target", str(target), str(PROJECT)], capture_output=True, text=True)
    assert run.returncode == 0, run.stderr
    return target


def in_installed(target, code, **environment):
    env = {k: v for k, v in os.environ.items() if k not in ("TVAPIC_LIBRARY", "PYTHONPATH", "LD_LIBRARY_PATH")}
    env.update(PYTHONPATH=str(target), PYTHONDONTWRITEBYTECODE="1", **environment)
    return subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, env=env, cwd=target)


def test_the_wheel_holds_the_generated_modules_and_the_stubs(tmp_path):
    sys.path.insert(0, str(PROJECT / "_build"))
    try:
        import tvapic_backend
    finally:
        sys.path.pop(0)
    if not __import__("tvapic_table").in_checkout():
        pytest.skip("not in a checkout of the repository")
    with zipfile.ZipFile(tmp_path / tvapic_backend.build_wheel(str(tmp_path))) as wheel:
        names = set(wheel.namelist())
        assert {f"tvapic/{n}" for n in GENERATED + ["py.typed", "native.py", "objects.py", "examples/__init__.py",
                                                   "examples/drawing_demo.py", "examples/events_demo.py"]} <= names
        assert b"'IDocuments_Add': ('object ITavraDocument'" in wheel.read("tvapic/_native.py")


LOAD = ("from tvapic import native; path = native.load(); "
        "print(path); print(native.IAPIObject_IsSameObjects(None, None))")


def test_an_installed_library_is_found_through_the_systems_loader(installed):
    library = Path(need("TVAPIC_LIBRARY"))
    found = in_installed(installed, LOAD, LD_LIBRARY_PATH=str(library.parent))
    assert found.returncode == 0, found.stderr
    assert found.stdout.split() == ["libtvAPIC.so", "True"]


def test_a_library_beside_the_package_is_found_first(installed):
    library = Path(need("TVAPIC_LIBRARY"))
    beside = installed / "tvapic" / "libtvAPIC.so"
    beside.symlink_to(library)
    try:
        found = in_installed(installed, LOAD)
        assert found.returncode == 0, found.stderr
        assert found.stdout.split() == [str(beside), "True"]
    finally:
        beside.unlink()
