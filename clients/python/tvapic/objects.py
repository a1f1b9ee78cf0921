"""tvapic.objects: the host API as Python objects, in process or over the API Server.

    from tvapic import objects
    app = objects.application()                  # in process (tvapic.native)
    app = objects.application(Client(port=8001))  # the same, through the API Server
    documents = app.GetDocuments()               # an IDocuments, or None for the null object
    doc = require(documents.Add(1, True))        # an ITavraDocument, never None (NullHandle)
    doc.SetAuthor("Ada")
    x1, y1, x2, y2, ok = doc.GetDocumentGabarit()
    drawing = doc.query("ITavraDocument2D")       # the same object through another interface

One class per interface (objects.IDocuments, ...), one method per operation,
named as the catalogue names it; help() on a method shows its parameters,
ownership and remotability. Arguments and answers are those of the
function the method calls (see tvapic.native), without the object's handle:
out-parameters are optional and come back in a tuple before the result;
objects come back as instances of the result's interface (None for null).

Over the API Server only the functions it serves can be called, and only
interfaces it serves can be queried; anything else raises NotRemotable.
What does not travel stays behind: a list argument must be None or empty, a
refilled list that does not travel comes back as None, and a call whose
result does not travel (a double, a structure) raises DoesNotTravel once it
has run.

In process, an object holds one reference to the host object, given back by
release(), a with block or the finaliser; over the API Server, release() does
nothing.
"""

import inspect
import weakref

from ._help import describe
from ._generated_classes import INTERFACES
from .errors import DoesNotTravel, NotRemotable, NullHandle

__all__ = ["APIObject", "DoesNotTravel", "INTERFACES", "NotRemotable", "NullHandle", "application",
           "interface_class", "require", "transfer_service", "wrap"]


# --- backends -----------------------------------------------------------------

def _function_entry(export):
    from ._generated_exports import FUNCTIONS
    result, *params = FUNCTIONS[export]
    return result, [tuple(reversed(p.rsplit(" ", 1))) for p in params]


def _returning(kind):
    return kind.startswith(("out ", "inout "))


class _Backend:
    def unwrap(self, value, where):
        """An object argument as this backend's handle (lists of them too)."""
        if isinstance(value, APIObject):
            if value._backend is not self:
                raise ValueError(f"{where}: {value!r} belongs to another connection")
            return value._handle
        if isinstance(value, (list, tuple)):
            return [self.unwrap(v, where) for v in value]
        return value


class _InProcess(_Backend):
    """Calls go to tvapic.native."""

    name = "in process"

    def call(self, export, handle, args, kwargs):
        from . import native
        f = native.function(export)
        params = f.params[0 if handle is _ROOTED else 1:]
        args = [self._argument(kind, value, export) for (_, kind), value in zip(params, args)]
        kwargs = {k: self._argument(dict(params).get(k, ""), v, export) for k, v in kwargs.items()}
        return f(*args, **kwargs) if handle is _ROOTED else f(handle, *args, **kwargs)

    def _argument(self, kind, value, export):
        if kind.startswith("callback ") and callable(value):
            return _handler_for_objects(self, kind.split()[1], value)
        return self.unwrap(value, f"{export}()")

    def duplicate(self, handle):
        return handle.duplicate() if handle is not None else None

    def release(self, handle):
        if handle is not None:
            handle.release()

    def same(self, a, b):
        return a.is_same_object(b)


