"""Calls to the simulated host through its API Server."""
import os

import pytest

from tvapic import SIGNATURES, Handle, ProtocolError

pytestmark = pytest.mark.usefixtures("tvhost")


def test_application_name_and_version(app):
    assert app.IApplication_GetApplicationName(False) == "Tavra"
    assert app.IApplication_GetApplicationName(True) == "Tavra simulated host 2611"
    assert app.call("IApplication_GetBuildNumber") == 2611


def test_system_version_fills_the_slots_sent_with_a_value(app):
    assert app.IApplication_GetSystemVersion(0, 0, 0, 0) == (26, 1, 0, 2611, True)
    # Slots sent without a value come back without one, whatever the host stored.
    assert app.IApplication_GetSystemVersion() == (None, None, None, None, True)
    assert app.IApplication_GetSystemVersion(None, 5, build=-1) == (None, 1, None, 2611, True)


def test_a_document_added_named_described_and_saved(app, served_tmp):
    documents = app.IApplication_GetDocuments()
    assert isinstance(documents, Handle) and documents == app.IApplication_GetDocuments()
    document = app.IDocuments_Add(documents, 1, False)
    assert isinstance(document, Handle)
    assert app.ITavraDocument_GetName(document).startswith("Document")
    assert app.ITavraDocument_IsChanged(document) is False
    author = "Ἀριστοτέλης \U0001D11E 作者"
    assert app.ITavraDocument_SetAuthor(document, author) is None
    assert app.ITavraDocument_GetAuthor(document) == author
    assert app.ITavraDocument_IsChanged(document) is True
    # The host writes the document: a folder of the test's own.
    path = str(served_tmp / "Été.tvd")
    assert app.ITavraDocument_SaveAs(document, path) is True
    assert app.ITavraDocument_GetName(document) == "Été.tvd"
    assert app.ITavraDocument_GetPath(document) == str(served_tmp) + "/"
    assert app.IDocuments_GetItemByFilePath(documents, path) == document
    assert app.ITavraDocument_IsChanged(document) is False
    assert app.ITavraDocument_SaveAs(document, "") is False
    assert app.ITavraDocument_GetDocumentGabarit(document, 0.0, 0.0, None, 0.0) == (0.0, 0.0, None, 297.0, True)
    assert app.ITavraDocument_Close(document, False) is True


def test_the_current_directory_starts_at_the_files_root(app, served_files):
    if os.environ.get("TVHOST_PORT"):
        pytest.skip("a server started elsewhere has a files root of its own")
    assert app.IApplication_GetCurrentDirectory() == str(served_files)
    document = app.IDocuments_Add(app.IApplication_GetDocuments(), 1, False)
    assert app.ITavraDocument_SaveAs(document, str(served_files) + "/plan.tvd") is True
    assert (served_files / "plan.tvd").is_file()
    assert app.ITavraDocument_SaveAs(document, str(served_files.parent / "outside.tvd")) is False
    assert app.ITavraDocument_Close(document, False) is True


def test_null_handles_give_null_results(app):
    assert app.ITavraDocument_GetName(None) == ""
    assert app.IDocuments_GetItem(None, 0) is None
    # A null string vector: the slot alone comes back.
    assert app.IDocuments_GetLoadCombinations(None, "plan.tvd", 9) == (9, None)


def test_names_the_server_does_not_serve_are_answered_with_nothing(app):
    assert app.call_raw("IApplication_NoSuchFunction") == b""
    assert app.call_raw("iapplication_getbuildnumber") == b""  # names are case-sensitive
    assert app.call_raw("NoSuchFunction", b"\x01" * 100) == b""
    assert app.call("IApplication_GetBuildNumber") == 2611  # and the server goes on serving


def test_a_name_answered_with_nothing_where_a_result_is_due_is_a_protocol_error(app):
    unserved = SIGNATURES["ITavraDocument_GetName"]._replace(name="ITavraDocument_GetNames")
    with pytest.raises(ProtocolError, match="ITavraDocument_GetNames: no response"):
        app._invoke(unserved, [None])
