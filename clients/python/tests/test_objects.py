"""The object layer over both backends: the same script reads the same in
process and through the API Server, and each backend keeps its own rules."""

import pytest

from inprocess import host, native, references, simulated_host  # noqa: F401  (fixtures)
from tvapic import Client, Handle, objects


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
        again, other_face = app.GetDocuments(), documents.query(objects.IDocuments)
        assert references(host, documents.handle) == base + 2
        again.release()
        other_face.release()
        assert references(host, documents.handle) == base
        documents.release()
        wrapped = objects.wrap(host.IApplication_GetDocuments(), "IDocuments")
        assert isinstance(wrapped, objects.IDocuments) and wrapped.in_process
        wrapped.release()

    def test_objects_of_another_connection_are_refused(self, host):
        elsewhere = objects.wrap(Handle(1), "IOpenDocumentParam", Client(port=1))
        with objects.application().GetDocuments() as documents:
            with pytest.raises(ValueError, match="another connection"):
                documents.OpenDocument("x.tvd", elsewhere)


class TestRemote:
    def test_what_the_server_does_not_serve_is_refused_before_a_call(self, tvhost):
        client, _ = tvhost
        settings = objects.wrap(Handle(1), "IDocumentSettings", client)   # no call reaches the server
        with pytest.raises(objects.NotRemotable, match="IDocumentSettings_IsTextStability is not served"):
            settings.IsTextStability()
        document = objects.wrap(Handle(1), "ITavraDocument", client)
        with pytest.raises(objects.NotRemotable, match="serves no function of IDocumentSettings"):
            document.query(objects.IDocumentSettings)
        assert isinstance(document.query("ITavraDocument2D"), objects.ITavraDocument2D)

    def test_what_does_not_travel_stays_behind(self, tvhost):
        client, _ = tvhost
        document = objects.application(client).GetDocuments().Add(1, False)
        with pytest.raises(objects.DoesNotTravel, match="ITavraDocument_GetCreationDate ran on the server, but "
                                                        "its double result does not travel back") as raised:
            document.GetCreationDate()
        assert raised.value.answer is None
        assert document.GetExternalFilesNames(True) == (None, 0)        # a refilled list
        with pytest.raises(ValueError, match="lists do not travel"):
            document.GetExternalFilesNames(True, ["a.tvd"])
        document.Close(False)

    def test_objects_compare_by_handle_and_release_does_nothing(self, tvhost):
        client, _ = tvhost
        app = objects.application(client)
        first, second = app.GetDocuments(), app.GetDocuments()
        assert first == second and hash(first) == hash(second) and first.is_same_object(second)
        first.release()
        assert isinstance(first.IsRecoverMode(), bool)


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
