"""tvhost's own command line."""
import os
import shlex
import subprocess

import pytest


def emulator():
    if not os.environ.get("TVHOST"):
        pytest.skip("TVHOST is not set: no tvhost to run")
    return shlex.split(os.environ.get("TVHOST_EMULATOR", ""))


def run_tvhost(*arguments):
    return subprocess.run([*emulator(), os.environ["TVHOST"], *arguments], capture_output=True, text=True,
                          timeout=60)


@pytest.mark.parametrize("arguments, mistake", [
    (["--port", "abc"], "--port: 'abc' is not a port number (0 to 65535)"),
    (["--port", "70000"], "--port: '70000' is not a port number (0 to 65535)"),
    (["--port"], "--port needs a value"),
    (["--prot", "8001"], "unknown option '--prot'"),
    (["--files", "{missing}"], "--files: there is no folder {missing}"),
    (["--files", "{file}"], "--files: {file} is not a folder"),
])
def test_command_line_mistakes_are_named(arguments, mistake, tmp_path):
    names = {"missing": str(tmp_path / "missing"), "file": str(tmp_path / "file.txt")}
    (tmp_path / "file.txt").write_text("")
    done = run_tvhost(*[a.format(**names) for a in arguments])
    assert (done.returncode, done.stdout) == (2, "")
    assert done.stderr.startswith(f"tvhost: {mistake.format(**names)}\nusage: "), done.stderr


def test_help_goes_to_standard_output():
    done = run_tvhost("--help")
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout.startswith("usage: ") and "--files folder" in done.stdout


def test_a_port_in_use_is_refused_before_anything_starts(tvhost):
    if os.environ.get("TVHOST_PORT"):
        pytest.skip("the port of a server started elsewhere may be another interface's")
    done = run_tvhost("--port", str(tvhost[1]))
    assert done.returncode == 1 and done.stdout == ""
    assert done.stderr.startswith(f"tvhost: cannot listen on port {tvhost[1]}: "), done.stderr


