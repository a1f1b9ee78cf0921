"""The encoding, byte for byte, and the checks made before anything is sent."""
import struct

import pytest

from tvapic import SIGNATURES, Handle, ProtocolError
from tvapic.wire import (bind, decode_response, encode_request, pack_f64, pack_i32, pack_name, pack_string,
                         pack_string_vector, pack_u64)


def u64(v):
    return struct.pack("<Q", v)


def i32(v):
    return struct.pack("<i", v)


def f64(v):
    return struct.pack("<d", v)


def text(s):
    data = s.encode("utf-8")
    return u64(len(data)) + data


def name(s):
    return u64(len(s)) + s.encode("ascii")


def request(fn, *args, **kwargs):
    sig = SIGNATURES[fn]
    return encode_request(sig, bind(sig, args, kwargs))


SYSTEM_VERSION = SIGNATURES["IApplication_GetSystemVersion"]
LOAD_COMBINATIONS = SIGNATURES["IDocuments_GetLoadCombinations"]


class TestValues:
    def test_fixed_width_values_are_little_endian(self):
        assert pack_u64(0x0102030405060708) == bytes([8, 7, 6, 5, 4, 3, 2, 1])
        assert pack_i32(-2) == b"\xfe\xff\xff\xff"
        assert pack_f64(1.0) == b"\0\0\0\0\0\0\xf0\x3f"

    def test_strings_count_utf8_bytes_not_characters(self):
        assert pack_string("") == bytes(8)
        assert pack_string("ab") == b"\2" + bytes(7) + b"ab"
        # A character outside the BMP is four UTF-8 bytes (two UTF-16 units on the server).
        assert pack_string("\U0001D11E") == b"\4" + bytes(7) + b"\xf0\x9d\x84\x9e"
        assert pack_string_vector(["a", ""]) == u64(2) + text("a") + text("")

    def test_names_are_ascii(self):
        assert pack_name("IApplication_Quit") == name("IApplication_Quit")
        with pytest.raises(ValueError, match="ASCII"):
            pack_name("IApplication_Quït")

    def test_handles_are_ints_of_their_own_type(self):
        h = Handle(0xABC)
        assert h == 0xABC and isinstance(h, int) and repr(h) == "Handle(0xabc)"
        for bad, error in [(-1, ValueError), (1 << 64, ValueError), (True, TypeError), (1.0, TypeError)]:
            with pytest.raises(error):
                Handle(bad)


class TestRequests:
    def test_a_request_is_the_name_then_the_arguments_in_order(self):
        assert request("IDocuments_Open", Handle(0x1122), "a.tvd", True, False) == (
            name("IDocuments_Open") + u64(0x1122) + text("a.tvd") + i32(1) + i32(0))
        assert request("IApplication_Quit") == name("IApplication_Quit")
        assert request("ITavraDocument2D_MoveObjects", Handle(7), 1.5, -2) == (
            name("ITavraDocument2D_MoveObjects") + u64(7) + f64(1.5) + f64(-2.0))

    def test_the_null_handle_is_zero_and_64_bit_integers_are_not_handles(self):
        assert request("ITavraDocument_GetName", None).endswith(u64(0))
        sig = SIGNATURES["IApplication_StopCurrentProcess"]
        assert [p.type for p in sig.params] == ["bool", "object"]
        assert encode_request(sig, [False, Handle(5)]).endswith(i32(0) + u64(5))

    def test_slots_with_a_value_send_flag_0_and_the_value_others_the_flag_1_alone(self):
        assert request("IApplication_GetSystemVersion", 3, None, 5) == (
            name("IApplication_GetSystemVersion") + b"\0" + i32(3) + b"\1" + b"\0" + i32(5) + b"\1")
        assert request("ITavraDocument_GetDocumentGabarit", Handle(1), 0.5, y2=2.0) == (
            name("ITavraDocument_GetDocumentGabarit") + u64(1) + b"\0" + f64(0.5) + b"\1\1\0" + f64(2.0))

    def test_text_arguments_travel_as_utf8(self):
        assert request("ITavraDocument_SetAuthor", Handle(1), "Łódź \U0001F600").endswith(
            text("Łódź \U0001F600"))
        assert request("ITavraDocument_SetAuthor", Handle(1), "").endswith(u64(0))


