"""The package as pip builds and installs it: a wheel with the generated
modules, stubs and examples and a true RECORD, an sdist that builds without
the repository, and an installed package that finds libtvAPIC beside itself
or through the system's loader."""
import base64
import hashlib
import os
import subprocess
import sys
import tarfile
import zipfile
from pathlib import Path

import pytest

from inprocess import in_process_suite, need

pytestmark = in_process_suite
PROJECT = Path(__file__).resolve().parents[1]
GENERATED = ["_generated_remote.py", "_generated_exports.py", "_generated_classes.py",
             "native.pyi", "objects.pyi", "_generated_remote.pyi"]


@pytest.fixture(scope="module")
def backend():
    sys.path.insert(0, str(PROJECT / "_build"))
    try:
        import tvapic_backend
        if not __import__("tvapic_table").in_checkout():
            pytest.skip("not in a checkout of the repository: no generator to build with")
        yield tvapic_backend
    finally:
        sys.path.remove(str(PROJECT / "_build"))


def test_the_wheel_holds_the_generated_modules_and_a_true_record(backend, tmp_path):
    assert backend.get_requires_for_build_wheel() == []  # nothing to fetch from an index
    with zipfile.ZipFile(tmp_path / backend.build_wheel(str(tmp_path))) as wheel:
        assert {f"tvapic/{n}" for n in GENERATED + ["py.typed", "client.py", "examples/drawing_demo.py"]} <= set(
            wheel.namelist())
        assert b"'IDocuments_Add': ('object ITavraDocument'" in wheel.read("tvapic/_generated_exports.py")
        for line in wheel.read("tvapic-0.1.0.dist-info/RECORD").decode().splitlines():
            path, digest, size = line.rsplit(",", 2)
            if digest:
                data = wheel.read(path)
                assert int(size) == len(data), path
                assert digest == "sha256=" + base64.urlsafe_b64encode(hashlib.sha256(data).digest()).rstrip(
                    b"=").decode(), path


def test_the_sdist_ships_the_table_so_it_builds_without_the_repository(backend, tmp_path):
    with tarfile.open(tmp_path / backend.build_sdist(str(tmp_path))) as sdist:
        names = sdist.getnames()
    assert "tvapic-0.1.0/tvapic/_generated_remote.py" in names and "tvapic-0.1.0/pyproject.toml" in names


@pytest.fixture(scope="module")
def installed(backend, tmp_path_factory):
    target = tmp_path_factory.mktemp("site")
    run = subprocess.run([sys.executable, "-m", "pip", "install", "--no-index", "--no-deps", "--quiet",
                          "--target", str(target), str(PROJECT)], capture_output=True, text=True)
    assert run.returncode == 0, run.stderr
    return target


@pytest.mark.parametrize("beside", [True, False], ids=["beside the package", "through the loader"])
def test_an_installed_package_finds_the_library(installed, beside):
    library = Path(need("TVAPIC_LIBRARY"))
    env = {k: v for k, v in os.environ.items() if k not in ("TVAPIC_LIBRARY", "PYTHONPATH", "LD_LIBRARY_PATH")}
    env.update(PYTHONPATH=str(installed), PYTHONDONTWRITEBYTECODE="1")
    link = installed / "tvapic" / "libtvAPIC.so"
    if beside:
        link.symlink_to(library)   # found first, before the loader's path
    env["LD_LIBRARY_PATH"] = str(library.parent)
    try:
        found = subprocess.run([sys.executable, "-c", "from tvapic import native; print(native.load()); "
                                "print(native.IAPIObject_IsSameObjects(None, None))"],
                               capture_output=True, text=True, env=env, cwd=installed)
    finally:
        link.unlink(missing_ok=True)
    assert found.returncode == 0, found.stderr
    assert found.stdout.split() == [str(link) if beside else "libtvAPIC.so", "True"]
