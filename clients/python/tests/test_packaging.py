"""The package's build backend: a wheel with the generated table, installable offline."""
import base64
import hashlib
import sys
import tarfile
import zipfile
from pathlib import Path

import pytest

BUILD = Path(__file__).resolve().parents[1] / "_build"


@pytest.fixture(scope="module")
def backend():
    sys.path.insert(0, str(BUILD))
    try:
        import tvapic_backend
        if not __import__("tvapic_table").in_checkout():
            pytest.skip("not in a checkout of the repository: no generator to build with")
        yield tvapic_backend
    finally:
        sys.path.remove(str(BUILD))


def test_the_wheel_holds_the_package_its_table_and_a_true_record(backend, tmp_path):
    assert backend.get_requires_for_build_wheel() == []  # nothing to fetch from an index
    with zipfile.ZipFile(tmp_path / backend.build_wheel(str(tmp_path))) as wheel:
        names = set(wheel.namelist())
        assert {"tvapic/client.py", "tvapic/wire.py", "tvapic/_remote.py"} <= names
        assert "tvapic = tvapic.cli:main" in wheel.read("tvapic-0.1.0.dist-info/entry_points.txt").decode()
        assert b"def IApplication_GetSystemVersion(" in wheel.read("tvapic/_remote.py")
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
    assert "tvapic-0.1.0/tvapic/_remote.py" in names and "tvapic-0.1.0/pyproject.toml" in names
