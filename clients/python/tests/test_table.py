"""The client's function table against docs/protocol.md, read with a pattern
of this test's own: the same functions in the same order, each with the wire
kinds the document gives its request and its response."""
import re
from pathlib import Path

import pytest

from tvapic import SIGNATURES

ROW = re.compile(r"^\| `(I\w+_\w+)` \| ([^|]+) \| ([^|]+) \|$", re.M)
# A value is its wire kind, then its name and meaning: "u64 handle: IDocuments".
KIND = re.compile(r"(i32 slot|f64 slot|string vector|u64|f64|i32|string)\b")


def kinds(cell):
    return [] if cell.strip() == "nothing" else [KIND.match(value.strip())[1] for value in cell.split(",")]


def test_every_function_has_the_documents_wire_kinds():
    path = Path(__file__).resolve().parents[3] / "docs" / "protocol.md"
    if not path.exists():
        pytest.skip("no protocol reference beside these tests")
    rows = ROW.findall(path.read_text(encoding="utf-8"))
    assert len(rows) == 293
    assert [(name, kinds(request), kinds(response)) for name, request, response in rows] == [
        (name, list(sig.request), list(sig.response)) for name, sig in SIGNATURES.items()]
