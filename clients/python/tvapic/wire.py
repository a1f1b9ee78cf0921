"""The API Server's encoding: values, requests and responses.

Values follow one another little-endian and unpadded:

    u64            8 bytes: an object handle (0 is null) or a 64-bit integer
    i32            4 bytes: an integer, enumeration or truth value
    f64            8 bytes: IEEE 754 binary64
    i32 slot       a flag byte, then 4 bytes only when the flag is 0
    f64 slot       a flag byte, then 8 bytes only when the flag is 0
    string         u64 byte count, then that many bytes of UTF-8
    string vector  u64 element count, then each element as a string

A request is the function name (as a string of ASCII bytes) and the
arguments in order; the response is every slot of the request, echoed in
order with the function's value, then the result. A null string vector
result is sent as nothing at all, so it is read only when bytes remain.

Nothing here touches a socket: `encode_request` and `decode_response` turn
Python values into bytes and back for a `Signature`, checking the arguments
first, since the server itself reports no errors to its client.
"""

import struct
from typing import NamedTuple, Optional

from .errors import ProtocolError

U64, I32, F64, STRING = "u64", "i32", "f64", "string"
I32_SLOT, F64_SLOT, STRING_VECTOR = "i32 slot", "f64 slot", "string vector"

ABSENT = 1  # the flag byte of a slot sent without a value

_U64 = struct.Struct("<Q")
_I32 = struct.Struct("<i")
_F64 = struct.Struct("<d")
_I32_MIN, _I32_MAX = -(1 << 31), (1 << 31) - 1
_U64_LIMIT = 1 << 64
_I64_MIN = -(1 << 63)

# Fewest bytes a value of each kind can take in a response.
_MIN_SIZE = {U64: 8, I32: 4, F64: 8, STRING: 8, I32_SLOT: 1, F64_SLOT: 1, STRING_VECTOR: 0}


class Handle(int):
    """An object handle received from the server (or made from a known value).

    Handles are ints so they compare and hash by value, but a distinct type,
    so that an integer is never sent where an object is expected. A null
    handle is None on the Python side; Handle(0) is accepted and sent as 0.
    """

    __slots__ = ()

    def __new__(cls, value):
        if isinstance(value, bool) or not isinstance(value, int):
            raise TypeError(f"a handle is made from an int, not {type(value).__name__}")
        if not 0 <= value < _U64_LIMIT:
            raise ValueError(f"a handle is an unsigned 64-bit value, not {value}")
        return super().__new__(cls, value)

    def __repr__(self):
        return f"Handle(0x{int(self):x})"

    __str__ = __repr__


class Param(NamedTuple):
    """A parameter that travels.

    kind is its wire kind; type the catalogue's kind of value: "object"
    (a handle), "int64", "bool", "int", "enum", "double" or "text"; `of` the
    interface of an object or the name of an enumeration.
    """
    name: str
    kind: str
    type: str
    of: str = ""

    @property
    def is_slot(self):
        return self.kind.endswith(" slot")


class Result(NamedTuple):
    """A result that travels: kind u64, i32, string or string vector."""
    kind: str
    type: str
    of: str = ""


class Signature(NamedTuple):
    """What a remotable function takes and answers on the wire."""
    name: str
    params: tuple                 # Param, in request order; the object's handle first
    result: Optional[Result]      # None when nothing travels back after the slots
    stays: tuple = ()             # what the function has that does not travel, e.g. "result double"

    @property
    def request(self):
        return [p.kind for p in self.params]

    @property
    def response(self):
        return [p.kind for p in self.params if p.is_slot] + ([self.result.kind] if self.result else [])

    @property
    def slots(self):
        return [p for p in self.params if p.is_slot]

    @property
    def result_stays(self):
        """The catalogue type of a result that does not travel ("double"), or ""."""
        return next((item.split(" ", 1)[1] for item in self.stays if item.startswith("result ")), "")

    def describe(self):
        """The signature as one line, e.g. `IDocuments_Add(documents, documentType, visible) -> u64`,
        or `ILineSegment_GetX1(lineSegment) -> nothing (does not travel: result double)`."""
        names = ", ".join(p.name + ("?" if p.is_slot else "") for p in self.params)
        answer = ", ".join(self.response) or "nothing"
        stays = f" (does not travel: {', '.join(self.stays)})" if self.stays else ""
        return f"{self.name}({names}) -> {answer}{stays}"