class _Remote(_Backend):
    """Calls go to the API Server through a tvapic.Client."""

    def __init__(self, client):
        self.client = client
        self.name = repr(client)

    def call(self, export, handle, args, kwargs):
        from ._generated_remote import SIGNATURES
        from . import native
        sig = SIGNATURES.get(export)
        if sig is None:
            raise NotRemotable(f"{export} is not served by the API Server")
        f = native.function(export)   # its table entry only: the library is not loaded
        try:
            bound = f.__signature__.bind(*(() if handle is _ROOTED else (handle,)), *args, **kwargs)
        except TypeError as e:
            raise TypeError(f"{export}(): {e}") from None
        bound.apply_defaults()
        values = []
        for (name, kind), value in zip(f.params, bound.arguments.values()):
            words = kind.split()
            if "vector" in words:
                if value is not None and len(value):
                    raise ValueError(f"{export}(): argument {name!r}: lists do not travel to the API Server; "
                                     "only None or an empty list can be given")
                continue
            values.append(self.unwrap(value, f"{export}(): argument {name!r}"))
        answer = _reshape(f, sig, self.client.call(export, *values))
        if sig.result_stays:
            raise DoesNotTravel(f"{export} ran on the server, but its {sig.result_stays} result does not travel "
                                "back: call it in process for its value", answer)
        return answer

    def duplicate(self, handle):
        return handle

    def release(self, handle):
        pass

    def same(self, a, b):
        return a == b


def _reshape(f, sig, answer):
    """The remote answer in the in-process shape: a refilled list that does
    not travel comes back as None, and so does a result that does not."""
    returning = [kind for _, kind in f.params if _returning(kind)]
    has_result = f.result_kind != "void"
    travels = sig.result is not None
    if not returning:
        return answer if travels else None
    slots = iter(answer if sig.slots else ())
    out = [None if kind.startswith("inout ") else next(slots) for kind in returning]
    if has_result:
        out.append(answer[-1] if travels and sig.slots else (answer if travels else None))
    return tuple(out)


_IN_PROCESS = _InProcess()
_ROOTED = object()   # the handle of a rooted interface: its functions take none


def _handler_for_objects(backend, typedef, handler):
    """A handler that receives objects of this layer instead of native Handles."""
    from ._generated_exports import CALLBACKS
    result, *params = CALLBACKS[typedef]
    kinds = [p.rsplit(" ", 1)[0].split() for p in params]

    def receive(*values):
        return handler(*[_wrap_value(backend, k, v) for k, v in zip(kinds, values)])
    return receive


# --- objects --------------------------------------------------------------------

class APIObject:
    """An object of the host API. Its class is its interface; query() gives
    the same object through another interface."""

    __slots__ = ("_backend", "_handle", "__weakref__")
    INTERFACE = "IAPIObject"
    IID = None
    GROUP = None
    REMOTE = False

    def __init__(self, backend, handle):
        self._backend = backend
        self._handle = handle

    @property
    def handle(self):
        """The handle the calls pass: a tvapic.native.HeldHandle in process, a tvapic.Handle remotely."""
        return None if self._handle is _ROOTED else self._handle

    @property
    def in_process(self):
        return self._backend is _IN_PROCESS

    def query(self, interface):
        """The same object through another interface (a class or its name).
        Whether the object has it is not asked: functions of an interface it
        lacks call nothing and return their defaults. Remotely, an interface
        the API Server does not serve raises NotRemotable."""
        cls = interface_class(interface) if isinstance(interface, str) else interface
        if self._handle is _ROOTED:
            raise TypeError(f"{self.INTERFACE} is rooted: it has no other interfaces")
        if not self.in_process and not cls.REMOTE:
            raise NotRemotable(f"the API Server serves no function of {cls.INTERFACE}: it is queried in process "
                               "only")
        return cls(self._backend, self._backend.duplicate(self._handle))

    def is_same_object(self, other):
        """Whether the host says both are the same object, whatever their interfaces."""
        if not isinstance(other, APIObject) or other._backend is not self._backend:
            return False
        return self._backend.same(self._handle, other._handle)

    def release(self):
        """Gives the reference back (in process); nothing remotely. Calls after it fail."""
        if self._handle is not _ROOTED:
            self._backend.release(self._handle)

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.release()

    def __eq__(self, other):
        return (isinstance(other, APIObject) and other._backend is self._backend
                and other._handle == self._handle)

    def __hash__(self):
        return hash((id(self._backend), self._handle if self._handle is not _ROOTED else None))

    def __repr__(self):
        where = "" if self.in_process else f" via {self._backend.name}"
        handle = "" if self._handle is _ROOTED else f" {self._handle!r}"
        return f"<{self.INTERFACE}{handle}{where}>"


