"""Conversions between Python values and the C forms of the library's
parameters and results, one per kind of the generated table (_generated_exports.py).

A parameter converter gives ctypes its argument type, turns a Python value
into the C argument (registering what must be freed after the call) and, for
out and inout parameters, reads back the value the function handed over. A
result converter gives the result type and turns the C result into Python,
freeing what the caller owns: text with the C runtime's free, vectors with
their family's _Delete; a returned handle becomes a HeldHandle holding its reference.
"""

import ctypes

from . import _utf16, _vectors
from ._handles import HeldHandle, handle_address

_I32 = (-(1 << 31), (1 << 31) - 1)
_U64 = (0, (1 << 64) - 1)
_RAW_RANGES = {"int32_t": _I32, "uint32_t": (0, (1 << 32) - 1), "uint8_t": (0, 255), "uint64_t": _U64}
_RAW_TYPES = {"int32_t": ctypes.c_int32, "uint32_t": ctypes.c_uint32, "uint8_t": ctypes.c_uint8,
              "uint64_t": ctypes.c_uint64, "float": ctypes.c_float, "double": ctypes.c_double,
              "void": None, "pointer": ctypes.c_void_p, "nonnull": ctypes.c_void_p}
# A C default for an out-parameter that is given no value: the zero of its kind.
ZERO = {"bool": False, "int": 0, "enum": 0, "int64": 0, "double": 0.0}


def check_int(value, low, high, where, what="an int"):
    if not isinstance(value, int):
        raise TypeError(f"{where} must be {what}, not {type(value).__name__}")
    if not low <= value <= high:
        raise ValueError(f"{where} does not fit: {value} is outside {low}..{high}")
    return value


def check_i32(value, where, what="an int"):
    return check_int(value, *_I32, where, what)


def check_int64(value, where):
    """A 64-bit integer given signed or unsigned, as the remote client takes it."""
    return check_int(value, -(1 << 63), _U64[1], where) % (1 << 64)


def check_double(value, where):
    if not isinstance(value, (int, float)):
        raise TypeError(f"{where} must be a float, not {type(value).__name__}")
    return float(value)


class Call:
    """One call: its arguments as given, and what it gives back when it
    returns (cleanups, run in reverse order)."""

    __slots__ = ("arguments", "cleanups")

    def __init__(self, arguments=()):
        self.arguments = list(arguments)
        self.cleanups = []

    def finish(self):
        while self.cleanups:
            self.cleanups.pop()()


# --- parameters -----------------------------------------------------------------

class ParamConverter:
    returns = False          # an out or inout parameter: its value comes back
    ctype = ctypes.c_void_p

    def __init__(self, name, where):
        self.name = name
        self.where = where

    def prepare(self, value, call):
        return value

    def collect(self, carg):
        return None


class IntConverter(ParamConverter):
    ctype = ctypes.c_int

    def __init__(self, name, where, what="an int"):
        super().__init__(name, where)
        self.what = what

    def prepare(self, value, call):
        return check_i32(value, self.where, self.what)


class Int64Converter(ParamConverter):
    ctype = ctypes.c_uint64

    def prepare(self, value, call):
        return check_int64(value, self.where)


class DoubleConverter(ParamConverter):
    ctype = ctypes.c_double

    def prepare(self, value, call):
        return check_double(value, self.where)


class TextConverter(ParamConverter):
    ctype = ctypes.POINTER(ctypes.c_uint16)

    def __init__(self, name, where, nullable=True):
        super().__init__(name, where)
        self.nullable = nullable

    def prepare(self, value, call):
        if self.nullable:
            if value is None:
                return None
            if not isinstance(value, str):
                raise TypeError(f"{self.where} must be a str or None, not {type(value).__name__}")
        return _utf16.to_units(value, self.where)


class ObjectConverter(ParamConverter):
    def prepare(self, value, call):
        return handle_address(value, self.where)


class HandleConverter(ParamConverter):
    """A handle the function uses without a null test: None is refused here."""

    def prepare(self, value, call):
        if value is None:
            raise ValueError(f"{self.where} must be a handle: the function does not take null")
        return handle_address(value, self.where)


class RawConverter(ParamConverter):
    def __init__(self, name, where, c_type):
        super().__init__(name, where)
        self.ctype = _RAW_TYPES[c_type]
        self.range = _RAW_RANGES.get(c_type)
        self.nonnull = c_type == "nonnull"

    def prepare(self, value, call):
        if self.range:
            return check_int(value, *self.range, self.where)
        if self.nonnull and not value:
            raise ValueError(f"{self.where} must be a value's address: the function does not take null")
        if self.ctype is ctypes.c_void_p:
            if value is not None and not isinstance(value, int):
                raise TypeError(f"{self.where} must be an address (int) or None, not {type(value).__name__}")
            return value
        return check_double(value, self.where)


class VectorConverter(ParamConverter):
    """An input list: a C vector made for the call and deleted after it (None is the null vector)."""

    def __init__(self, name, where, family):
        super().__init__(name, where)
        self.family = family

    def prepare(self, value, call):
        return None if value is None else self.family.make(value, self.where, call)


