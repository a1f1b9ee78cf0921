"""tvapic.native without a host: every export bound, how the library is found,
the vector families and property values both ways, and call signatures."""
import inspect
import os
import subprocess
import sys
from pathlib import Path

import pytest

from inprocess import native  # noqa: F401  (fixture)

ROOT = Path(__file__).resolve().parents[3]


def generator_exports():
    generate = ROOT / "tools" / "generate.py"
    if not generate.is_file():
        pytest.skip("the generator is not beside these tests")
    out = subprocess.run([sys.executable, str(generate), "--catalogue", str(ROOT / "catalogue"), "--exports"],
                         check=True, capture_output=True, text=True).stdout
    return out.split()


def test_every_export_of_the_library_is_a_function_with_its_symbol_bound(native):
    names = generator_exports()
    assert list(native.FUNCTIONS) == names
    for name in names:
        f = getattr(native, name)
        f._bound or f._bind_library()   # argument and result types set on the library's own symbol
    print(f"{len(names)} exports bound")
    assert len(names) > 9000
    assert set(names) <= set(dir(native))
    with pytest.raises(AttributeError, match="exports no function 'IDocuments_Nothing'"):
        native.function("IDocuments_Nothing")


def _load_in_a_new_process(environment, code="from tvapic import native; print(native.load())"):
    env = dict(os.environ, PYTHONDONTWRITEBYTECODE="1", **environment)
    return subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, env=env)


def test_the_library_is_found_through_the_environment_or_not_at_all(native):
    missing = _load_in_a_new_process({"TVAPIC_LIBRARY": "/nonexistent/libtvAPIC.so"})
    assert missing.returncode != 0 and "LibraryNotFound: no library at /nonexistent/libtvAPIC.so" in missing.stderr
    found = _load_in_a_new_process({"TVAPIC_LIBRARY": native.library_path()})
    assert found.returncode == 0 and found.stdout.strip() == native.library_path()
    # Without the variable nor a library beside the package, the system's loader is asked, in vain here.
    env = {k: v for k, v in os.environ.items() if k not in ("TVAPIC_LIBRARY", "LD_LIBRARY_PATH")}
    code = "from tvapic import native; native.IApplication_GetBuildNumber()"
    nowhere = subprocess.run([sys.executable, "-c", code], capture_output=True, text=True, env=env)
    package = Path(native.__file__).parent
    if not any((folder / "libtvAPIC.so").exists() for folder in (package, package.parent)):
        assert nowhere.returncode != 0 and "set TVAPIC_LIBRARY" in nowhere.stderr