def _method(interface, name):
    export = f"{interface}_{name}"
    result_kind, params = _function_entry(export)
    if INTERFACES[interface][2] is None:
        params = params[1:]

    def method(self, *args, **kwargs):
        answer = self._backend.call(export, self._handle, args, kwargs)
        return _wrap_answer(self._backend, export, answer)

    method.__name__ = method.__qualname__ = name
    method.__signature__ = _method_signature(export, params)
    shown = method.__signature__.replace(parameters=list(method.__signature__.parameters.values())[1:])
    method.__doc__ = f"{interface}.{name}{shown}: calls {export}.\n\n{describe(export)}"
    return method


def _method_signature(export, params):
    from . import native
    full = native.function(export).__signature__
    names = {name for name, _ in params}
    kept = [p for p in full.parameters.values() if p.name in names]
    self_param = inspect.Parameter("self", inspect.Parameter.POSITIONAL_OR_KEYWORD)
    return full.replace(parameters=[self_param] + kept)


def _wrap_value(backend, words, value):
    """A value of a kind (its words) with this layer's objects in place of handles."""
    if value is None:
        return None
    head = words[1:] if words[0] in ("out", "inout") else words
    if head[0] == "object":
        return interface_class(head[1])(backend, value)
    if head[0] == "vector" and head[1] == "ObjectReferenceVector":
        return [interface_class(head[2])(backend, v) if v is not None else None for v in value]
    if head[0] == "vector" and head[1] == "ObjectReferenceVectorVector":
        return [_wrap_value(backend, ["vector", "ObjectReferenceVector", head[2]], v) for v in value]
    return value


def _wrap_answer(backend, export, answer):
    result_kind, params = _function_entry(export)
    returning = [kind.split() for _, kind in params if _returning(kind)]
    if not returning:
        return _wrap_value(backend, result_kind.split(), answer)
    kinds = returning + ([result_kind.split()] if result_kind != "void" else [])
    return tuple(_wrap_value(backend, k, v) for k, v in zip(kinds, answer))


_classes = {"IAPIObject": APIObject}


def interface_class(name):
    """The class of an interface, by name; made when first asked for."""
    cls = _classes.get(name)
    if cls is None:
        if name not in INTERFACES:
            raise AttributeError(f"the host API has no interface {name!r}")
        group, iid, root, remote, names = INTERFACES[name]
        namespace = {"__slots__": (), "__module__": __name__, "INTERFACE": name, "IID": iid, "GROUP": group,
                     "REMOTE": remote, "__doc__": f"{name} ({group}{', remotable' if remote else ''})."}
        namespace.update({method: _method(name, method) for method in names})
        cls = _classes.setdefault(name, type(name, (APIObject,), namespace))
    return cls


_remotes = weakref.WeakKeyDictionary()   # client -> its backend, so its objects mix


def _backend_for(client):
    if client is None:
        return _IN_PROCESS
    backend = _remotes.get(client)
    if backend is None:
        backend = _remotes[client] = _Remote(client)
    return backend


def application(client=None):
    """The application: in process without a client, else through the API Server the client calls."""
    return interface_class("IApplication")(_backend_for(client), _ROOTED)


def transfer_service():
    """The transfer service, in process (the API Server does not serve it)."""
    return interface_class("ITransferService")(_IN_PROCESS, _ROOTED)


def require(value):
    """value itself, when it is not None; NullHandle otherwise. Typed code
    states with it that an object must be there: `require(app.GetDocuments())`
    is an IDocuments, where the method's answer is Optional."""
    if value is None:
        raise NullHandle("the null object came back where an object was required")
    return value


def wrap(handle, interface="IAPIObject", client=None):
    """An object of this layer for a handle: a tvapic.native.HeldHandle (which it
    takes over) in process, or a tvapic.Handle of the client's server."""
    if handle is None:
        return None
    return interface_class(interface if isinstance(interface, str) else interface.INTERFACE)(
        _backend_for(client), handle)


def __getattr__(name):
    if name in INTERFACES:
        return interface_class(name)
    raise AttributeError(f"module 'tvapic.objects' has no attribute {name!r}")


def __dir__():
    return sorted(set(globals()) | set(INTERFACES))
