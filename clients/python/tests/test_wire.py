"""The encoding, byte for byte, and the checks made before anything is sent.
The expected bytes are written here with struct, apart from the client's own
encoder (as fuzz/make_corpus.py writes its requests)."""
import struct

import pytest

from tvapic import SIGNATURES, Handle, ProtocolError
from tvapic.wire import bind, decode_response, encode_request, pack_name


def u64(v):
    return struct.pack("<Q", v)


def i32(v):
    return struct.pack("<i", v)


def f64(v):
    return struct.pack("<d", v)


def text(s):
    data = s.encode("utf-8")
    return u64(len(data)) + data


def request(fn, *args, **kwargs):
    sig = SIGNATURES[fn]
    return encode_request(sig, bind(sig, args, kwargs))


SYSTEM_VERSION = SIGNATURES["IApplication_GetSystemVersion"]
LOAD_COMBINATIONS = SIGNATURES["IDocuments_GetLoadCombinations"]


# (function, arguments, keyword arguments, what follows the name)
SENT = [
    ("IDocuments_Open", (Handle(0x0102030405060708), "a.tvd", True, False), {},
     u64(0x0102030405060708) + text("a.tvd") + i32(1) + i32(0)),
    ("IApplication_Quit", (), {}, b""),
    ("ITavraDocument2D_MoveObjects", (None, 1.5, -2), {}, u64(0) + f64(1.5) + f64(-2.0)),
    # Texts count UTF-8 bytes: a character outside the BMP is four (two UTF-16 units on the server).
    ("ITavraDocument_SetAuthor", (Handle(1), "Łódź \U0001D11E"), {},
     u64(1) + u64(12) + "Łódź \U0001D11E".encode()),
    ("ITavraDocument_SetAuthor", (Handle(1), ""), {}, u64(1) + u64(0)),
    # A slot with a value sends flag 0 and the value, one without the flag 1 alone.
    ("IApplication_GetSystemVersion", (3, None, 5), {}, b"\0" + i32(3) + b"\1" + b"\0" + i32(5) + b"\1"),
    ("ITavraDocument_GetDocumentGabarit", (Handle(1), 0.5), {"y2": 2.0},
     u64(1) + b"\0" + f64(0.5) + b"\1\1\0" + f64(2.0)),
    ("IApplication_StopCurrentProcess", (False, Handle(5)), {}, i32(0) + u64(5)),
]


@pytest.mark.parametrize("fn, args, kwargs, sent", SENT, ids=[row[0] for row in SENT])
def test_requests_are_the_name_then_the_arguments_in_order_little_endian(fn, args, kwargs, sent):
    assert request(fn, *args, **kwargs) == text(fn) + sent


def test_names_are_ascii_and_handles_ints_of_their_own_type():
    with pytest.raises(ValueError, match="ASCII"):
        pack_name("IApplication_Quït")
    assert Handle(0xABC) == 0xABC and repr(Handle(0xABC)) == "Handle(0xabc)"
    for bad, error in [(-1, ValueError), (1 << 64, ValueError), (True, TypeError), (1.0, TypeError)]:
        with pytest.raises(error):
            Handle(bad)


@pytest.mark.parametrize("fn, args, kwargs, error, message", [
    ("IDocuments_Open", (Handle(1),), {}, TypeError, "missing argument 'fileName'"),
    ("IDocuments_Open", (Handle(1), "a", True, False, 1), {}, TypeError, "takes 4 arguments"),
    ("IDocuments_Open", (Handle(1), "a", True), {"readOnly": False, "visible": True}, TypeError, "'visible' twice"),
    ("IDocuments_Open", (1, "a", True, False), {}, TypeError, "'documents'.*tvapic.Handle or None, not int"),
    ("IDocuments_Open", (Handle(1), "a\0b", True, False), {}, ValueError, "NUL"),
    ("IDocuments_Open", (Handle(1), "\ud800", True, False), {}, ValueError, "UTF-8"),
    ("IDocuments_Open", (Handle(1), "a", "yes", False), {}, TypeError, "'visible'.*must be a bool"),
    ("IDocuments_GetItem", (Handle(1), 1.0), {}, TypeError, "must be an int"),
    ("IDocuments_GetItem", (Handle(1), 1 << 31), {}, ValueError, "32 bits"),
    ("ITavraDocument2D_MoveObjects", (Handle(1), "1", 2.0), {}, TypeError, "must be a float"),
])
def test_arguments_are_refused_before_anything_is_sent(fn, args, kwargs, error, message):
    with pytest.raises(error, match=message):
        request(fn, *args, **kwargs)


