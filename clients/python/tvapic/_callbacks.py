"""Event handlers: Python callables as C callbacks.

A handler passed to a registration export is wrapped in a CFUNCTYPE of the
callback's C signature (the generated table's CALLBACKS) and kept alive while
the host may call it: until RemoveAllHandlers of the same events object (and
key) is called through this binding, or else for the life of the process.

The handler is called with one Python value per callback parameter:

- handles as HeldHandle objects with a reference of their own (the host only
  lends its objects for the call), lists of objects as lists of them;
- text as str, truth values as bool, Int32 lists as lists of int;
- a writable int, bool or text as a Ref whose .value the handler may change
  (a writable text starts as None: the callback does not see the host's
  text, and a text left unset empties it);
- a writable list of texts as a list, which the handler may change in place.

It returns the callback's result (a truth value, an enumeration's number, or
an address); an exception is reported on stderr and the zero result returned.
"""

import ctypes
import sys
import threading

from . import _c_runtime, _utf16
from ._handles import HeldHandle
from ._converters import ParamConverter, check_i32
from ._vectors import declare, header

_INT_P = ctypes.POINTER(ctypes.c_int)


class Ref:
    """A value the handler may replace: read and set .value."""

    __slots__ = ("value",)

    def __init__(self, value=None):
        self.value = value

    def __repr__(self):
        return f"Ref({self.value!r})"


def _identity(raw):
    return raw


# kind -> (C type, reader); a reader turns the C argument into the handler's value.
_PLAIN = {"bool": (ctypes.c_int, lambda raw: raw != 0), "int": (ctypes.c_int, _identity),
          "enum": (ctypes.c_int, _identity), "uint32": (ctypes.c_uint32, _identity),
          "int64": (ctypes.c_uint64, _identity), "double": (ctypes.c_double, _identity),
          "pointer": (ctypes.c_void_p, _identity), "text": (ctypes.c_void_p, _utf16.read_units),
          "object": (ctypes.c_void_p, HeldHandle.borrow)}
_RESULTS = {"void": None, "bool": ctypes.c_int, "enum": ctypes.c_int, "pointer": ctypes.c_void_p}


class Callbacks:
    """The callback types of one loaded library, and the callbacks kept alive."""

    def __init__(self, signatures, lib=None):
        self.signatures = signatures
        self.lib = lib
        self._types = {}
        self._kept = {}          # (interface, events handle, key) -> [C callbacks]
        self._lock = threading.Lock()
        self._strings = None

    def strings(self):
        """StringVector_Set and _Clear, and the C runtime's malloc, for writable text lists."""
        if self._strings is None:
            text = ctypes.POINTER(ctypes.c_uint16)
            self._strings = (declare(self.lib, "StringVector_Set", None, ctypes.c_void_p, ctypes.c_uint64, text),
                             declare(self.lib, "StringVector_Clear", None, ctypes.c_void_p))
        return self._strings

    def param(self, typedef, name, where):
        return CallbackConverter(self, typedef, name, where)

    def signature(self, typedef, where):
        if typedef not in self.signatures:
            raise ValueError(f"{where}: no callback type {typedef!r}")
        result, *params = self.signatures[typedef]
        return result, [p.rsplit(" ", 1)[0] for p in params]

    def keep(self, place, callback):
        with self._lock:
            self._kept.setdefault(place, []).append(callback)

    def forget(self, place):
        with self._lock:
            return len(self._kept.pop(place, []))

    def kept(self):
        """How many C callbacks are kept alive."""
        with self._lock:
            return sum(len(v) for v in self._kept.values())

    def after(self, export):
        """What a call of export does to the kept callbacks afterwards (None: nothing)."""
        interface, _, operation = export.partition("_")
        if operation != "RemoveAllHandlers":
            return None
        return lambda arguments: self.forget(_place(interface, arguments))


def _place(interface, arguments):
    """Where handlers are registered: the events object and the key (the text after it, if any)."""
    events = arguments[0] if arguments else None
    key = arguments[1] if len(arguments) > 1 and isinstance(arguments[1], str) else None
    address = events._key if isinstance(events, HeldHandle) else events
    return interface, address, key or ""