class RefilledConverter(VectorConverter):
    """An inout list: goes in as a C vector, the host's list comes back."""
    returns = True

    def prepare(self, value, call):
        return super().prepare([] if value is None else value, call)

    def collect(self, carg):
        return self.family.read(carg) if carg else []


class ValueConverter(ParamConverter):
    """A host value: a property value is made from None, a bool, int, float or
    str for the call; attribute and storage values cannot be made, only null."""

    def __init__(self, name, where, value_name, values):
        super().__init__(name, where)
        self.value_name = value_name
        self.values = values

    def prepare(self, value, call):
        if value is None:
            return None
        if self.value_name != "PropertyValue":
            raise TypeError(f"{self.where}: a {self.value_name} cannot be made from Python; pass None")
        return self.values.make(value, self.where, call)


class OutConverter(ParamConverter):
    """A scalar the function writes: a value goes in (None passes a null
    pointer, and None comes back) and the function's value is returned."""
    returns = True

    def __init__(self, name, where, inner, kind):
        super().__init__(name, where)
        self.inner = inner
        self.kind = kind
        self.cell = inner.ctype
        self.ctype = ctypes.POINTER(self.cell)

    def prepare(self, value, call):
        if value is None:
            return None
        return ctypes.pointer(self.cell(self.inner.prepare(value, call)))

    def collect(self, carg):
        if carg is None:
            return None
        value = carg.contents.value
        return bool(value) if self.kind == "bool" else value


class OutObjectConverter(ParamConverter):
    """An object the function hands back borrowed: it gains a reference of its
    own for Python. Any value but None asks for it."""
    returns = True
    ctype = ctypes.POINTER(ctypes.c_void_p)

    def prepare(self, value, call):
        return None if value is None else ctypes.pointer(ctypes.c_void_p())

    def collect(self, carg):
        return None if carg is None else HeldHandle.borrow(carg.contents.value)


# --- results ------------------------------------------------------------------

class ResultConverter:
    def __init__(self, restype, convert=None):
        self.restype = restype
        self.convert = convert or (lambda raw: raw)


def _object_result(raw):
    return HeldHandle(raw) if raw else None


# --- kinds --------------------------------------------------------------------

class Converters:
    """Makes the converters of one loaded library."""

    def __init__(self, lib, callbacks=None):
        self.lib = lib
        self.vectors = _vectors.Families(lib)
        self.values = self.vectors.values
        self.callbacks = callbacks

    def param(self, kind, name, where):
        words = kind.split()
        head = words[0]
        if head == "out":
            inner_kind = words[1]
            if inner_kind == "object":
                return OutObjectConverter(name, where)
            return OutConverter(name, where, self.param(" ".join(words[1:]), name, where), inner_kind)
        if head == "inout":
            return RefilledConverter(name, where, self.vectors.family(words[2]))
        if head in ("bool", "int", "enum"):
            return IntConverter(name, where, {"bool": "a bool", "int": "an int"}.get(head, f"a value of {words[-1]}"))
        if head == "int64":
            return Int64Converter(name, where)
        if head == "double":
            return DoubleConverter(name, where)
        if head in ("text", "nonnull-text"):
            return TextConverter(name, where, nullable=head == "text")
        if head == "object":
            return ObjectConverter(name, where)
        if head == "handle":
            return HandleConverter(name, where)
        if head == "vector":
            return VectorConverter(name, where, self.vectors.family(words[1]))
        if head == "value":
            return ValueConverter(name, where, words[1], self.values)
        if head == "raw":
            return RawConverter(name, where, words[1])
        if head == "callback" and self.callbacks:
            return self.callbacks.param(words[1], name, where)
        raise ValueError(f"{where}: the binding has no conversion for the kind {kind!r}")

    def result(self, kind):
        words = kind.split()
        head = words[0]
        if head in ("void",):
            return ResultConverter(None)
        if head == "bool":
            return ResultConverter(ctypes.c_bool)
        if head in ("int", "enum"):
            return ResultConverter(ctypes.c_int)
        if head == "int64":
            return ResultConverter(ctypes.c_uint64)
        if head == "double":
            return ResultConverter(ctypes.c_double)
        if head == "text":
            return ResultConverter(ctypes.c_void_p, _utf16.take_units)
        if head == "borrowed-text":
            return ResultConverter(ctypes.c_void_p, _utf16.read_units)
        if head == "object":
            return ResultConverter(ctypes.c_void_p, _object_result)
        if head == "vector":
            return ResultConverter(ctypes.c_void_p, self.vectors.family(words[1]).take)
        if head == "value":
            take = self.values.take if words[1] == "PropertyValue" else lambda raw: None
            return ResultConverter(ctypes.c_void_p, take)
        if head == "raw":
            return ResultConverter(_RAW_TYPES[words[1]])
        raise ValueError(f"the binding has no conversion for the result kind {kind!r}")
