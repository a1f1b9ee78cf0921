"""Help text of the library's functions, as `tvapic help NAME` prints it and
the object layer's methods carry it: the parameters and result with their
kinds, who owns what comes back, and whether and how the function travels
through the API Server."""

import inspect
import textwrap


def _ownership(f):
    """Sentences on what the caller owns of the answer, from the function's kinds."""
    from .native import _returns
    returned = [kind for _, kind in f.params if _returns(kind)]
    words = {word for kind in [f.result_kind] + returned for word in kind.split()}
    notes = []
    if f.result_kind.startswith("object "):
        notes.append("In process, the object returned holds one reference of its own: release() gives it back "
                     "(a with block does), or the finaliser; None is the null object.")
    if {"text", "vector"} & words:
        notes.append("Texts and lists come back as Python copies; the library's own are freed.")
    if returned:
        notes.append("Out-parameters are optional arguments: their values come back in a tuple, before the result.")
    if any(kind.startswith("object ") for _, kind in f.params):
        notes.append("Objects passed in stay the caller's.")
    return notes


def _handlers(f):
    """How an event handler parameter's callable is called."""
    from ._generated_exports import CALLBACKS
    notes = []
    for name, kind in f.params:
        if kind.startswith("callback "):
            result, *params = CALLBACKS[kind.split()[1]]
            args = ", ".join(f"{p.rsplit(' ', 1)[1]}: {p.rsplit(' ', 1)[0]}" for p in params)
            notes.append(f"{name} is a Python callable, called as {name}({args}) -> {result} on the thread that "
                         "raises the event, and kept until RemoveAllHandlers.")
    return notes


def describe(export):
    """The help text of a function of the library, by its exported name; ValueError for another name."""
    from . import native
    from ._generated_exports import FUNCTIONS
    from ._generated_remote import SIGNATURES, RemoteAPI
    from .client import unknown_function
    if export not in FUNCTIONS:
        raise unknown_function(export)
    f = native.function(export)   # its table entry only: the library is not loaded
    lines = [inspect.getdoc(f), ""]
    lines += textwrap.wrap(" ".join(_ownership(f) + _handlers(f)), 100)
    sig = SIGNATURES.get(export)
    if sig is None:
        lines += ["", "Remotable: no. The API Server does not serve it: it is called in process only "
                      "(tvapic.native, tvapic.objects)."]
        return "\n".join(lines).strip()
    lines += ["", "Remotable: yes. Through the API Server (tvapic.Client, `tvapic call`):",
              textwrap.indent(inspect.getdoc(getattr(RemoteAPI, export)), "    ")]
    if sig.result_stays:
        lines.append("    Through tvapic.objects, the call raises tvapic.DoesNotTravel after it has run.")
    return "\n".join(lines).strip()
