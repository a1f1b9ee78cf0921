"""The examples shipped with the package run to their end, and say in a
sentence, not a traceback, when the application refuses a step."""
import os
import subprocess
import sys

import pytest

from inprocess import in_process_suite


def example(name, *arguments):
    return subprocess.run([sys.executable, "-m", f"tvapic.examples.{name}", *arguments], capture_output=True,
                          text=True, timeout=60, env=os.environ)


def test_the_remote_example_saves_in_the_applications_current_directory(tvhost):
    client, port = tvhost
    folder = client.IApplication_GetCurrentDirectory()   # tvhost's starts at its --files folder
    done = example("drawing_demo", "--port", str(port))
    assert done.returncode == 0, done.stderr
    assert done.stdout.endswith("The drawing came back as it was saved.\n")
    assert f" {folder}/tvapic-demo-" in done.stdout   # its relative name, below the current directory
    # A folder where the application may not write (tvhost: outside --files).
    client.IApplication_SetCurrentDirectory(os.path.dirname(folder))
    try:
        refused = example("drawing_demo", "--port", str(port))
    finally:
        client.IApplication_SetCurrentDirectory(folder)
    assert refused.returncode == 1 and "Traceback" not in refused.stderr
    assert refused.stderr.startswith("drawing_demo: The application did not save tvapic-demo-"), refused.stderr


@in_process_suite
@pytest.mark.parametrize("name, last_line", [
    ("inprocess_demo", "The drawing came back as it was saved."),
    ("events_demo", "Handlers removed; the drawing closed."),
])
def test_the_in_process_examples(name, last_line):
    done = example(name)
    assert done.returncode == 0, done.stderr
    assert done.stdout.splitlines()[-1] == last_line
    if name == "events_demo":
        # The document handler reads the name of an object of the object layer it was lent.
        assert [line.split(" new")[0] for line in done.stdout.splitlines() if "event" in line] == [
            "  event CreateDocument: Document1", "  event CreateObject: 1", "  event CreateObject: 1",
            "  event Delete: 1 object(s)"]
