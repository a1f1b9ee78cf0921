"""The simulated host in this process: libtvsim, the stand-in of the
application that tvhost also serves, for running tvapic.native and
tvapic.objects outside the application.

Inside the application the library's calls reach the application itself and
none of this is used. Outside it, the host platform's stand-in answers a
call of the application's with nothing until the simulated host starts: a
rooted call raises NoApplication first, naming what to call.
"""

import ctypes
import os
import sys
import threading
from pathlib import Path

from . import _library
from ._handles import outstanding
from .errors import NoApplication

ENVIRONMENT = "TVSIM_LIBRARY"

_lock = threading.Lock()
_started = None   # (path, CDLL)
_has_root = None  # the stand-in's question, once asked; False inside the application

# The interfaces whose functions take no handle: they reach the host's roots.
ROOTS = ("IApplication", "ITransferService")


def _names():
    return ["tvsim.dll"] if sys.platform == "win32" else ["libtvsim.so"]


def _candidates(path):
    """Where to look, in order: the path given, TVSIM_LIBRARY, beside libtvAPIC, the system's loader."""
    wanted = path or os.environ.get(ENVIRONMENT)
    if wanted:
        return [wanted]
    library = Path(_library.loaded_path())
    beside = [str(library.parent / name) for name in _names()] if library.is_absolute() else []
    return [candidate for candidate in beside if Path(candidate).is_file()] + _names()


def start(path=None):
    """Starts the simulated application in this process, once; the path its library was loaded from."""
    global _started
    with _lock:
        if _started is None:
            _library.load()   # first: the host's libraries it shares with libtvAPIC come with it
            errors = []
            for candidate in _candidates(path):
                try:
                    _started = (candidate, ctypes.CDLL(candidate))
                    break
                except OSError as e:
                    errors.append(str(e))
            else:
                raise _library.LibraryNotFound(f"the simulated host (libtvsim) was not found: set {ENVIRONMENT} to "
                                            f"its path, or install it beside libtvAPIC ({'; '.join(errors)})")
            _started[1].tvsim_start()
        return _started[0]


def stop():
    """Stops the simulated application; every handle must have been given back first."""
    global _started
    with _lock:
        if _started is None:
            return
        held = outstanding()
        if held:
            raise RuntimeError(f"{held} handles are still held: release them before stopping the simulated host, "
                               "which frees the objects they point to")
        _started[1].tvsim_stop()
        _started = None


def root_of(export):
    """The rooted interface an export belongs to, or None."""
    interface = export.split("_", 1)[0]
    return interface if interface in ROOTS else None


def _stand_in_question():
    """The stand-in's tvapi_standin_has_root, found through libtvAPIC's own
    libraries; False when the host's libraries are the application's."""
    global _has_root
    if _has_root is None:
        try:
            ask = _library.load()[1].tvapi_standin_has_root
        except AttributeError:
            _has_root = False
        else:
            ask.argtypes = [ctypes.c_char_p]
            ask.restype = ctypes.c_int
            _has_root = ask
    return _has_root


def require_root(root, export):
    """NoApplication when this process runs the stand-in without the root
    installed: the call would reach nothing."""
    ask = _stand_in_question()
    if ask and not ask(root.encode("ascii")):
        raise NoApplication(f"{export}(): no application in this process. Outside the application, start the "
                            f"simulated host first: tvapic.native.start_simulated_host()")
