"""Python handlers as C callbacks: what a handler receives, what it writes
back, its result, and how long the C callback is kept alive. The callbacks are
called here as the library's adapters call them, through their C types."""
import ctypes

import pytest

from inprocess import native  # noqa: F401  (fixture)

SIGNATURES = {
    "Text": ("bool", "text path", "inout text chosen"),
    "Numbers": ("enum tvThemeEnum", "int x", "inout int key", "inout bool need", "double density", "uint32 context"),
    "Objects": ("void", "object ITavraDocument document", "vector ObjectReferenceVector IDrawingObject objects",
                "vector Int32Vector numbers"),
    "Files": ("bool", "inout vector StringVector files"),
    "Pointer": ("pointer", "pointer parent"),
}


@pytest.fixture
def callbacks(native):
    from tvapic import _callbacks, _cdll, _kinds
    lib = _cdll.load()[1]
    made = _callbacks.Callbacks(SIGNATURES, lib)

    def make(typedef, handler, arguments=("events", "key")):
        param = made.param(typedef, "handler", f"IThingEvents_Add{typedef}Handler(): argument 'handler'")
        return param.prepare(handler, _kinds.Call(list(arguments) + [handler]))
    return made, make


def units(text):
    from tvapic import _cdll
    return _cdll.to_units(text, "text")


def test_text_is_lent_and_a_writable_text_is_set_through_a_ref(callbacks):
    made, make = callbacks
    seen = []

    def handler(path, chosen):
        seen.append((path, chosen.value))
        chosen.value = "Été \U0001D11E"
        return 2
    callback = make("Text", handler)
    slot = ctypes.c_void_p()
    assert callback(ctypes.addressof(units("/plans/a.tvd")), ctypes.byref(slot)) == 1
    assert seen == [("/plans/a.tvd", None)]
    from tvapic import _cdll
    assert _cdll.read_units(slot.value) == "Été \U0001D11E"   # still alive after the callback returned
    # A handler that leaves the text alone leaves the slot null: the host's text becomes empty.
    slot = ctypes.c_void_p()
    assert make("Text", lambda path, chosen: 0)(None, ctypes.byref(slot)) == 0 and slot.value is None


def test_numbers_go_in_and_writable_ones_come_back(callbacks):
    made, make = callbacks

    def handler(x, key, need, density, context):
        assert (x, key.value, need.value, density, context) == (-3, 65, True, 7.5, 0xFFFFFFFF)
        key.value, need.value = 13, False
        return 4
    key, need = ctypes.c_int(65), ctypes.c_int(5)
    assert make("Numbers", handler)(-3, ctypes.byref(key), ctypes.byref(need), 7.5, 0xFFFFFFFF) == 4
    assert (key.value, need.value) == (13, 0)


def test_objects_are_lent_and_lists_read(native, callbacks):
    made, make = callbacks
    received = []
    make("Objects", lambda *values: received.extend(values))(None, None, None)
    assert received == [None, [], []]
    numbers = native.Int32Vector_Create(2)
    native.Int32Vector_Set(numbers, 0, 4)
    native.Int32Vector_Set(numbers, 1, -4)
    objects = native.ObjectReferenceVector_Create(1)
    native.ObjectReferenceVector_Set(objects, 0, None)
    received.clear()
    make("Objects", lambda *values: received.extend(values))(None, objects, numbers)
    assert received == [None, [None], [4, -4]]
    native.Int32Vector_Delete(numbers)
    native.ObjectReferenceVector_Delete(objects)


def test_a_writable_list_of_texts_changed_in_place(native, callbacks):
    made, make = callbacks
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


def test_an_exception_gives_the_zero_result_and_is_reported(callbacks, capsys):
    made, make = callbacks

    def handler(path, chosen):
        raise RuntimeError("handler failed")
    assert make("Text", handler)(None, ctypes.byref(ctypes.c_void_p())) == 0
    assert "handler failed" in capsys.readouterr().err
    assert make("Pointer", lambda parent: parent)(1234) == 1234


def test_callbacks_are_kept_until_their_handlers_are_removed(callbacks):
    made, make = callbacks
    make("Pointer", lambda p: p, ("events", "key"))
    make("Pointer", lambda p: p, ("events", "key"))
    make("Pointer", lambda p: p, ("events", "other"))
    assert made.kept() == 3
    remove = made.after("IThingEvents_RemoveAllHandlers")
    remove(["events", "key"])
    assert made.kept() == 1
    assert made.after("IThingEvents_AddPointerHandler") is None
    with pytest.raises(TypeError, match="callable"):
        make("Pointer", 5)


def test_a_handler_registered_through_the_library_is_kept_until_its_key_is_removed(native):
    keyed = next(((name, entry) for name, entry in native.FUNCTIONS.items()
                  if len(entry) == 4 and entry[2] == "text key" and entry[3].startswith("callback ")), None)
    if keyed is None:
        pytest.skip("the library takes no keyed handlers")
    name, entry = keyed
    interface = name.split("_", 1)[0]
    kept = native._kinds_for_call().callbacks
    before = kept.kept()
    register = getattr(native, name)
    # A null events object registers nothing in the host; Python keeps the callback all the same.
    register(None, "python", lambda *args: None)
    register(None, "python", lambda *args: None)
    register(None, "other", lambda *args: None)
    assert kept.kept() == before + 3
    getattr(native, f"{interface}_RemoveAllHandlers")(None, "python")
    assert kept.kept() == before + 1
    getattr(native, f"{interface}_RemoveAllHandlers")(None, "other")
    assert kept.kept() == before
    with pytest.raises(TypeError, match="'callback' must be a callable"):
        register(None, "python", "not callable")
