"""The C runtime that libtvAPIC allocates its returned blocks with: free for
what a caller owns, malloc for what the library frees (a callback's written
text lists)."""

import ctypes
import sys

from ._library import LibraryNotFound


def _c_runtime():
    """The C runtime the library allocates its returned blocks with."""
    if sys.platform == "win32":
        # The universal CRT for MSVC and current MinGW builds, msvcrt for older MinGW ones.
        for name in ("ucrtbase", "msvcrt"):
            try:
                return ctypes.CDLL(name)
            except OSError:
                continue
        raise LibraryNotFound("no C runtime (ucrtbase or msvcrt) to free returned blocks with")
    return ctypes.CDLL(None)


_runtime = _c_runtime()
free = _runtime.free
free.argtypes = [ctypes.c_void_p]
free.restype = None
malloc = _runtime.malloc
malloc.argtypes = [ctypes.c_size_t]
malloc.restype = ctypes.c_void_p