# --- values -----------------------------------------------------------------

def pack_u64(value):
    return _U64.pack(value)


def pack_i32(value):
    return _I32.pack(value)


def pack_f64(value):
    return _F64.pack(value)


def pack_string(text):
    data = text.encode("utf-8")
    return _U64.pack(len(data)) + data


def pack_string_vector(items):
    return _U64.pack(len(items)) + b"".join(pack_string(s) for s in items)


def pack_name(name):
    """The function name: its ASCII bytes, compared byte for byte by the server."""
    try:
        data = name.encode("ascii")
    except UnicodeEncodeError:
        raise ValueError(f"function names are ASCII: {name!r}") from None
    return _U64.pack(len(data)) + data


class Reader:
    """Reads values from a response, raising ProtocolError when it runs short."""

    def __init__(self, data, context="response"):
        self.data = bytes(data)
        self.pos = 0
        self.context = context

    @property
    def remaining(self):
        return len(self.data) - self.pos

    def take(self, n, what):
        if self.remaining < n:
            raise ProtocolError(f"{self.context}: too short: {what} needs {n} bytes at offset {self.pos}, "
                                f"{self.remaining} remain")
        chunk = self.data[self.pos:self.pos + n]
        self.pos += n
        return chunk

    def u64(self, what="u64"):
        return _U64.unpack(self.take(8, what))[0]

    def i32(self, what="i32"):
        return _I32.unpack(self.take(4, what))[0]

    def f64(self, what="f64"):
        return _F64.unpack(self.take(8, what))[0]

    def string(self, what="string"):
        count = self.u64(f"the byte count of {what}")
        data = self.take(count, what)
        try:
            return data.decode("utf-8")
        except UnicodeDecodeError as e:
            raise ProtocolError(f"{self.context}: {what} is not UTF-8: {e}") from None

    def string_vector(self, what="string vector"):
        count = self.u64(f"the element count of {what}")
        if count > self.remaining // 8:
            raise ProtocolError(f"{self.context}: too short: {what} counts {count} elements, "
                                f"{self.remaining} bytes remain")
        return [self.string(f"element {n} of {what}") for n in range(count)]

    def slot(self, kind, what="slot"):
        """(flag, value): value is None when the flag is not 0."""
        flag = self.take(1, f"the flag of {what}")[0]
        if flag != 0:
            return flag, None
        return flag, (self.i32(what) if kind == I32_SLOT else self.f64(what))


# --- arguments ----------------------------------------------------------------

def bind(sig, args, kwargs=None):
    """Matches positional and keyword arguments to the parameters that travel.

    Every parameter but a slot must be given; a slot left out is absent.
    """
    kwargs = kwargs or {}
    names = [p.name for p in sig.params]
    if len(args) > len(names):
        raise TypeError(f"{sig.name}() takes {len(names)} argument{'s' * (len(names) != 1)} "
                        f"({', '.join(names) or 'none'}) but {len(args)} were given")
    values = list(args) + [_MISSING] * (len(names) - len(args))
    for key, value in kwargs.items():
        if key not in names:
            raise TypeError(f"{sig.name}() has no parameter {key!r}; it takes {', '.join(names) or 'none'}")
        at = names.index(key)
        if values[at] is not _MISSING:
            raise TypeError(f"{sig.name}() got argument {key!r} twice")
        values[at] = value
    for n, p in enumerate(sig.params):
        if values[n] is _MISSING:
            if not p.is_slot:
                raise TypeError(f"{sig.name}() is missing argument {p.name!r}")
            values[n] = None
    return values


_MISSING = object()


def _describe(p):
    if p.type == "object":
        return f"a handle of {p.of}" if p.of and p.of != "IAPIObject" else "a handle"
    return {"int64": "a 64-bit integer", "bool": "a truth value", "int": "an integer",
            "enum": f"a value of {p.of}" if p.of else "an enumeration value",
            "double": "a number", "text": "a text"}.get(p.type, p.type)


