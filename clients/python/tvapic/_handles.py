"""Handles of host objects held in process: each holds one reference, which
goes back to the host with IAPIObject_Release exactly once (release(), the
end of a with block, or the finaliser, whichever comes first)."""

import ctypes
import threading

from . import _library

_lock = threading.Lock()
_outstanding = 0
_base = None


class _HandleBase:
    """The library's handle base functions, bound once."""

    def __init__(self, lib):
        self.add_ref = self._declare(lib.IAPIObject_AddRef, ctypes.c_int)
        self.release = self._declare(lib.IAPIObject_Release, ctypes.c_int)
        self.same = lib.IAPIObject_IsSameObjects
        self.same.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
        self.same.restype = ctypes.c_bool

    @staticmethod
    def _declare(function, restype):
        function.argtypes = [ctypes.c_void_p]
        function.restype = restype
        return function


def handle_base():
    global _base
    if _base is None:
        _base = _HandleBase(_library.load()[1])
    return _base


def outstanding():
    """How many handles made in this process still hold their reference."""
    return _outstanding


def _count(delta):
    global _outstanding
    with _lock:
        _outstanding += delta


class HeldHandle:
    """A host object held by Python, with one reference of its own.

    Made by the binding for every handle a function returns. Passing it to a
    function lends it: it stays yours. Handles compare equal when they hold
    the same pointer; is_same_object() asks the host whether two handles, of
    any interfaces, are the same object.
    """

    __slots__ = ("_address", "_key", "__weakref__")

    def __init__(self, address):
        """Adopts the reference that comes with address (a non-null pointer as an int)."""
        if isinstance(address, bool) or not isinstance(address, int) or address <= 0:
            raise ValueError(f"a handle is made from a non-null address, not {address!r}")
        self._address = address
        self._key = address
        _count(1)

    @classmethod
    def borrow(cls, address):
        """A handle of its own on an object known only by a borrowed pointer (None for null)."""
        if not address:
            return None
        handle_base().add_ref(address)
        return cls(address)

    @property
    def address(self):
        """The pointer, for passing to a function; ValueError once released."""
        address = self._address
        if address is None:
            raise ValueError(f"{self!r} was released and cannot be used")
        return address

    @property
    def released(self):
        return self._address is None

    def release(self):
        """Gives the reference back; the host's count after it, or None when
        it was already given back."""
        address, self._address = self._address, None
        if address is None:
            return None
        _count(-1)
        return handle_base().release(address)

    def duplicate(self):
        """Another handle on the same object, with its own reference."""
        handle_base().add_ref(self.address)
        return HeldHandle(self.address)

    def is_same_object(self, other):
        return bool(handle_base().same(self.address, other.address if other is not None else None))

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.release()

    def __del__(self):
        try:
            self.release()
        except Exception:  # the interpreter is shutting down: the library may be gone
            pass

    def __eq__(self, other):
        return isinstance(other, HeldHandle) and other._key == self._key

    def __hash__(self):
        return hash(self._key)

    def __repr__(self):
        state = " released" if self._address is None else ""
        return f"<tvapic.native.HeldHandle 0x{self._key:x}{state}>"


def handle_address(value, where):
    """The address a HeldHandle argument passes to C; None for None."""
    if value is None:
        return None
    if not isinstance(value, HeldHandle):
        raise TypeError(f"{where} must be a tvapic.native.HeldHandle or None, not {type(value).__name__}")
    try:
        return value.address
    except ValueError as e:
        raise ValueError(f"{where}: {e}") from None