class TestArgumentChecks:
    @pytest.mark.parametrize("args, kwargs, error, message", [
        ((Handle(1),), {}, TypeError, "missing argument 'fileName'"),
        ((Handle(1), "a", True, False, 1), {}, TypeError, "takes 4 arguments"),
        ((Handle(1), "a", True), {"readOnly": False, "visible": True}, TypeError, "'visible' twice"),
        ((Handle(1), "a", True), {"hidden": False}, TypeError, "no parameter 'hidden'"),
        ((1, "a", True, False), {}, TypeError, "'documents'.*tvapic.Handle or None, not int"),
        ((Handle(1), None, True, False), {}, TypeError, "'fileName'.*must be a str"),
        ((Handle(1), "a\0b", True, False), {}, ValueError, "NUL"),
        ((Handle(1), "\ud800", True, False), {}, ValueError, "UTF-8"),
        ((Handle(1), "a", "yes", False), {}, TypeError, "'visible'.*must be a bool"),
        ((Handle(1), "a", 1 << 31, False), {}, ValueError, "32 bits"),
    ])
    def test_open_rejects(self, args, kwargs, error, message):
        with pytest.raises(error, match=message):
            request("IDocuments_Open", *args, **kwargs)

    def test_numbers_are_checked_by_kind(self):
        with pytest.raises(TypeError, match="must be an int"):
            request("IDocuments_GetItem", Handle(1), 1.0)
        with pytest.raises(TypeError, match="must be an int"):
            request("IDocuments_GetItem", Handle(1), Handle(2))
        with pytest.raises(TypeError, match="must be a float"):
            request("ITavraDocument2D_MoveObjects", Handle(1), "1", 2.0)
        with pytest.raises(ValueError, match="32 bits"):
            request("IApplication_GetSystemVersion", -(1 << 31) - 1)

    def test_int64_accepts_the_whole_unsigned_and_signed_range(self):
        sig = SIGNATURES["IApplication_StopCurrentProcess"]
        int64 = sig._replace(params=(sig.params[0], sig.params[1]._replace(type="int64", of="")))
        assert encode_request(int64, [True, -1]).endswith(u64((1 << 64) - 1))
        assert encode_request(int64, [True, (1 << 64) - 1]).endswith(u64((1 << 64) - 1))
        with pytest.raises(ValueError, match="64 bits"):
            encode_request(int64, [True, 1 << 64])
        with pytest.raises(TypeError, match="must be an int"):
            encode_request(int64, [True, Handle(3)])


class TestResponses:
    def test_slots_come_back_in_order_then_the_result(self):
        data = b"\0" + i32(26) + b"\1" + b"\0" + i32(0) + b"\1" + i32(1)
        assert decode_response(SYSTEM_VERSION, data, [1, None, 2, None]) == (26, None, 0, None, True)

    def test_double_slots(self):
        sig = SIGNATURES["ITavraDocument_GetDocumentGabarit"]
        data = b"\0" + f64(0.0) + b"\0" + f64(-1.25) + b"\1" + b"\0" + f64(297.0) + i32(0)
        assert decode_response(sig, data) == (0.0, -1.25, None, 297.0, False)

    def test_results_by_kind(self):
        assert decode_response(SIGNATURES["IApplication_GetDocuments"], u64(0x55)) == Handle(0x55)
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

    def test_every_cut_short_response_is_a_protocol_error(self):
        full = b"\0" + i32(26) + b"\1" + b"\0" + i32(0) + b"\1" + i32(1)
        for n in range(len(full)):
            with pytest.raises(ProtocolError):
                decode_response(SYSTEM_VERSION, full[:n])
        vector = b"\1" + u64(2) + text("a") + text("bc")
        for n in range(2, len(vector)):  # only the slot alone is complete (a null list)
            with pytest.raises(ProtocolError, match="too short"):
                decode_response(LOAD_COMBINATIONS, vector[:n])

    def test_no_bytes_where_some_are_due_says_so(self):
        with pytest.raises(ProtocolError, match="no response"):
            decode_response(SIGNATURES["ITavraDocument_GetName"], b"")

    def test_surplus_bytes_flag_mismatches_and_bad_text_are_protocol_errors(self):
        with pytest.raises(ProtocolError, match="1 bytes more"):
            decode_response(SIGNATURES["IApplication_IsVisible"], i32(1) + b"\0")
        with pytest.raises(ProtocolError, match="slot 'minor' came back with flag 0"):
            decode_response(SYSTEM_VERSION, b"\1" + b"\0" + i32(0) + b"\1\1" + i32(1), [None] * 4)
        with pytest.raises(ProtocolError, match="not UTF-8"):
            decode_response(SIGNATURES["ITavraDocument_GetName"], u64(1) + b"\xff")