class _Argument:
    """One callback parameter: its C type, what the handler gets, what goes back."""

    def __init__(self, kind, callbacks):
        words = kind.split()
        self.kind = kind
        self.callbacks = callbacks
        self.local = threading.local()   # a writable text's buffer, kept until the host has copied it
        if words[0] == "inout":
            self.ctype = ctypes.c_void_p if words[1] == "vector" else (
                ctypes.POINTER(ctypes.c_void_p) if words[1] == "text" else _INT_P)
            self.inout = words[1]
        elif words[0] == "vector":
            self.ctype, self.inout = ctypes.c_void_p, None
        elif words[0] in _PLAIN:
            self.ctype, self.inout = _PLAIN[words[0]][0], None
        else:
            raise NotImplementedError(f"callbacks taking {kind} are not converted")
        self.head = words[0]

    def read(self, raw):
        if self.inout == "text":
            return Ref(None)
        if self.inout in ("int", "bool"):
            value = raw[0] if raw else 0
            return Ref(value != 0 if self.inout == "bool" else value)
        if self.inout == "vector":
            return [_utf16.read_units(x) for x in _texts(raw)[:]] if raw else []
        if self.head == "vector":
            return self._list(raw)
        return _PLAIN[self.head][1](raw)

    def _list(self, raw):
        if not raw:
            return []
        h = header(raw)
        if not h.size:
            return []
        element = ctypes.c_int32 if "Int32Vector" in self.kind else ctypes.c_void_p
        values = (element * h.size).from_address(h.data)[:]
        return values if element is ctypes.c_int32 else [HeldHandle.borrow(x) for x in values]

    def write_back(self, raw, value, original):
        if self.inout == "text":
            units = None if value.value is None else _utf16.to_units(value.value, "a writable text")
            self.local.units = units    # the host copies it once the callback has returned
            if raw:
                raw[0] = ctypes.addressof(units) if units is not None else None
        elif self.inout in ("int", "bool") and raw:
            raw[0] = (1 if value.value else 0) if self.inout == "bool" else check_i32(value.value, "a writable int")
        elif self.inout == "vector" and raw and value != original:
            self._refill(raw, value)

    def _refill(self, raw, texts):
        units = [_utf16.to_units(t, "an element of a writable text list") for t in texts]
        set_text, clear = self.callbacks.strings()
        h = header(raw)
        if units and len(units) <= h.size:
            # Over the vector's own block: the texts replaced are freed by the adapter.
            for n, u in enumerate(units):
                set_text(raw, n, u)
            h.size = len(units)
            return
        clear(raw)
        if units:
            block = _c_runtime.malloc(len(units) * ctypes.sizeof(ctypes.c_void_p))
            if not block:
                raise MemoryError("no block for a writable text list")
            h.data, h.size = block, len(units)
            for n, u in enumerate(units):
                set_text(raw, n, u)


def _texts(raw):
    h = header(raw)
    return (ctypes.c_void_p * h.size).from_address(h.data) if h.size else []


class CallbackConverter(ParamConverter):
    """A registration's handler parameter: a callable (or None) made a C callback."""

    def __init__(self, callbacks, typedef, name, where):
        super().__init__(name, where)
        self.callbacks = callbacks
        self.typedef = typedef
        result, kinds = callbacks.signature(typedef, where)
        self.arguments = [_Argument(k, callbacks) for k in kinds]
        self.result = result.split()[0]
        self.restype = _RESULTS[self.result]
        self.ctype = ctypes.CFUNCTYPE(self.restype, *[a.ctype for a in self.arguments])

    def adapter(self, handler):
        arguments, restype, result_kind = self.arguments, self.restype, self.result

        def call(*raw):
            try:
                values = [a.read(r) for a, r in zip(arguments, raw)]
                originals = [list(v) if isinstance(v, list) else None for v in values]
                result = handler(*values)
                for a, r, v, o in zip(arguments, raw, values, originals):
                    if a.inout:
                        a.write_back(r, v, o)
                if restype is None:
                    return None
                if result_kind == "bool":
                    return 1 if result else 0
                return result if result_kind == "pointer" else check_i32(result or 0, "the result")
            except BaseException:  # the host cannot take a Python exception
                print(f"tvapic: the {self.typedef} handler {handler!r} raised:", file=sys.stderr)
                sys.excepthook(*sys.exc_info())
                return None if restype is None else 0
        return call

    def prepare(self, value, call):
        if value is None:
            return None
        if not callable(value):
            raise TypeError(f"{self.where} must be a callable or None, not {type(value).__name__}")
        callback = self.ctype(self.adapter(value))
        interface = self.where.split("_", 1)[0]
        self.callbacks.keep(_place(interface, call.arguments), callback)
        return callback
