"""Fixtures: a running tvhost (the simulated host serving the API) on a free port.

CTest passes the tvhost executable in TVHOST; without it the tests that need a
server are skipped. TVHOST_EMULATOR is a command put before it (for example
`wine`, to serve from the Windows build); TVHOST_PORT instead points the tests
at a server someone else started and stops, on this machine's loopback.
"""
import os
import select
import shlex
import signal
import socket
import subprocess
import time

import pytest

from tvapic import Client


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def _start(command, port, deadline, cwd=None):
    # tvhost unloads the library before it exits, so a sanitizer build could
    # not attribute what remote calls leave behind by the protocol's rules;
    # the library's leaks are checked in process by the other suites.
    env = dict(os.environ, ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0")
    proc = subprocess.Popen([*command, "--port", str(port)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                            text=True, env=env, cwd=cwd)
    while time.monotonic() < deadline:
        ready, _, _ = select.select([proc.stdout], [], [], 0.2)
        if ready:
            line = proc.stdout.readline()
            if f"API Server on port {port}" in line:
                return proc
            if not line:
                break
    proc.kill()
    proc.wait()
    return None


def _ready(client, proc, deadline):
    """The server listens once its thread has bound the port: the first call may be refused."""
    while time.monotonic() < deadline and proc.poll() is None:
        try:
            return client.IApplication_GetBuildNumber() > 0
        except ConnectionRefusedError:
            time.sleep(0.05)
    return False


@pytest.fixture(scope="session")
def served_files(tmp_path_factory):
    """The files root of the tvhost the tests start. Its name is not ASCII, nor
    of any single codepage: tvhost must read its command line whole."""
    return tmp_path_factory.mktemp("files-план-図面")


@pytest.fixture
def served_tmp(served_files, tmp_path, request):
    """A fresh folder the tests' tvhost may write to (tmp_path for a server
    started by someone else: its files root is the system's temporary folder)."""
    if os.environ.get("TVHOST_PORT"):
        return tmp_path
    folder = served_files / request.node.name
    folder.mkdir()
    return folder


@pytest.fixture(scope="session")
def tvhost(served_files):
    """(client, port) of a tvhost started for the session; stopped with SIGTERM at the end
    (SIGINT under an emulator: Wine hands it to the program as Ctrl-C, while
    SIGTERM would end a Windows program without its shutdown)."""
    if os.environ.get("TVHOST_PORT"):
        port = int(os.environ["TVHOST_PORT"])
        yield Client(port=port, timeout=10), port
        return
    path = os.environ.get("TVHOST")
    if not path:
        pytest.skip("TVHOST is not set: no tvhost to call")
    emulator = shlex.split(os.environ.get("TVHOST_EMULATOR", ""))
    # The documents the tests save lie below pytest's folder (tvhost's default,
    # the system's temporary folder, is a folder of Wine's own under Wine).
    command = [*emulator, path, "--files", str(served_files)]
    for _ in range(3):  # another process may take the free port first
        port = free_port()
        deadline = time.monotonic() + (30 if emulator else 15)
        proc = _start(command, port, deadline, cwd=served_files.parent)
        if proc is None:
            continue
        client = Client(port=port, timeout=10)
        if _ready(client, proc, deadline):
            break
        proc.kill()
        proc.wait()
    else:
        pytest.fail(f"{path} did not start serving")
    yield client, port
    proc.send_signal(signal.SIGINT if emulator else signal.SIGTERM)
    try:
        out, err = proc.communicate(timeout=15)
    except subprocess.TimeoutExpired:
        proc.kill()
        proc.communicate()
        pytest.fail("tvhost did not stop on its signal")
    assert proc.returncode == 0, err
    assert "tvhost: stopped" in out


@pytest.fixture
def app(tvhost):
    return tvhost[0]
