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


class TestRequests:
    def test_the_name_then_the_arguments_in_order_little_endian(self):
        assert request("IDocuments_Open", Handle(0x0102030405060708), "a.tvd", True, False) == (
            text("IDocuments_Open") + u64(0x0102030405060708) + text("a.tvd") + i32(1) + i32(0))
        assert request("IApplication_Quit") == text("IApplication_Quit")
        assert request("ITavraDocument2D_MoveObjects", None, 1.5, -2) == (
            text("ITavraDocument2D_MoveObjects") + u64(0) + f64(1.5) + f64(-2.0))
        with pytest.raises(ValueError, match="ASCII"):
            pack_name("IApplication_Quït")

    def test_texts_count_utf8_bytes_not_characters(self):
        # A character outside the BMP is four UTF-8 bytes (two UTF-16 units on the server).
        assert request("ITavraDocument_SetAuthor", Handle(1), "Łódź \U0001D11E").endswith(
            u64(12) + "Łódź \U0001D11E".encode())
        assert request("ITavraDocument_SetAuthor", Handle(1), "").endswith(u64(0))

    def test_slots_with_a_value_send_flag_0_and_the_value_others_the_flag_1_alone(self):
        assert request("IApplication_GetSystemVersion", 3, None, 5) == (
            text("IApplication_GetSystemVersion") + b"\0" + i32(3) + b"\1" + b"\0" + i32(5) + b"\1")
        assert request("ITavraDocument_GetDocumentGabarit", Handle(1), 0.5, y2=2.0) == (
            text("ITavraDocument_GetDocumentGabarit") + u64(1) + b"\0" + f64(0.5) + b"\1\1\0" + f64(2.0))

    def test_handles_are_ints_of_their_own_type(self):
        assert Handle(0xABC) == 0xABC and repr(Handle(0xABC)) == "Handle(0xabc)"
        for bad, error in [(-1, ValueError), (1 << 64, ValueError), (True, TypeError), (1.0, TypeError)]:
            with pytest.raises(error):
                Handle(bad)
        assert request("IApplication_StopCurrentProcess", False, Handle(5)).endswith(i32(0) + u64(5))


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


class TestResponses:
    def test_slots_come_back_in_order_then_the_result(self):
        data = b"\0" + i32(26) + b"\1" + b"\0" + i32(0) + b"\1" + i32(1)
        assert decode_response(SYSTEM_VERSION, data, [1, None, 2, None]) == (26, None, 0, None, True)
        data = b"\0" + f64(0.0) + b"\0" + f64(-1.25) + b"\1" + b"\0" + f64(297.0) + i32(0)
        assert decode_response(SIGNATURES["ITavraDocument_GetDocumentGabarit"], data) == (0.0, -1.25, None, 297.0,
                                                                                            False)

    def test_results_by_kind(self):
        assert type(decode_response(SIGNATURES["IApplication_GetDocuments"], u64(0x55))) is Handle
        assert decode_response(SIGNATURES["IApplication_GetDocuments"], u64(0)) is None
        window = decode_response(SIGNATURES["IApplication_GetMainWindowHandle"], u64(0x10))
        assert window == 0x10 and type(window) is int
        assert decode_response(SIGNATURES["IApplication_GetBuildNumber"], i32(-3)) == -3
        assert decode_response(SIGNATURES["IApplication_IsVisible"], i32(1)) is True
        assert decode_response(SIGNATURES["ITavraDocument_GetName"], text("\U0001D11E x")) == "\U0001D11E x"
        assert decode_response(SIGNATURES["IApplication_Quit"], b"") is None

    def test_a_null_string_vector_is_no_bytes_and_an_empty_one_a_zero_count(self):
        assert decode_response(LOAD_COMBINATIONS, b"\0" + i32(4)) == (4, None)
        assert decode_response(LOAD_COMBINATIONS, b"\1" + u64(0)) == (None, [])
        assert decode_response(LOAD_COMBINATIONS, b"\1" + u64(2) + text("a") + text("β")) == (None, ["a", "β"])

    def test_short_surplus_and_malformed_responses_are_protocol_errors(self):
        full = b"\0" + i32(26) + b"\1" + b"\0" + i32(0) + b"\1" + i32(1)
        for n in range(len(full)):
            with pytest.raises(ProtocolError):
                decode_response(SYSTEM_VERSION, full[:n])
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
