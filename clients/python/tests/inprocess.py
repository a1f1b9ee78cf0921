"""Fixtures for tests that load libtvAPIC (TVAPIC_LIBRARY) and the simulated
host (TVSIM_LIBRARY) into this process, skipped without them. The host runs
for the session and stops once Python has given back every handle.
"""
import gc
import os

import pytest


# Tests of the in-process suite that need no library of their own run with
# it (CTest's Python.InProcess), not in every run of the tests directory.
in_process_suite = pytest.mark.skipif(not os.environ.get("TVAPIC_LIBRARY"),
                                      reason="run with the in-process suite (TVAPIC_LIBRARY is not set)")


def need(variable):
    path = os.environ.get(variable)
    if not path:
        pytest.skip(f"{variable} is not set: nothing to load in process")
    return path


@pytest.fixture(scope="session")
def native():
    """tvapic.native with the library loaded (no host started)."""
    path = need("TVAPIC_LIBRARY")
    from tvapic import native as module
    assert module.load() == path
    return module


@pytest.fixture(scope="session")
def simulated_host(native):
    """The simulated host running in this process."""
    assert native.start_simulated_host() == need("TVSIM_LIBRARY")
    yield
    gc.collect()
    held = native.outstanding()
    if held == 0:
        native.stop_simulated_host()
    else:  # stopping would free objects those handles still point to
        pytest.fail(f"{held} handles still held at the end of the session")


@pytest.fixture
def host(simulated_host, native):
    """The native module with the host running; each test gives back every handle it made."""
    before = native.outstanding()
    yield native
    gc.collect()
    assert native.outstanding() == before, "a handle made by the test was not given back"


def references(native, handle):
    """The host's reference count of an object (one AddRef and one Release to read it)."""
    count = native.IAPIObject_AddRef(handle)
    assert native.IAPIObject_Release(handle) == count - 1
    return count - 1
