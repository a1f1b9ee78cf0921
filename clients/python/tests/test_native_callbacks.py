"""Python handlers as C callbacks: what a handler receives, what it writes
back, its result, and how long the C callback is kept alive; then handlers
subscribed through the registration exports, fired by the simulated host.
The first callbacks are called as the library's adapters call them, through
their C types."""
import ctypes

import pytest

from inprocess import host, native, simulated_host  # noqa: F401  (fixtures)

SIGNATURES = {
    "Text": ("bool", "text path", "inout text chosen"),
    "Numbers": ("enum tvThemeEnum", "int x", "inout int key", "inout bool need", "double density", "uint32 context"),
    "Files": ("bool", "inout vector StringVector files"),
}


@pytest.fixture
def make(native):
    """make(typedef, handler): the C callback a registration of the handler would pass."""
    from tvapic import _callbacks, _converters, _library
    made = _callbacks.Callbacks(SIGNATURES, _library.load()[1])

    def make(typedef, handler):
        param = made.param(typedef, "handler", f"IThingEvents_Add{typedef}Handler(): argument 'handler'")
        return param.prepare(handler, _converters.Call(["events", "key", handler]))
    return make


def test_text_is_lent_and_a_writable_text_is_set_through_a_ref(make):
    seen = []

    def handler(path, chosen):
        seen.append((path, chosen.value))
        chosen.value = "Été \U0001D11E"
        return 2
    from tvapic import _utf16
    slot = ctypes.c_void_p()
    assert make("Text", handler)(ctypes.addressof(_utf16.to_units("/plans/a.tvd", "text")), ctypes.byref(slot)) == 1
    assert seen == [("/plans/a.tvd", None)]
    assert _utf16.read_units(slot.value) == "Été \U0001D11E"   # still alive after the callback returned
    # A handler that leaves the text alone leaves the slot null: the host's text becomes empty.
    slot = ctypes.c_void_p()
    assert make("Text", lambda path, chosen: 0)(None, ctypes.byref(slot)) == 0 and slot.value is None


def test_numbers_go_in_and_writable_ones_come_back(make):

    def handler(x, key, need, density, context):
        assert (x, key.value, need.value, density, context) == (-3, 65, True, 7.5, 0xFFFFFFFF)
        key.value, need.value = 13, False
        return 4
    key, need = ctypes.c_int(65), ctypes.c_int(5)
    assert make("Numbers", handler)(-3, ctypes.byref(key), ctypes.byref(need), 7.5, 0xFFFFFFFF) == 4
    assert (key.value, need.value) == (13, 0)


def test_a_writable_list_of_texts_changed_in_place(native, make):
    files = native.StringVector_Create(2)
    native.StringVector_Set(files, 0, "a.tvd")
    native.StringVector_Set(files, 1, "b.tvd")

    def handler(names):
        assert names == ["a.tvd", "b.tvd"]
        names[1:] = ["c \U0001D11E.tvd", "d.tvd", "e.tvd"]
        return True
    assert make("Files", handler)(files) == 1
    assert [native.StringVector_Get(files, i) for i in range(4)] == ["a.tvd", "c \U0001D11E.tvd", "d.tvd", "e.tvd"]
    native.StringVector_Delete(files)


def test_an_exception_gives_the_zero_result_and_is_reported(make, capsys):

    def handler(path, chosen):
        raise RuntimeError("handler failed")
    assert make("Text", handler)(None, ctypes.byref(ctypes.c_void_p())) == 0
    assert "handler failed" in capsys.readouterr().err


def test_a_handler_registered_through_the_library_is_kept_until_its_key_is_removed(native):
    kept = native._converters_for_call().callbacks
    before = kept.kept()
    # A null events object registers nothing in the host; Python keeps the callback all the same.
    native.IApplicationEvents_AddBeginCreateHandler(None, "python", lambda kind: True)
    native.IApplicationEvents_AddBeginCreateHandler(None, "python", lambda kind: True)
    native.IApplicationEvents_AddBeginCreateHandler(None, "other", lambda kind: True)
    assert kept.kept() == before + 3
    native.IApplicationEvents_RemoveAllHandlers(None, "python")
    assert kept.kept() == before + 1
    native.IApplicationEvents_RemoveAllHandlers(None, "other")
    assert kept.kept() == before
    with pytest.raises(TypeError, match="'callback' must be a callable"):
        native.IApplicationEvents_AddBeginCreateHandler(None, "python", "not callable")


def test_adding_a_line_segment_calls_the_object_handlers(host):
    seen = []
    with host.IApplication_GetDocuments() as documents, host.IDocuments_Add(documents, 1, True) as document, \
            host.ITavraDocument2D_GetObject2DEvents(document, "py-tests") as events, \
            host.ITavraDocument2D_GetViewsAndLayersManager(document) as manager, \
            host.IViewsAndLayersManager_GetViews(manager) as views, host.IViews_GetActiveView(views) as view, \
            host.IDrawingContainer_GetLineSegments(view) as segments:
        host.IDrawingObjectEvents_AddCreateObjectHandler(
            events, lambda objects: seen.append([o.is_same_object(objects[0]) for o in objects]) or True)
        host.IDrawingObjectEvents_AddPropertyChangedHandler(
            events, lambda objects: seen.append(host.ILineSegment_GetX1(objects[0])) or True)
        with host.ILineSegments_Add(segments) as segment:
            host.ILineSegment_SetX1(segment, 12.5)
        assert seen == [[True], 12.5]
        host.ITavraDocument_Close(document, False)
