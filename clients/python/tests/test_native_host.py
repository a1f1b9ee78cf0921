"""tvapic.native driving the simulated host in this process: text, handles and
their references, out-parameters, lists, and the defaults of null handles."""
import gc

import pytest

from inprocess import host, native, references, simulated_host  # noqa: F401  (fixtures)


@pytest.fixture
def documents(host):
    with host.IApplication_GetDocuments() as documents:
        yield documents


@pytest.fixture
def document(host, documents):
    with host.IDocuments_Add(documents, 1, True) as document:
        yield document
        host.ITavraDocument_Close(document, False)


class TestText:
    def test_text_goes_in_and_comes_back_whole(self, host, document):
        assert host.ITavraDocument_GetName(document).startswith("Document")
        for author in ["Ada", "", "Ἀριστοτέλης \U0001D11E 作者 \U0001F600", "x" * 10000, "\ud800 lone"]:
            assert host.ITavraDocument_SetAuthor(document, author) is None
            assert host.ITavraDocument_GetAuthor(document) == author

    def test_none_is_the_empty_text(self, host, document):
        host.ITavraDocument_SetAuthor(document, "someone")
        host.ITavraDocument_SetAuthor(document, None)
        assert host.ITavraDocument_GetAuthor(document) == ""

    def test_a_nul_character_is_refused_before_the_call(self, host, document):
        host.ITavraDocument_SetAuthor(document, "kept")
        with pytest.raises(ValueError, match="NUL"):
            host.ITavraDocument_SetAuthor(document, "cut\0here")
        with pytest.raises(TypeError, match="'value'.*str or None, not bytes"):
            host.ITavraDocument_SetAuthor(document, b"bytes")
        assert host.ITavraDocument_GetAuthor(document) == "kept"

    def test_saving_under_a_new_name(self, host, documents, document, tmp_path):
        path = str(tmp_path / "Été \U0001D11E.tvd")
        assert host.ITavraDocument_SaveAs(document, path) is True
        assert host.ITavraDocument_GetName(document) == "Été \U0001D11E.tvd"
        with host.IDocuments_GetItemByFilePath(documents, path) as found:
            assert found.is_same_object(document)


class TestHandles:
    def test_a_returned_handle_gives_its_reference_back_exactly_once(self, host, documents):
        base = references(host, documents)
        again = host.IApplication_GetDocuments()
        assert again.is_same_object(documents) and not again.released
        assert references(host, documents) == base + 1
        assert isinstance(again.release(), int) and again.released
        assert references(host, documents) == base
        assert again.release() is None                    # a second release gives nothing back
        assert references(host, documents) == base
        with pytest.raises(ValueError, match="released"):
            host.ITavraDocument_GetName(again)

    def test_with_blocks_and_the_finaliser_release_too(self, host, documents):
        base = references(host, documents)
        with host.IApplication_GetDocuments() as again:
            assert references(host, documents) == base + 1
        assert again.released and references(host, documents) == base
        dropped = host.IApplication_GetDocuments()
        assert references(host, documents) == base + 1
        del dropped
        gc.collect()
        assert references(host, documents) == base

    def test_the_simulated_host_is_not_stopped_under_held_handles(self, host, documents):
        assert host.start_simulated_host() == host.start_simulated_host()   # once only
        with pytest.raises(RuntimeError, match="handles are still held"):
            host.stop_simulated_host()
        assert host.ITavraDocument_GetName(host.IDocuments_GetItem(documents, 0)) is not None

    def test_handles_passed_in_stay_the_callers(self, host, documents, document):
        before = references(host, document), references(host, documents)
        host.ITavraDocument_SetAuthor(document, "Ada")
        host.ITavraDocument_GetDocumentGabarit(document)
        host.IAPIObject_IsSameObjects(document, documents)
        assert (references(host, document), references(host, documents)) == before
        assert not document.released

    def test_other_values_are_not_handles(self, host, documents):
        with pytest.raises(TypeError, match="'documents'.*Handle or None, not int"):
            host.IDocuments_Add(documents.address, 1, True)
        with pytest.raises(ValueError, match="must be a handle"):
            host.IAPIObject_AddRef(None)


class TestArguments:
    def test_numbers_are_checked_before_the_call(self, host, documents):
        with pytest.raises(TypeError, match="'documentType'"):
            host.IDocuments_Add(documents, "1", True)
        with pytest.raises(ValueError, match="does not fit"):
            host.IDocuments_Add(documents, 1 << 31, True)
        with pytest.raises(TypeError, match="missing a required argument: 'visible'"):
            host.IDocuments_Add(documents, 1)
        with pytest.raises(TypeError, match="IDocuments_Add"):
            host.IDocuments_Add(documents, 1, True, 5)