SYSTEM_VERSION_ANSWER = b"\0" + i32(26) + b"\1" + b"\0" + i32(0) + b"\1" + i32(1)
# (function, response, the slots sent, what it decodes to: equal and of the same type)
RECEIVED = [
    ("IApplication_GetSystemVersion", SYSTEM_VERSION_ANSWER, [1, None, 2, None], (26, None, 0, None, True)),
    ("ITavraDocument_GetDocumentGabarit", b"\0" + f64(0.0) + b"\0" + f64(-1.25) + b"\1" + b"\0" + f64(297.0) + i32(0),
     None, (0.0, -1.25, None, 297.0, False)),
    ("IApplication_GetDocuments", u64(0x55), None, Handle(0x55)),
    ("IApplication_GetDocuments", u64(0), None, None),
    ("IApplication_GetMainWindowHandle", u64(0x10), None, 0x10),   # a window handle is a plain int
    ("IApplication_GetBuildNumber", i32(-3), None, -3),
    ("IApplication_IsVisible", i32(1), None, True),
    ("ITavraDocument_GetName", text("\U0001D11E x"), None, "\U0001D11E x"),
    ("IApplication_Quit", b"", None, None),
    # A null string vector is no bytes, an empty one a zero count.
    ("IDocuments_GetLoadCombinations", b"\0" + i32(4), None, (4, None)),
    ("IDocuments_GetLoadCombinations", b"\1" + u64(0), None, (None, [])),
    ("IDocuments_GetLoadCombinations", b"\1" + u64(2) + text("a") + text("β"), None, (None, ["a", "β"])),
]


class TestResponses:
    @pytest.mark.parametrize("fn, data, sent, expected", RECEIVED, ids=[row[0] for row in RECEIVED])
    def test_slots_come_back_in_order_then_the_result(self, fn, data, sent, expected):
        decoded = decode_response(SIGNATURES[fn], data, sent)
        assert decoded == expected and type(decoded) is type(expected)

    def test_short_surplus_and_malformed_responses_are_protocol_errors(self):
        for n in range(len(SYSTEM_VERSION_ANSWER)):
            with pytest.raises(ProtocolError):
                decode_response(SYSTEM_VERSION, SYSTEM_VERSION_ANSWER[:n])
        vector = b"\1" + u64(2) + text("a") + text("bc")
        for n in range(2, len(vector)):  # only the slot alone is complete (a null list)
            with pytest.raises(ProtocolError, match="too short"):
                decode_response(LOAD_COMBINATIONS, vector[:n])
        with pytest.raises(ProtocolError, match="no response"):
            decode_response(SIGNATURES["ITavraDocument_GetName"], b"")
        with pytest.raises(ProtocolError, match="1 bytes more"):
            decode_response(SIGNATURES["IApplication_IsVisible"], i32(1) + b"\0")
        with pytest.raises(ProtocolError, match="slot 'minor' came back with flag 0"):
            decode_response(SYSTEM_VERSION, b"\1" + b"\0" + i32(0) + b"\1\1" + i32(1), [None] * 4)
        with pytest.raises(ProtocolError, match="not UTF-8"):
            decode_response(SIGNATURES["ITavraDocument_GetName"], u64(1) + b"\xff")