def encode_argument(sig, p, value):
    """One argument's bytes, after checking that the value fits the parameter."""
    where = f"{sig.name}(): argument {p.name!r} ({_describe(p)})"

    def kind_error(expected):
        return TypeError(f"{where} must be {expected}, not {type(value).__name__}")

    if p.is_slot:
        if value is None:
            return bytes([ABSENT])
        base = Param(p.name, I32 if p.kind == I32_SLOT else F64, p.type, p.of)
        return b"\0" + encode_argument(sig, base, value)
    if p.kind == U64:
        if p.type == "object":
            if value is None:
                return _U64.pack(0)
            if not isinstance(value, Handle):
                raise kind_error("a tvapic.Handle or None")
            return _U64.pack(value)
        if isinstance(value, (bool, Handle)) or not isinstance(value, int):
            raise kind_error("an int")
        if not _I64_MIN <= value < _U64_LIMIT:
            raise ValueError(f"{where} does not fit in 64 bits: {value}")
        return _U64.pack(value % _U64_LIMIT)
    if p.kind == I32:
        if isinstance(value, Handle) or not isinstance(value, int):
            raise kind_error("a bool" if p.type == "bool" else "an int")
        if not _I32_MIN <= value <= _I32_MAX:
            raise ValueError(f"{where} does not fit in 32 bits: {value}")
        return _I32.pack(int(value))
    if p.kind == F64:
        if isinstance(value, Handle) or not isinstance(value, (int, float)):
            raise kind_error("a float")
        return _F64.pack(float(value))
    if p.kind == STRING:
        if not isinstance(value, str):
            raise kind_error("a str")
        if "\0" in value:
            raise ValueError(f"{where} cannot hold a NUL character: the function would see the text cut there")
        try:
            return pack_string(value)
        except UnicodeEncodeError as e:
            raise ValueError(f"{where} is not encodable as UTF-8: {e.reason} at {e.start}") from None
    raise ValueError(f"{sig.name}(): parameter {p.name!r} has an unknown wire kind {p.kind!r}")


def encode_request(sig, values):
    """The whole request for bound values (see `bind`)."""
    if len(values) != len(sig.params):
        raise TypeError(f"{sig.name}() takes {len(sig.params)} arguments, {len(values)} were given")
    return pack_name(sig.name) + b"".join(encode_argument(sig, p, v) for p, v in zip(sig.params, values))


def _convert(type_, value):
    if type_ == "object":
        return Handle(value) if value else None
    if type_ == "bool":
        return value != 0
    return value


def minimum_response(sig):
    return sum(_MIN_SIZE[k] for k in sig.response)


def decode_response(sig, data, sent=None):
    """The Python value of a response.

    Without slots: the result, or None when nothing travels back. With slots:
    a tuple of each slot's value (None for an absent slot) followed by the
    result when the function has one. Handles come back as Handle (None for
    the null handle), truth values as bool, a null string vector as None.
    `sent`, the values the request was made of, lets the echoed slot flags be
    checked against the request's.
    """
    if not data and minimum_response(sig):
        raise ProtocolError(f"{sig.name}: no response: the server does not know this function or the call "
                            "failed (the application's standard error tells why)")
    r = Reader(data, f"response of {sig.name}")
    out = []
    for n, p in enumerate(sig.params):
        if not p.is_slot:
            continue
        flag, value = r.slot(p.kind, f"slot {p.name!r}")
        if sent is not None and (flag == 0) != (sent[n] is not None):
            raise ProtocolError(f"response of {sig.name}: slot {p.name!r} came back with flag {flag}, "
                                f"it was sent {'with' if sent[n] is not None else 'without'} a value")
        out.append(None if value is None else _convert(p.type, value))
    if sig.result:
        kind = sig.result.kind
        if kind == STRING_VECTOR:
            value = r.string_vector("the result") if r.remaining else None
        elif kind == STRING:
            value = r.string("the result")
        elif kind == U64:
            value = r.u64("the result")
        elif kind == I32:
            value = r.i32("the result")
        else:
            raise ProtocolError(f"{sig.name}: result of unknown wire kind {kind!r}")
        out.append(_convert(sig.result.type, value))
    if r.remaining:
        raise ProtocolError(f"response of {sig.name}: {r.remaining} bytes more than the response holds")
    if sig.slots:
        return tuple(out)
    return out[0] if out else None
