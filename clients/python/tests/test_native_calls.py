"""tvapic.native in process: every export bound, how the library is found,
lists made into C vectors and back, then calls to the simulated host: text,
handles and their references, arguments, out-parameters, lists and the
defaults of null handles."""
import gc
import os
import subprocess
import sys

import pytest

from inprocess import host, native, references, simulated_host  # noqa: F401  (fixtures)


def test_every_export_is_bound_to_the_librarys_symbol(native):
    for name in native.FUNCTIONS:
        f = getattr(native, name)
        f._bound or f._bind_library()   # argument and result types set on the library's own symbol
    assert len(native.FUNCTIONS) == 9447
    with pytest.raises(AttributeError, match="exports no function 'IDocuments_Nothing'"):
        native.function("IDocuments_Nothing")


def test_a_library_not_found_is_said_so(native):
    env = dict(os.environ, TVAPIC_LIBRARY="/nonexistent/libtvAPIC.so")
    done = subprocess.run([sys.executable, "-c", "from tvapic import native; native.load()"], capture_output=True,
                          text=True, env=env)
    assert "LibraryNotFound: no library at /nonexistent/libtvAPIC.so" in done.stderr


def test_a_call_of_the_application_before_the_simulated_host_raises_and_the_process_lives(native):
    script = """
from tvapic import NoApplication, native, objects
def attempt(call):
    try:
        return f"answered {call()!r}"
    except NoApplication as e:
        return str(e)
calls = [native.IApplication_GetBuildNumber, objects.application().GetBuildNumber,
         lambda: native.ITransferService_GetAttributesFromAPI(None)]
before = [attempt(call) for call in calls]
native.start_simulated_host()
started = [attempt(call) for call in calls]
native.stop_simulated_host()
print(*before, *started, attempt(calls[0]), sep="\\n")
"""
    done = subprocess.run([sys.executable, "-c", script], capture_output=True, text=True, timeout=60)
    told = "(): no application in this process. Outside the application, start the simulated host first: " \
           "tvapic.native.start_simulated_host()"
    assert done.stdout.splitlines() == [f"IApplication_GetBuildNumber{told}"] * 2 + [
        f"ITransferService_GetAttributesFromAPI{told}", "answered 2611", "answered 2611", "answered ([], [], False)",
        f"IApplication_GetBuildNumber{told}"], done.stderr


class TestVectors:
    """Lists made into C vectors are read back through the library's own _Get,
    and C vectors made with _Create/_Set come back as lists."""

    NUMBERS = {
        "BoolVector": [True, False, True], "Int32Vector": [0, -1, (1 << 31) - 1, -(1 << 31)],
        "ColorVector": [0xFF0000FF, 0, 0x7FFFFFFF], "Uint32Vector": [0, (1 << 32) - 1],
        "FloatVector": [0.5, -2.0], "DoubleVector": [0.1, -1e300, 2.0], "NumericIdVector": [0, (1 << 64) - 1],
        "Uint8Vector": [0, 255, 7],
    }

    @pytest.fixture
    def vectors(self, native):
        from tvapic._converters import Call
        return native._converters_for_call().vectors, Call

    @pytest.mark.parametrize("family", sorted(NUMBERS))
    def test_numbers_both_ways(self, native, vectors, family):
        vectors, Call = vectors
        values, call = self.NUMBERS[family], Call()
        made = vectors.family(family).make(values, "values", call)
        read = [getattr(native, f"{family}_Get")(made, i) for i in range(len(values))]
        if family == "ColorVector":
            read = [v & 0xFFFFFFFF for v in read]   # the C type is signed
        assert read == values
        call.finish()
        built = getattr(native, f"{family}_Create")(len(values))
        for i, v in enumerate(values):
            getattr(native, f"{family}_Set")(built, i, v - (1 << 32) if family == "ColorVector" and v >> 31 else v)
        assert vectors.family(family).take(built) == values

    def test_texts_object_lists_and_property_values(self, native, vectors):
        vectors, Call = vectors
        call = Call()
        made = vectors.family("StringVector").make(["", "Été \U0001D11E", "\ud800", None], "texts", call)
        # The vector's own texts, read without being freed; None went in as the empty text.
        assert [native.StringVector_Get(made, i) for i in range(4)] == ["", "Été \U0001D11E", "\ud800", ""]
        lists = vectors.family("ObjectReferenceVectorVector").make([[None], [], None], "lists", call)
        assert native.ObjectReferenceVectorVector_Get(lists, 2) is None
        assert vectors.family("ObjectReferenceVectorVector").read(lists) == [[None], [], None]
        values = vectors.family("PropertyValueVector").make([None, True, -7, 2.5, "Été"], "values", call)
        assert [native.PropertyValue_GetValueType(native.PropertyValueVector_Get(values, i))
                for i in range(5)] == [0, 1, 2, 3, 4]
        assert native.PropertyValue_GetString(native.PropertyValueVector_Get(values, 4)) == "Été"
        call.finish()
        built = native.StringVector_Create(2)
        native.StringVector_Set(built, 0, "a\U0001F600")
        native.StringVector_Set(built, 1, "")
        assert vectors.family("StringVector").take(built) == ["a\U0001F600", ""]
        assert vectors.family("StringVector").take(None) is None

    def test_what_does_not_fit_is_refused_before_the_call(self, native, vectors):
        vectors, Call = vectors
        with pytest.raises(ValueError, match=r"v\[1\] does not fit"):
            vectors.family("Uint8Vector").make([1, 256], "v", Call())
        with pytest.raises(TypeError, match=r"v\[0\] must be a float"):
            vectors.family("DoubleVector").make(["1"], "v", Call())
        with pytest.raises(ValueError, match="property value's int"):
            vectors.family("PropertyValueVector").make([1 << 40], "v", Call())
        with pytest.raises(TypeError, match="cannot be filled"):
            vectors.family("StorageValueVector").make([None], "v", Call())
        texts = native.StringVector_Create(1)
        with pytest.raises(TypeError, match="must be a str"):
            native.StringVector_Set(texts, 0, None)   # the export would copy from null
        native.StringVector_Set(texts, 0, "")   # _Delete frees every slot: each must hold a text
        native.StringVector_Delete(texts)
        with pytest.raises(ValueError, match="does not take null"):
            native.PropertyValue_GetInt(0)


