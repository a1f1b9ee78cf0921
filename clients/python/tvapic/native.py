"""tvapic.native: every export of libtvAPIC, called in process through ctypes.

    from tvapic import native
    documents = native.IApplication_GetDocuments()          # a HeldHandle, or None
    with native.IDocuments_Add(documents, 1, True) as doc:  # released at the end of the block
        native.ITavraDocument_SetAuthor(doc, "Ada")
        print(native.ITavraDocument_GetAuthor(doc))
        x1, y1, x2, y2, ok = native.ITavraDocument_GetDocumentGabarit(doc)
    documents.release()

Each function is named as the library exports it and takes its parameters in
the same order, the object's handle first. The library is found through
TVAPIC_LIBRARY, beside the package, or by the system's loader (see load()).

Inside the application, the calls reach it. Outside it, start the simulated
host first: start_simulated_host() (the application tvhost also serves).

- Handles returned are HeldHandle objects holding one reference, given back with
  IAPIObject_Release exactly once: release(), a with block, or the
  finaliser. A null handle is None both ways. Handles passed in stay yours.
- Text goes in as str (None is the empty text) and comes back as str; the
  library's copy is freed with the C runtime's free. Returned vectors come
  back as lists (None for a null vector) and are deleted with their family's
  _Delete. Truth values come back as bool.
- Out-parameters are optional arguments: a value goes in (the zero of its
  kind when left out; None passes a null pointer) and the function's value
  comes back. With out-parameters or inout lists, the answer is a tuple of
  their values in order, then the result when there is one.
- The vector and value functions (BoolVector_Create, PropertyValue_GetInt,
  ...) are bound as exported: their pointers are plain ints.
"""

import inspect
import threading

from . import _converters, _library, _simulated_host
from ._callbacks import Ref
from ._handles import HeldHandle, outstanding
from ._generated_exports import CALLBACKS, FUNCTIONS

LibraryNotFound = _library.LibraryNotFound

__all__ = ["CALLBACKS", "FUNCTIONS", "Function", "HeldHandle", "LibraryNotFound", "Ref", "function", "load",
           "library_path", "outstanding", "start_simulated_host", "stop_simulated_host"]

_lock = threading.Lock()
_converters_of_library = None


def load(path=None):
    """Loads the library now (it is otherwise loaded by the first call) and returns its path.

    Without a path: TVAPIC_LIBRARY, then libtvAPIC beside the package (or
    in its parent folder, or in the lib folder beside that, as in the build
    tree), then the system's loader.
    """
    return _library.load(path)[0]


def library_path():
    """The path the library was loaded from, or None before it is loaded."""
    return _library.loaded_path()


def start_simulated_host(path=None):
    """Starts the simulated application in this process, for use outside the
    application (inside it, nothing is needed); returns the path of its
    library, libtvsim: path, TVSIM_LIBRARY, beside libtvAPIC, or the system's
    loader. Starting it again does nothing."""
    return _simulated_host.start(path)


def stop_simulated_host():
    """Stops the simulated application; RuntimeError while handles are still held."""
    _simulated_host.stop()


def _converters_for_call():
    global _converters_of_library
    with _lock:
        if _converters_of_library is None:
            from . import _callbacks
            lib = _library.load()[1]
            _converters_of_library = _converters.Converters(lib, _callbacks.Callbacks(CALLBACKS, lib))
        return _converters_of_library


def _parse(entry):
    """(result kind, [(name, kind)]) of a table entry."""
    result, *params = entry
    return result, [tuple(reversed(p.rsplit(" ", 1))) for p in params]


def _returns(kind):
    return kind.startswith(("out ", "inout "))


class Function:
    """One export: converts the arguments, calls it, converts what comes back."""

    def __init__(self, name):
        self.__name__ = self.__qualname__ = name
        self.result_kind, self.params = _parse(FUNCTIONS[name])
        self._bound = None
        self._after = None
        self._root = _simulated_host.root_of(name)
        self.__signature__ = self._signature()
        self.__doc__ = self._doc()

    def _signature(self):
        # Out-parameters and inout lists after the last parameter that must be
        # given take their zero; earlier ones must be given (None is allowed).
        required = [n for n, (_, kind) in enumerate(self.params) if not _returns(kind)]
        last = required[-1] if required else -1
        parameters = []
        for n, (name, kind) in enumerate(self.params):
            default = inspect.Parameter.empty
            if n > last:
                default = [] if kind.startswith("inout ") else _converters.ZERO.get(kind.split()[1], True)
            parameters.append(inspect.Parameter(name, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default))
        return inspect.Signature(parameters)

    def _doc(self):
        lines = [f"{self.__name__}{self.__signature__}", ""]
        lines += [f"    {name}: {kind}" for name, kind in self.params]
        lines.append(f"    result: {self.result_kind}")
        return "\n".join(lines)

    def _bind_library(self):
        kinds = _converters_for_call()
        where = self.__name__ + "(): argument {!r}"
        params = [kinds.param(kind, name, where.format(name)) for name, kind in self.params]
        result = kinds.result(self.result_kind)
        cfunc = getattr(kinds.lib, self.__name__)
        cfunc.argtypes = [p.ctype for p in params]
        cfunc.restype = result.restype
        self._after = kinds.callbacks.after(self.__name__)
        self._bound = (cfunc, params, result)
        return self._bound

    def _values(self, args, kwargs):
        if not kwargs and len(args) == len(self.params):
            return list(args)   # every argument given in order: nothing to bind
        bound = self.__signature__.bind(*args, **kwargs)
        bound.apply_defaults()
        return list(bound.arguments.values())

    def __call__(self, *args, **kwargs):
        cfunc, params, result = self._bound or self._bind_library()
        if self._root:
            _simulated_host.require_root(self._root, self.__name__)
        try:
            values = self._values(args, kwargs)
        except TypeError as e:
            raise TypeError(f"{self.__name__}(): {e}") from None
        call = _converters.Call(values)
        try:
            cargs = [p.prepare(v, call) for p, v in zip(params, values)]
            value = result.convert(cfunc(*cargs))
            outs = [p.collect(c) for p, c in zip(params, cargs) if p.returns]
        finally:
            call.finish()
        if self._after:
            self._after(values)
        if not outs:
            return value
        return tuple(outs) + (() if self.result_kind == "void" else (value,))

    def __repr__(self):
        return f"<tvapic.native function {self.__name__}>"


_functions = {}


def function(name):
    """The Function of an export, by name; AttributeError for a name the library does not export."""
    f = _functions.get(name)
    if f is None:
        if name not in FUNCTIONS:
            raise AttributeError(f"libtvAPIC exports no function {name!r}")
        with _lock:
            f = _functions.setdefault(name, Function(name))
    return f


def __getattr__(name):
    if name in FUNCTIONS:
        return function(name)
    raise AttributeError(f"module 'tvapic.native' has no attribute {name!r}")


def __dir__():
    return sorted(set(globals()) | set(FUNCTIONS))