class TestVectors:
    """Lists made into C vectors are read back through the library's own _Get,
    and C vectors made with _Create/_Set come back as lists."""

    CASES = {
        "BoolVector": ([True, False, True], lambda v: v != 0),
        "Int32Vector": ([0, -1, (1 << 31) - 1, -(1 << 31)], None),
        "EnumVector": ([3, 0], None),
        "ColorVector": ([0xFF0000FF, 0, 0x7FFFFFFF], lambda v: v & 0xFFFFFFFF),
        "Uint32Vector": ([0, (1 << 32) - 1], None),
        "FloatVector": ([0.5, -2.0], None),
        "DoubleVector": ([0.1, -1e300, 2.0], None),
        "NumericIdVector": ([0, (1 << 64) - 1], None),
        "Uint8Vector": ([0, 255, 7], None),
    }

    @pytest.fixture
    def families(self, native):
        from tvapic import _kinds
        kinds = native._kinds_for_call()
        return kinds.vectors, _kinds.Call

    @pytest.mark.parametrize("family", sorted(CASES))
    def test_numbers_both_ways(self, native, families, family):
        vectors, Call = families
        values, to_python = self.CASES[family]
        to_python = to_python or (lambda v: v)
        call = Call()
        made = vectors.family(family).make(values, "values", call)
        get = getattr(native, f"{family}_Get")
        assert [to_python(get(made, i)) for i in range(len(values))] == values
        call.finish()
        built = getattr(native, f"{family}_Create")(len(values))
        for i, v in enumerate(values):
            raw = v - (1 << 32) if family == "ColorVector" and v > (1 << 31) - 1 else v
            getattr(native, f"{family}_Set")(built, i, int(raw) if family == "BoolVector" else raw)
        assert vectors.family(family).take(built) == values

    def test_out_of_range_and_wrong_elements_are_refused(self, families):
        vectors, Call = families
        with pytest.raises(ValueError, match=r"v\[1\] does not fit"):
            vectors.family("Uint8Vector").make([1, 256], "v", Call())
        with pytest.raises(TypeError, match=r"v\[0\] must be a float"):
            vectors.family("DoubleVector").make(["1"], "v", Call())
        with pytest.raises(TypeError, match="must be a list"):
            vectors.family("Int32Vector").make(5, "v", Call())

    def test_texts_both_ways(self, native, families):
        vectors, Call = families
        texts = ["", "plan", "Été \U0001D11E", "\ud800", None]
        call = Call()
        made = vectors.family("StringVector").make(texts, "texts", call)
        # The vector's own texts, read without being freed; None went in as the empty text.
        assert [native.StringVector_Get(made, i) for i in range(5)] == texts[:4] + [""]
        call.finish()
        built = native.StringVector_Create(2)
        native.StringVector_Set(built, 0, "a\U0001F600")
        native.StringVector_Set(built, 1, "")
        with pytest.raises(TypeError, match="must be a str"):
            native.StringVector_Set(built, 0, None)   # the export would copy from the null pointer
        assert vectors.family("StringVector").take(built) == ["a\U0001F600", ""]
        assert vectors.family("StringVector").take(None) is None

    def test_object_lists_of_lists(self, native, families):
        vectors, Call = families
        call = Call()
        made = vectors.family("ObjectReferenceVectorVector").make([[None], [], None], "lists", call)
        inner = native.ObjectReferenceVectorVector_Get(made, 0)
        assert native.ObjectReferenceVector_Get(inner, 0) is None
        assert native.ObjectReferenceVectorVector_Get(made, 2) is None
        assert vectors.family("ObjectReferenceVectorVector").read(made) == [[None], [], None]
        call.finish()

    def test_property_values_both_ways(self, native, families):
        vectors, Call = families
        values = [None, True, False, -7, 2.5, "Été \U0001D11E"]
        call = Call()
        made = vectors.family("PropertyValueVector").make(values, "values", call)
        kinds = [native.PropertyValue_GetValueType(native.PropertyValueVector_Get(made, i)) for i in range(6)]
        assert kinds == [0, 1, 1, 2, 3, 4]
        assert native.PropertyValue_GetString(native.PropertyValueVector_Get(made, 5)) == "Été \U0001D11E"
        call.finish()
        with pytest.raises(ValueError, match="property value's int"):
            vectors.family("PropertyValueVector").make([1 << 40], "values", Call())
        with pytest.raises(TypeError, match=r"values\[0\]"):
            vectors.family("PropertyValueVector").make([object()], "values", Call())
        single = native.PropertyValue_Create()
        native.PropertyValue_SetDouble(single, 0.25)
        assert vectors.values.take(single) == 0.25

    def test_value_lists_c_cannot_fill_take_only_none_or_empty(self, families):
        vectors, Call = families
        assert vectors.family("AttributeValueVector").make([], "v", Call()) is None
        with pytest.raises(TypeError, match="cannot be filled"):
            vectors.family("StorageValueVector").make([None], "v", Call())


class TestRawFunctions:
    def test_value_functions_refuse_a_null_value(self, native):
        with pytest.raises(ValueError, match="does not take null"):
            native.PropertyValue_GetInt(0)

    def test_vector_functions_take_addresses_and_counts(self, native):
        vector = native.Int32Vector_Create(1)
        native.Int32Vector_Set(vector, 0, -5)
        assert native.Int32Vector_Get(vector, 0) == -5
        with pytest.raises(ValueError, match="does not fit"):
            native.Int32Vector_Set(vector, 0, 1 << 31)
        with pytest.raises(TypeError, match="address"):
            native.Int32Vector_Get("vector", 0)
        native.Int32Vector_Delete(vector)


def test_signatures_give_out_parameters_their_zero(native):
    version = inspect.signature(native.IApplication_GetSystemVersion).parameters
    assert [(p.name, p.default) for p in version.values()] == [("major", 0), ("minor", 0), ("release", 0),
                                                                ("build", 0)]
    refill = inspect.signature(native.ITavraDocument_GetExternalFilesNames).parameters
    assert refill["fileNames"].default == [] and refill["recursive"].default is inspect.Parameter.empty
    assert "ITavraDocument_GetDocumentGabarit(tavraDocument, x1=0.0" in native.ITavraDocument_GetDocumentGabarit.__doc__