class TestOutParameters:
    def test_values_come_back_after_the_call_and_none_skips_one(self, host, document):
        x1, y1, x2, y2, ok = host.ITavraDocument_GetDocumentGabarit(document)
        assert ok is True and x1 <= x2 and y1 <= y2 and all(isinstance(v, float) for v in (x1, y1, x2, y2))
        assert host.ITavraDocument_GetDocumentGabarit(document, None, 0.0, y2=None) == (None, y1, x2, None, True)

    def test_a_null_handle_leaves_them_as_they_went_in(self, host):
        assert host.ITavraDocument_GetDocumentGabarit(None, 1.5, -2, None, 4.0) == (1.5, -2.0, None, 4.0, False)
        with pytest.raises(TypeError, match="'x1'.*float"):
            host.ITavraDocument_GetDocumentGabarit(None, "1")


class TestLists:
    def test_a_refilled_list_comes_back_with_the_result(self, host, document):
        files, count = host.ITavraDocument_GetExternalFilesNames(document, True, ["a.tvd"])
        assert isinstance(count, int) and isinstance(files, list) and all(isinstance(f, str) for f in files)

    def test_a_null_handle_leaves_a_refilled_list_as_it_went_in(self, host):
        names = ["plan.tvd", "", "\U0001D11E.tvd"]
        assert host.ITavraDocument_GetExternalFilesNames(None, True, names) == (names, 0)
        assert host.ITavraDocument_GetExternalFilesNames(None, False) == ([], 0)

    def test_object_lists_go_in_with_null_elements_and_stay_the_callers(self, host, documents, document):
        before = references(host, document)
        assert host.ITavraDocument2D_DestroyObjects(None, [document, None, documents]) is False
        assert host.ITavraDocument2D_DestroyObjects(None, []) is False
        assert host.ITavraDocument2D_DestroyObjects(None, None) is False
        assert references(host, document) == before

    def test_bad_elements_are_refused_before_anything_is_made(self, host, document):
        with pytest.raises(TypeError, match=r"'objects'\[1\]"):
            host.ITavraDocument2D_DestroyObjects(None, [document, 5])
        with pytest.raises(TypeError, match="list"):
            host.ITavraDocument2D_DestroyObjects(None, "text")
        with pytest.raises(ValueError, match=r"\[0\]: .*released"):
            released = host.IApplication_GetDocuments()
            released.release()
            host.ITavraDocument2D_DestroyObjects(None, [released])


class TestNullHandles:
    def test_every_kind_of_result_has_its_default(self, host):
        assert host.ITavraDocument_GetName(None) == ""
        assert host.IDocuments_Add(None, 1, True) is None
        assert host.ITavraDocument_SaveAs(None, "x") is False
        assert host.ITavraDocument_GetOpenVersion(None) == 0
        assert host.ITavraDocument_GetCreationDate(None) == 0.0
        assert host.ITavraDocument_SetAuthor(None, "x") is None
        assert host.ITavraDocument_GetAttributes(None, 0, True, True, True) is None     # a null vector
        assert host.IDocuments_GetLoadCombinations(None, "plan.tvd", 9) == (9, None)
        assert host.IApplicationServices_ClearFileCache(None) is False


class TestEvents:
    """Python handlers subscribed through the registration exports, fired by
    the simulated host's own model."""

    @pytest.fixture
    def app_events(self, host):
        with host.IApplication_Events() as events:
            yield events
            host.IApplicationEvents_RemoveAllHandlers(events, "py-tests")   # the host outlives the test

    def test_creating_a_document_calls_the_handler_with_it(self, host, documents, app_events):
        seen = []
        host.IApplicationEvents_AddBeginCreateHandler(app_events, "py-tests", lambda kind: seen.append(kind) or True)
        host.IApplicationEvents_AddCreateDocumentHandler(
            app_events, "py-tests", lambda document: seen.append(host.ITavraDocument_GetName(document)))
        with host.IDocuments_Add(documents, 1, True) as document:
            assert seen == [1, host.ITavraDocument_GetName(document)]
            host.ITavraDocument_Close(document, False)

    def test_a_handler_answering_false_refuses_the_creation(self, host, documents, app_events):
        host.IApplicationEvents_AddBeginCreateHandler(app_events, "py-tests", lambda kind: False)
        assert host.IDocuments_Add(documents, 1, True) is None

    def test_adding_a_line_segment_calls_the_object_handler(self, host, document):
        seen = []
        with host.ITavraDocument2D_GetObject2DEvents(document, "py-tests") as events, \
                host.ITavraDocument2D_GetViewsAndLayersManager(document) as manager, \
                host.IViewsAndLayersManager_GetViews(manager) as views, \
                host.IViews_GetActiveView(views) as view, \
                host.IDrawingContainer_GetLineSegments(view) as segments:
            host.IDrawingObjectEvents_AddCreateObjectHandler(
                events, lambda objects: seen.append([o.is_same_object(objects[0]) for o in objects]) or True)
            host.IDrawingObjectEvents_AddPropertyChangedHandler(
                events, lambda objects: seen.append(host.ILineSegment_GetX1(objects[0])) or True)
            with host.ILineSegments_Add(segments) as segment:
                host.ILineSegment_SetX1(segment, 12.5)
            assert seen == [[True], 12.5]
