"""Fixtures: a running tvhost (the simulated host serving the API) on a port it chose.

CTest passes the tvhost executable in TVHOST; without it the tests that need a
server are skipped. TVHOST_EMULATOR is a command put before it (for example
`wine`, to serve from the Windows build); TVHOST_PORT instead points the tests
at a server someone else started and stops, on this machine's loopback.
"""
import os
import re
import select
import shlex
import signal
import subprocess
import time

import pytest

from tvapic import Client


def start_tvhost(*arguments, cwd=None, emulator=(), timeout=15):
    """(process, port) of a tvhost on a port it chose, announced once it listens; (process, None) if it ends."""
    # tvhost unloads the library before it exits, so a sanitizer build could
    # not attribute what remote calls leave behind by the protocol's rules;
    # the library's leaks are checked in process by the other suites.
    env = dict(os.environ, ASAN_OPTIONS=os.environ.get("ASAN_OPTIONS", "") + ":detect_leaks=0")
    proc = subprocess.Popen([*emulator, os.environ["TVHOST"], "--port", "0", *arguments], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True, env=env, cwd=cwd)
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        ready, _, _ = select.select([proc.stdout], [], [], 0.2)
        if ready:
            line = proc.stdout.readline()
            found = re.search(r"API Server on port (\d+)", line)
            if found:
                return proc, int(found[1])
            if not line:
                break
    proc.kill()
    proc.wait()
    return proc, None


def stop(proc, emulator=()):
    """Stops a tvhost; (exit status, stdout, stderr). Under an emulator SIGINT, which Wine hands on as
    Ctrl-C (SIGTERM would end a Windows program without its shutdown)."""
    proc.send_signal(signal.SIGINT if emulator else signal.SIGTERM)
    try:
        out, err = proc.communicate(timeout=15)
    except subprocess.TimeoutExpired:
        proc.kill()
        proc.communicate()
        pytest.fail("tvhost did not stop on its signal")
    return proc.returncode, out, err


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
    proc, port = start_tvhost("--files", str(served_files), cwd=served_files.parent, emulator=emulator,
                              timeout=30 if emulator else 15)
    if port is None:
        pytest.fail(f"tvhost did not start serving: {proc.stderr.read()}")
    yield Client(port=port, timeout=10), port
    status, out, err = stop(proc, emulator)
    assert status == 0, err
    assert "tvhost: stopped" in out


@pytest.fixture
def app(tvhost):
    return tvhost[0]
