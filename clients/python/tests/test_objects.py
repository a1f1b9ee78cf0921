"""The object layer over both backends: the same script reads the same in
process and through the API Server, and each backend keeps its own rules."""
import gc

import pytest

from inprocess import host, in_process_suite, native, references, simulated_host  # noqa: F401  (fixtures)
from tvapic import Client, Handle, objects

pytestmark = in_process_suite


def documents_script(app, folder):
    """What a user writes: the answers it sees, without handles."""
    seen = []
    documents = app.GetDocuments()
    seen.append(type(documents).__name__)
    document = documents.Add(1, True)
    seen.append((type(document).__name__, document.GetName().startswith("Document")))
    app.SetActiveDocument(document)
    seen.append(app.GetActiveDocument() == document)
    document.SetAuthor("Ἀριστοτέλης \U0001D11E")
    seen.append(document.GetAuthor())
    x1, y1, x2, y2, ok = document.GetDocumentGabarit()
    seen.append((ok, x1 <= x2, y1 <= y2))
    seen.append(document.GetDocumentGabarit(None, y2=None)[0::3])
    seen.append(document.SaveAs(str(folder / "Объект.tvd")))
    seen.append(document.GetName())
    found = documents.GetItemByFilePath(str(folder / "Объект.tvd"))
    seen.append((found == document, found.is_same_object(document)))
    drawing = document.query("ITavraDocument2D")
    seen.append((type(drawing).__name__, drawing.is_same_object(document)))
    seen.append(documents.GetItemByFilePath("/nowhere.tvd"))
    seen.append(document.Close(False))
    for o in (drawing, found, document, documents):
        o.release()
    return seen


EXPECTED = ["IDocuments", ("ITavraDocument", True), True, "Ἀριστοτέλης \U0001D11E", (True, True, True), (None, None),
            True, "Объект.tvd", (True, True), ("ITavraDocument2D", True), None, True]


def test_the_same_script_in_process(host, tmp_path):
    assert documents_script(objects.application(), tmp_path) == EXPECTED


def test_the_same_script_through_the_api_server(tvhost, served_tmp):
    client, _ = tvhost
    assert documents_script(objects.application(client), served_tmp) == EXPECTED


class TestInProcess:
    def test_objects_hold_one_reference_each_until_released(self, host):
        app = objects.application()
        documents = app.GetDocuments()
        base = references(host, documents.handle)
        again = app.GetDocuments()
        other_face = documents.query(objects.IDocuments)
        assert references(host, documents.handle) == base + 2
        with again:
            pass
        other_face.release()
        assert references(host, documents.handle) == base
        dropped = app.GetDocuments()
        del dropped
        gc.collect()
        assert references(host, documents.handle) == base
        documents.release()

    def test_handlers_receive_objects_of_the_layer(self, host):
        from tvapic._native import CALLBACKS
        typedef, interface = next((name, params[0].split()[1]) for name, (_, *params) in CALLBACKS.items()
                                  if len(params) == 1 and params[0].startswith("object "))
        seen = []
        receive = objects._handler_for_objects(objects.application()._backend, typedef, seen.append)
        documents = host.IApplication_GetDocuments()
        receive(documents.duplicate())
        assert type(seen[0]).__name__ == interface and seen[0].handle.is_same_object(documents)
        seen[0].release()
        documents.release()

    def test_objects_of_another_connection_are_refused(self, host):
        elsewhere = objects.wrap(Handle(1), "IOpenDocumentParam", Client(port=1))
        with objects.application().GetDocuments() as documents:
            with pytest.raises(ValueError, match="another connection"):
                documents.OpenDocument("x.tvd", elsewhere)

    def test_wrapping_a_native_handle(self, host):
        document = objects.wrap(host.IApplication_GetDocuments(), "IDocuments")
        assert isinstance(document, objects.IDocuments) and document.in_process
        document.release()
        assert objects.wrap(None) is None


class TestRemote:
    def test_functions_the_server_does_not_serve_are_refused(self, tvhost):
        client, _ = tvhost
        settings = objects.wrap(Handle(1), "IDocumentSettings", client)   # no call reaches the server
        method = objects.INTERFACES["IDocumentSettings"][4][0]
        with pytest.raises(objects.NotRemotable, match=f"IDocumentSettings_{method} is not served"):
            getattr(settings, method)()

    def test_what_does_not_travel_stays_behind(self, tvhost):
        client, _ = tvhost
        document = objects.application(client).GetDocuments().Add(1, False)
        with pytest.raises(objects.DoesNotTravel, match="ITavraDocument_GetCreationDate ran on the server, but "
                                                        "its double result does not travel back") as raised:
            document.GetCreationDate()
        assert raised.value.answer is None
        assert document.GetExternalFilesNames(True) == (None, 0)        # a refilled list
        assert document.GetExternalFilesNames(True, []) == (None, 0)
        with pytest.raises(ValueError, match="lists do not travel"):
            document.GetExternalFilesNames(True, ["a.tvd"])
        document.Close(False)

    def test_an_interface_the_server_does_not_serve_is_refused_at_the_query(self, tvhost):
        document = objects.wrap(Handle(1), "ITavraDocument", tvhost[0])   # no call reaches the server
        assert not objects.IDocumentSettings.REMOTE
        with pytest.raises(objects.NotRemotable, match="serves no function of IDocumentSettings"):
            document.query(objects.IDocumentSettings)
        assert isinstance(document.query("ITavraDocument2D"), objects.ITavraDocument2D)

    def test_objects_compare_by_handle_and_release_does_nothing(self, tvhost):
        client, _ = tvhost
        app = objects.application(client)
        first, second = app.GetDocuments(), app.GetDocuments()
        assert first == second and hash(first) == hash(second) and first.is_same_object(second)
        first.release()
        assert first.GetItem(0) is None or isinstance(first.GetItem(0), objects.ITavraDocument)
        assert repr(first).startswith("<IDocuments Handle(0x") and "via Client" in repr(first)


def test_require_turns_an_optional_object_into_one_or_raises():
    document = objects.wrap(Handle(1), "ITavraDocument", Client(port=1))
    assert objects.require(document) is document
    with pytest.raises(objects.NullHandle, match="null object"):
        objects.require(None)


def test_methods_say_what_they_take_own_and_whether_they_travel():
    add = objects.IDocuments.Add.__doc__
    assert add.startswith("IDocuments.Add(documentType, visible): calls IDocuments_Add.")
    assert "documentType: int" in add and "holds one reference of its own" in add
    assert "Remotable: yes" in add and "Wire: u64, i32, i32 -> u64." in add
    assert "Remotable: no" in objects.IDocumentSettings.IsTextStability.__doc__
    assert "raises tvapic.DoesNotTravel" in objects.ITavraDocument.GetCreationDate.__doc__


def test_every_interface_is_a_class_with_its_operations():
    from tvapic._native import FUNCTIONS
    for name, (group, iid, root, remote, methods) in objects.INTERFACES.items():
        cls = getattr(objects, name)
        assert (cls.INTERFACE, cls.IID, cls.GROUP, cls.REMOTE) == (name, iid, group, remote)
        for method in methods:
            assert f"{name}_{method}" in FUNCTIONS
            assert callable(getattr(cls, method))
    assert objects.interface_class("IAPIObject") is objects.APIObject
    with pytest.raises(AttributeError, match="no interface 'INothing'"):
        objects.interface_class("INothing")
