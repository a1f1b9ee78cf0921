"""The type stubs beside the package: a type checker accepts a correct
script and flags each wrong call."""
import os
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

import tvapic
from inprocess import in_process_suite

pytestmark = in_process_suite

PACKAGE = Path(tvapic.__file__).resolve().parent


CORRECT = '''
from tvapic import Client, native, objects

documents = native.IApplication_GetDocuments()
document = native.IDocuments_Add(documents, 1, True)
native.ITavraDocument_SetAuthor(document, "Ada")
author: str = native.ITavraDocument_GetAuthor(document)
x1, y1, x2, y2, ok = native.ITavraDocument_GetDocumentGabarit(document)
files, count = native.ITavraDocument_GetExternalFilesNames(document, True, ["a.tvd"])
first: str = files[0]
app = objects.application(Client(port=8001))
docs = app.GetDocuments()
if docs is not None:
    doc = docs.Add(1, True)
    if doc is not None:
        name: str = doc.GetName()
        drawing: objects.ITavraDocument2D = doc.query(objects.ITavraDocument2D)
build: int = Client().IApplication_GetBuildNumber()
'''

WRONG = '''
from tvapic import Client, native, objects

native.IDocuments_Add(None, "one", True)
name: int = native.ITavraDocument_GetName(None)
objects.application().GetDocuments().Add(1)
Client().ITavraDocument_SetAuthor(None, 5)
objects.application().GetDocuments().Add(1, True)
'''


def test_a_type_checker_accepts_correct_calls_and_flags_wrong_ones(tmp_path):
    if not os.environ.get("TVAPIC_TYPECHECK"):
        pytest.skip("the type check runs on its own (CTest's Python.StubsTypeCheck; TVAPIC_TYPECHECK=1)")
    if not shutil.which("mypy") and subprocess.run([sys.executable, "-m", "mypy", "--version"],
                                                   capture_output=True).returncode != 0:
        pytest.skip("mypy is not installed (Debian: python3-mypy)")
    (tmp_path / "correct.py").write_text(CORRECT)
    (tmp_path / "wrong.py").write_text(WRONG)
    # One run for both: reading the stubs is most of its time.
    run = subprocess.run([sys.executable, "-m", "mypy", "--no-incremental", "--cache-dir", str(tmp_path / "cache"),
                          "correct.py", "wrong.py"], capture_output=True, text=True, cwd=tmp_path,
                         env={"MYPYPATH": str(PACKAGE.parent), "PATH": "/usr/bin:/bin"})
    errors = [line for line in run.stdout.splitlines() if ": error:" in line]
    assert not [e for e in errors if e.startswith("correct.py")], run.stdout
    assert sorted({int(e.split(":")[1]) for e in errors if e.startswith("wrong.py")}) == [4, 5, 6, 7, 8], run.stdout
