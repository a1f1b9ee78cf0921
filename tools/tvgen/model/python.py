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

from . import families
from .types import TYPES
from .wire import param_wire


def python_type(kind):
    """The Python type of a value of a catalogue kind (the type table's)."""
    return TYPES[kind].python


def identifier(name, taken):
    """A catalogue name as a Python identifier not yet in `taken` (which it joins)."""
    name = name + "_" if keyword.iskeyword(name) or name == "self" else name
    while name in taken:
        name += "_"
    taken.add(name)
    return name


def handle_name(interface):
    """The name of the object's handle parameter: IDocuments -> documents."""
    base = interface.name[1:]
    return base[0].lower() + base[1:]


def of(t):
    """The interface or enumeration a value of type t is of ('' for others)."""
    return t.name if t.kind in ("object", "enum") else ""


# The remote client

def travelling(op):
    """[(python name, wire kind, catalogue kind, of)] in request order, and the
    parameters that do not travel, as (name, type text)."""
    taken = set()
    params, dropped = [], []
    if not op.interface.root:
        params.append((None, "u64", "object", op.interface.name))
    for p in op.params:
        kind = param_wire(op, p)
        if kind is None:
            dropped.append((p.name, str(p.type)))
            continue
        params.append((p.name, kind, p.type.kind, of(p.type)))
    named = []
    own = {p[0] for p in params if p[0]}
    for name, kind, type_, of_ in params:
        if name is None:
            # The handle's name must not clash with the function's own parameters.
            name = handle_name(op.interface)
            while name in own:
                name += "_"
        named.append((identifier(name, taken), kind, type_, of_))
    return named, dropped


# The in-process binding

# C types of the vector and value functions, as the runtime binds them.
_RAW = {"void": "raw void", "uint64_t": "raw uint64_t", "int32_t": "raw int32_t", "uint32_t": "raw uint32_t",
        "uint8_t": "raw uint8_t", "float": "raw float", "double": "raw double", "const tvWChar*": "text"}


def type_kind(t):
    if t.kind in ("enum", "object", "value"):
        return f"{t.kind} {t.name}"
    if t.kind == "vector":
        return f"vector {t.name} {t.element}" if t.element else f"vector {t.name}"
    return t.kind


def param_kind(p):
    return f"{p.mode} {type_kind(p.type)}" if p.mode else type_kind(p.type)


def python_params(op):
    """[(Python name, kind)] of an export's parameters, the object's handle first.

    The names are the catalogue's (a keyword gains a trailing underscore); the
    handle is named after its interface, as in the remote client.
    """
    own = {p.name for p in op.params}
    params = []
    if not op.interface.root:
        name = handle_name(op.interface)
        while name in own:
            name += "_"
        params.append((name, f"object {op.interface.name}"))
    params += [(p.name, param_kind(p)) for p in op.params]
    taken = set()
    return [(identifier(name, taken), kind) for name, kind in params]


def _raw(c_type, name):
    if c_type == "const tvWChar*" and name.startswith("StringVector_"):
        return "nonnull-text"   # copied without a null test
    if c_type in _RAW:
        return _RAW[c_type]
    if c_type == "tvWChar*":
        # Property values hand out a fresh copy; a string vector's element stays the vector's.
        return "text" if name.startswith("PropertyValue_") else "borrowed-text"
    assert c_type.endswith("*"), c_type
    if c_type == "PropertyValue_t*" and name.startswith("PropertyValue_"):
        return "raw nonnull"   # the value functions do not test for null
    return "raw pointer"


def _split_c_params(text):
    if text == "void":
        return []
    return [tuple(param.rsplit(" ", 1)) for param in text.split(", ")]


def container_entries():
    """(export, result kind, [(name, kind)]) of the handle base, vector and value functions."""
    handle = [("handle", "handle")]   # counted without a null test: None is refused
    entries = [("IAPIObject_AddRef", "raw int32_t", handle), ("IAPIObject_Release", "raw int32_t", handle),
               ("IAPIObject_IsSameObjects", "bool", [("first", "object IAPIObject"), ("second", "object IAPIObject")])]
    for result, name, params in families.container_prototypes():
        entries.append((name, _raw(result, name), [(n, _raw(t, name)) for t, n in _split_c_params(params)]))
    return entries


def _callback_kind(p):
    return f"inout {type_kind(p.type)}" if p.inout else type_kind(p.type)


def callbacks(model):
    """Each C callback type of the events: {type: (result kind, [(name, kind)])}."""
    out = {}
    for e in model.events():
        result = f"enum {e.result.name}" if e.result.kind == "enum" else e.result.kind
        out[e.callback_type] = (result, [(p.name, _callback_kind(p)) for p in e.params])
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
    out = container_entries()
    out += [(op.export, type_kind(op.result), python_params(op)) for op in model.ops()]
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
