"""How the catalogue appears to the Python package: parameter names, the
in-process binding's kinds and table entries, the object layer's methods,
and the parameters of a remote call.

The binding's kinds (words separated by spaces):

    void bool int int64 double text         as the catalogue
    enum <Name>    object <I>    value <Name>
    handle                                  a handle that must not be null
    vector <Family> [<I>]                   an input list; as a result, a new list
    out <kind>     inout <kind>             returned through the parameter
    raw <C type>                            vector and value functions, bound as exported
                                            (pointer: an address; nonnull: one that must not be 0)
    borrowed-text                           text that stays the library's (a vector's element)
    nonnull-text                            text that must not be None
    callback <Type>                         an event handler of a C callback type (CALLBACKS)
"""

import keyword
from typing import NamedTuple

from ..model import families
from ..model.types import TYPES
from ..model.wire import carriers
from .names import object_param, unique


def python_type(kind):
    """The Python type of a value of a catalogue kind (the type table's)."""
    return TYPES[kind].python


def identifier(name, taken):
    """A catalogue name as a Python identifier not yet in `taken` (which it joins)."""
    name = unique(name + "_" if keyword.iskeyword(name) or name == "self" else name, taken)
    taken.add(name)
    return name


def of(t):
    """The interface or enumeration a value of type t is of ('' for others)."""
    return t.name if t.kind in ("object", "enum") else ""


# The remote client

class RemoteParam(NamedTuple):
    name: str       # the Python name
    wire: object    # its WireKind
    kind: str       # its catalogue kind ("object" for the handle)
    of: str         # the interface or enumeration it is of


def remote_params(op):
    """The parameters of a remote call, as RemoteParam in request order, and
    those that do not travel, as (name, type text)."""
    carried = carriers(op)
    own = {p.name for p, _ in carried if p is not None}
    taken = set()
    params = []
    for p, wire in carried:
        if p is None:
            params.append(RemoteParam(identifier(object_param(op.interface, own), taken), wire, "object",
                                      op.interface.name))
        else:
            params.append(RemoteParam(identifier(p.name, taken), wire, p.type.kind, of(p.type)))
    travels = {p for p, _ in carried}
    dropped = [(p.name, str(p.type)) for p in op.params if p not in travels]
    return params, dropped


# The in-process binding

# C types of the handle base, vector and value functions, as the runtime binds them.
_RAW = {"void": "raw void", "int": "raw int32_t", "uint64_t": "raw uint64_t", "int32_t": "raw int32_t",
        "uint32_t": "raw uint32_t", "uint8_t": "raw uint8_t", "float": "raw float", "double": "raw double",
        "bool": "bool"}


def binding_kind(t):
    """The binding's kind of a value of type t (t.kind is its catalogue kind)."""
    if t.kind in ("enum", "object", "value"):
        return f"{t.kind} {t.name}"
    if t.kind == "vector":
        return f"vector {t.name} {t.element}" if t.element else f"vector {t.name}"
    return t.kind


def param_binding_kind(p):
    return f"{p.mode} {binding_kind(p.type)}" if p.mode else binding_kind(p.type)


def python_params(op):
    """[(Python name, kind)] of an export's parameters, the object's handle first.

    The names are the catalogue's (a keyword gains a trailing underscore); the
    handle is named after its interface, as in the remote client.
    """
    params = [] if op.interface.root else [(object_param(op.interface, {p.name for p in op.params}),
                                             f"object {op.interface.name}")]
    params += [(p.name, param_binding_kind(p)) for p in op.params]
    taken = set()
    return [(identifier(name, taken), kind) for name, kind in params]


def raw_param(proto, p):
    """A parameter of a handle base, vector or value function."""
    if p.c_type == "const tvWChar*":
        return "text" if p.nullable else "nonnull-text"   # copied without a null test
    if proto.owner is None:
        # The handle base takes objects; one it counts without a null test refuses None.
        return "object IAPIObject" if p.nullable else "handle"
    return _RAW.get(p.c_type) or ("raw pointer" if p.nullable else "raw nonnull")


def raw_result(r):
    """A result of a handle base, vector or value function."""
    if r.c_type == "tvWChar*":
        # A value's text is a fresh copy; a string vector's element stays the vector's.
        return "text" if r.ownership == "free" else "borrowed-text"
    return _RAW.get(r.c_type) or ("raw pointer" if r.nullable else "raw nonnull")


def base_entries():
    """(export, result kind, [(name, kind)]) of the handle base, vector and value functions."""
    entries = []
    for proto in families.HANDLE_BASE + families.container_prototypes():
        entries.append((proto.name, raw_result(proto.result), [(p.name, raw_param(proto, p)) for p in proto.params]))
    return entries


def _callback_binding_kind(p):
    return f"inout {binding_kind(p.type)}" if p.inout else binding_kind(p.type)


def callbacks(model):
    """Each C callback type of the events: {type: (result kind, [(name, kind)])}."""
    out = {}
    for e in model.events():
        result = f"enum {e.result.name}" if e.result.kind == "enum" else e.result.kind
        out[e.callback_type] = (result, [(p.name, _callback_binding_kind(p)) for p in e.params])
    return out


def registration_entry(e):
    """A registration's table entry: its handler parameter has the kind `callback <type>`."""
    source = e.source
    if source.kind == "unqueried":
        params = [("handle", "raw pointer")]   # a host object, neither queried nor referenced
    else:
        params = [("events" if source.kind == "events" else "handle", f"object {source.name}")]
    if source.keyed:
        params.append(("key", "text"))
    params.append(("callback", f"callback {e.callback_type}"))
    return e.export, "void", params


def entries(model):
    """Every export as (name, result kind, [(Python name, kind)]), in header order."""
    out = base_entries()
    out += [(op.export, binding_kind(op.result), python_params(op)) for op in model.ops()]
    out += [registration_entry(e) for e in model.events()]
    return out


# The object layer

def methods(model, interface):
    """(method name, export) of an interface: its operations, then the handler
    registrations set on it."""
    out = [(op.name, op.export) for op in interface.ops]
    source = model.queried_source(interface.name)
    if source is not None:
        out += [(e.registration, e.export) for e in source.events]
    return out
