"""16-bit text: the library's text crosses as zero-terminated UTF-16 units on
every platform (ctypes' c_wchar is four bytes where wchar_t is, so it is
never used)."""

import ctypes
import sys

from ._c_runtime import free

UTF16 = "utf-16-le" if sys.byteorder == "little" else "utf-16-be"


def to_units(text, where):
    """A zero-terminated array of UTF-16 units holding text."""
    if not isinstance(text, str):
        raise TypeError(f"{where} must be a str, not {type(text).__name__}")
    if "\0" in text:
        raise ValueError(f"{where} cannot hold a NUL character: the function would see the text cut there")
    data = text.encode(UTF16, "surrogatepass")
    return (ctypes.c_uint16 * (len(data) // 2 + 1)).from_buffer_copy(data + b"\0\0")


def read_units(address):
    """The text of a zero-terminated block of UTF-16 units ("" for a null pointer)."""
    if not address:
        return ""
    units = ctypes.cast(address, ctypes.POINTER(ctypes.c_uint16))
    n = 0
    while units[n]:
        n += 1
    return ctypes.string_at(address, 2 * n).decode(UTF16, "surrogatepass")


def take_units(address):
    """read_units, then the block is freed: text the caller owns."""
    try:
        return read_units(address)
    finally:
        if address:
            free(address)
