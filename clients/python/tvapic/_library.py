"""Finding and loading libtvAPIC.

The library is looked for, in order: at the path in TVAPIC_LIBRARY; beside
the tvapic package, in its parent directory, or in the lib folder beside that
(the build tree stages the package in build/python, the libraries lie in
build/lib); by name through the system's loader (an installed library).
"""

import ctypes
import os
import sys
import threading
from pathlib import Path

ENVIRONMENT = "TVAPIC_LIBRARY"

_lock = threading.Lock()
_loaded = None   # (path, CDLL)


class LibraryNotFound(OSError):
    """libtvAPIC could not be found or loaded."""


def library_names():
    """File names of the library on this platform, most specific first."""
    if sys.platform == "win32":
        return ["tvAPIC.dll"]
    if sys.platform == "darwin":
        return ["libtvAPIC.dylib"]
    return ["libtvAPIC.so", "libtvAPIC.so.0"]


def _candidates():
    package = Path(__file__).resolve().parent
    folders = (package, package.parent, package.parent.parent / "lib")
    return [folder / name for folder in folders for name in library_names()]


def _open(path):
    return ctypes.CDLL(str(path))


def load(path=None):
    """The loaded library as (path, CDLL); loads it on first use.

    path (or TVAPIC_LIBRARY) names the file explicitly; a library already
    loaded from another path is an error rather than a second copy.
    """
    global _loaded
    with _lock:
        wanted = path or os.environ.get(ENVIRONMENT) or None
        if _loaded:
            if wanted and Path(wanted).resolve() != Path(_loaded[0]).resolve():
                raise LibraryNotFound(f"libtvAPIC is already loaded from {_loaded[0]}; cannot load {wanted}")
            return _loaded
        if wanted:
            if not Path(wanted).is_file():
                raise LibraryNotFound(f"no library at {wanted}" +
                                      (f" (from {ENVIRONMENT})" if not path else ""))
            _loaded = (str(wanted), _load_or_explain(wanted))
            return _loaded
        for candidate in _candidates():
            if candidate.is_file():
                _loaded = (str(candidate), _load_or_explain(candidate))
                return _loaded
        errors = []
        for name in library_names():
            try:
                _loaded = (name, _open(name))
                return _loaded
            except OSError as e:
                errors.append(str(e))
        raise LibraryNotFound(f"libtvAPIC was not found: set {ENVIRONMENT} to its path, place it beside the "
                              f"tvapic package, or install it where the system's loader looks "
                              f"({'; '.join(errors)})")


def loaded_path():
    """The path the library was loaded from, or None before it is loaded."""
    return _loaded[0] if _loaded else None


def _load_or_explain(path):
    try:
        return _open(path)
    except OSError as e:
        raise LibraryNotFound(f"{path} could not be loaded: {e}") from None