@pytest.fixture
def documents(host):
    with host.IApplication_GetDocuments() as documents:
        yield documents


@pytest.fixture
def document(host, documents):
    with host.IDocuments_Add(documents, 1, True) as document:
        yield document
        host.ITavraDocument_Close(document, False)


def test_text_goes_in_and_comes_back_whole(host, documents, document, tmp_path):
    for author in ["", "Ἀριστοτέλης \U0001D11E 作者", "x" * 10000, "\ud800 lone"]:
        host.ITavraDocument_SetAuthor(document, author)
        assert host.ITavraDocument_GetAuthor(document) == author
    host.ITavraDocument_SetAuthor(document, None)
    assert host.ITavraDocument_GetAuthor(document) == ""
    host.ITavraDocument_SetAuthor(document, "kept")
    with pytest.raises(ValueError, match="NUL"):
        host.ITavraDocument_SetAuthor(document, "cut\0here")
    with pytest.raises(TypeError, match="'value'.*str or None, not bytes"):
        host.ITavraDocument_SetAuthor(document, b"bytes")
    assert host.ITavraDocument_GetAuthor(document) == "kept"
    path = str(tmp_path / "Été \U0001D11E.tvd")
    assert host.ITavraDocument_SaveAs(document, path) is True
    assert host.ITavraDocument_GetName(document) == "Été \U0001D11E.tvd"
    with host.IDocuments_GetItemByFilePath(documents, path) as found:
        assert found.is_same_object(document)


class TestHandles:
    def test_a_returned_handle_gives_its_reference_back_exactly_once(self, host, documents):
        base = references(host, documents)
        again = host.IApplication_GetDocuments()
        assert again.is_same_object(documents) and references(host, documents) == base + 1
        again.release()
        assert again.release() is None and references(host, documents) == base   # the second gives nothing
        with pytest.raises(ValueError, match="released"):
            host.ITavraDocument_GetName(again)
        with host.IApplication_GetDocuments() as again:
            assert references(host, documents) == base + 1
        assert again.released and references(host, documents) == base
        dropped = host.IApplication_GetDocuments()
        del dropped
        gc.collect()
        assert references(host, documents) == base

    def test_handles_passed_in_alone_or_in_lists_stay_the_callers(self, host, documents, document):
        before = references(host, document), references(host, documents)
        host.ITavraDocument_SetAuthor(document, "Ada")
        host.IAPIObject_IsSameObjects(document, documents)
        assert host.ITavraDocument2D_DestroyObjects(None, [document, None, documents]) is False
        assert (references(host, document), references(host, documents)) == before

    def test_the_simulated_host_is_not_stopped_under_held_handles(self, host, documents):
        assert host.start_simulated_host() == host.start_simulated_host()   # once only
        with pytest.raises(RuntimeError, match="handles are still held"):
            host.stop_simulated_host()

    def test_arguments_are_checked_before_the_call(self, host, documents, document):
        with pytest.raises(TypeError, match="'documents'.*HeldHandle or None, not int"):
            host.IDocuments_Add(documents.address, 1, True)
        with pytest.raises(ValueError, match="does not fit"):
            host.IDocuments_Add(documents, 1 << 31, True)
        with pytest.raises(TypeError, match="missing a required argument: 'visible'"):
            host.IDocuments_Add(documents, 1)
        with pytest.raises(TypeError, match=r"'objects'\[1\]"):
            host.ITavraDocument2D_DestroyObjects(None, [document, 5])
        released = host.IApplication_GetDocuments()
        released.release()
        with pytest.raises(ValueError, match=r"\[0\]: .*released"):
            host.ITavraDocument2D_DestroyObjects(None, [released])


def test_out_parameters_and_refilled_lists(host, document):
    x1, y1, x2, y2, ok = host.ITavraDocument_GetDocumentGabarit(document)
    assert ok is True and x1 <= x2 and y1 <= y2 and all(isinstance(v, float) for v in (x1, y1, x2, y2))
    assert host.ITavraDocument_GetDocumentGabarit(document, None, 0.0, y2=None) == (None, y1, x2, None, True)
    # A null handle leaves them as they went in.
    assert host.ITavraDocument_GetDocumentGabarit(None, 1.5, -2, None, 4.0) == (1.5, -2.0, None, 4.0, False)
    names = ["plan.tvd", "", "\U0001D11E.tvd"]
    assert host.ITavraDocument_GetExternalFilesNames(None, True, names) == (names, 0)
    assert host.ITavraDocument_GetExternalFilesNames(None, False) == ([], 0)


def test_null_handles_give_every_kind_of_results_default(host):
    assert host.ITavraDocument_GetName(None) == ""
    assert host.IDocuments_Add(None, 1, True) is None
    assert host.ITavraDocument_SaveAs(None, "x") is False
    assert host.ITavraDocument_GetOpenVersion(None) == 0
    assert host.ITavraDocument_GetCreationDate(None) == 0.0
    assert host.ITavraDocument_GetAttributes(None, 0, True, True, True) is None     # a null vector
    assert host.IDocuments_GetLoadCombinations(None, "plan.tvd", 9) == (9, None)
