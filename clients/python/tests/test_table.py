"""The generated function table: signatures as the protocol reference lists
them, and a method of the client for each function."""
import inspect
import re
import sys
from pathlib import Path

import pytest

from tvapic import SIGNATURES, Client

ROOT = Path(__file__).resolve().parents[3]
ROW = re.compile(r"^\| `(I\w+_\w+)` \| ([^|]+) \| ([^|]+) \|$")
# Each value of a row is its wire kind, then its name and meaning: "u64 handle: IDocuments".
KIND = re.compile(r"i32 slot|f64 slot|string vector|u64|f64|i32|string")


def kinds(cell):
    """The wire kinds of a cell, joined as the generated table's are."""
    if cell.strip() == "nothing":
        return "nothing"
    return ", ".join(KIND.match(value.strip()).group() for value in cell.split(","))


def reference_rows():
    path = ROOT / "docs" / "protocol.md"
    if not path.exists():
        pytest.skip("no protocol reference beside these tests")
    rows = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        m = ROW.match(line.strip())
        if m:
            rows[m.group(1)] = (kinds(m.group(2)), kinds(m.group(3)))
    return rows


def test_every_function_has_the_reference_wire_signature():
    rows = reference_rows()
    for name, sig in SIGNATURES.items():
        assert name in rows, name
        assert (", ".join(sig.request) or "nothing", ", ".join(sig.response) or "nothing") == rows[name], name


def test_the_table_holds_every_function_the_generator_makes_remotable():
    sys.path.insert(0, str(ROOT / "tools"))
    try:
        from tvgen.model import load
    except ImportError:
        pytest.skip("the generator is not beside these tests")
    finally:
        sys.path.pop(0)
    assert list(SIGNATURES) == [op.export for op in load(ROOT / "catalogue").remotable()]


def test_handles_are_told_from_64_bit_integers():
    kinds = {(p.kind, p.type) for sig in SIGNATURES.values() for p in sig.params}
    assert kinds <= {("u64", "object"), ("u64", "int64"), ("i32", "bool"), ("i32", "int"), ("i32", "enum"),
                     ("f64", "double"), ("string", "text"), ("i32 slot", "int"), ("i32 slot", "bool"),
                     ("i32 slot", "enum"), ("f64 slot", "double")}
    assert SIGNATURES["IApplication_GetMainWindowHandle"].result.type == "int64"
    assert SIGNATURES["IApplication_GetDocuments"].result[:] == ("u64", "object", "IDocuments")
    # Every function of an interface other than the application's takes its object first.
    for name, sig in SIGNATURES.items():
        if not name.startswith("IApplication_"):
            assert sig.params[0][1:] == ("u64", "object", name.split("_", 1)[0]), name


def test_each_function_is_a_documented_method_taking_its_parameters():
    for name, sig in SIGNATURES.items():
        method = getattr(Client, name)
        params = list(inspect.signature(method).parameters.values())[1:]
        assert [p.name for p in params] == [p.name for p in sig.params], name
        assert "Wire: " in method.__doc__ and sig.name.split("_", 1)[1] in method.__doc__
    version = inspect.signature(Client.IApplication_GetSystemVersion).parameters
    assert all(version[n].default is None for n in ("major", "minor", "release", "build"))
    assert inspect.signature(Client.IDocuments_Open).parameters["fileName"].default is inspect.Parameter.empty
