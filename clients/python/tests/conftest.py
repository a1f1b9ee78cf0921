"""Fixtures: a running tvhost (the simulated host serving the API) on a port it chose.

CTest passes the tvhost executable in TVHOST; without it the tests that need a
server are skipped. TVHOST_EMULATOR is a command put before it (for example
`wine`, to serve from the Windows build); TVHOST_PORT instead points the tests
at a server someone else started and stops, on this machine's loopback.
"""
import os
import shlex
import subprocess
import sys
from pathlib import Path

import pytest

from tvapic import Client

sys.path.insert(0, str(Path(__file__).resolve().parents[3] / "tests" / "common"))
import tvhost_process  # noqa: E402


@pytest.fixture(scope="session")
def served_files(tmp_path_factory):
    """The files root of the tvhost the tests start. Its name is not ASCII, nor
    of any single codepage: tvhost must read its command line whole."""
    return tmp_path_factory.mktemp("files-план-図面")


@pytest.fixture
def served_tmp(served_files, tmp_path, request):
    """A fresh folder the tests' tvhost may write to (tmp_path for a server started by someone else)."""
    if os.environ.get("TVHOST_PORT"):
        return tmp_path
    folder = served_files / request.node.name
    folder.mkdir()
    return folder


@pytest.fixture(scope="session")
def tvhost(served_files):
    """(client, port) of a tvhost started for the session, stopped at its end."""
    if os.environ.get("TVHOST_PORT"):
        port = int(os.environ["TVHOST_PORT"])
        yield Client(port=port, timeout=10), port
        return
    if not os.environ.get("TVHOST"):
        pytest.skip("TVHOST is not set: no tvhost to call")
    emulator = shlex.split(os.environ.get("TVHOST_EMULATOR", ""))
    # The documents the tests save lie below pytest's folder (tvhost's default,
    # the system's temporary folder, is a folder of Wine's own under Wine).
    proc, port = tvhost_process.start([*emulator, os.environ["TVHOST"]], "--files", str(served_files),
                                      stderr=subprocess.PIPE, cwd=served_files.parent, timeout=30 if emulator else 15)
    if port is None:
        pytest.fail(f"tvhost did not start serving: {proc.stderr.read()}")
    yield Client(port=port, timeout=10), port
    stopped = tvhost_process.stop(proc, emulated=bool(emulator), timeout=15)
    assert stopped and stopped[0] == 0, stopped
    assert "tvhost: stopped" in stopped[1]
