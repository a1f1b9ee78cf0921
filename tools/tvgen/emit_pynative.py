"""Emits the in-process binding's function table: tvapic/_native.py.

One entry per export of the library, in header order: the result's kind and
each parameter's kind and Python name. tvapic.native turns an entry into a
ctypes function with its argument and result conversions when the function
is first used, so importing the table costs no more than reading it.

Kinds (words separated by spaces):

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


from . import families
from .emit_python import _identifier, handle_name

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
    return [(_identifier(name, taken), kind) for name, kind in params]


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
    out = []
    for param in text.split(", "):
        c_type, name = param.rsplit(" ", 1)
        out.append((c_type, name))
    return out


def container_entries():
    """(export, result kind, [(name, kind)]) of the handle base, vector and value functions."""
    handle = [("handle", "handle")]   # counted without a null test: None is refused
    entries = [("IAPIObject_AddRef", "raw int32_t", handle), ("IAPIObject_Release", "raw int32_t", handle),
               ("IAPIObject_IsSameObjects", "bool", [("first", "object IAPIObject"), ("second", "object IAPIObject")])]
    for result, name, params in families.container_prototypes():
        entries.append((name, _raw(result, name), [(n, _raw(t, name)) for t, n in _split_c_params(params)]))
    return entries


def _callback_kind(p):
    t = p.type
    if t.kind == "vector":
        kind = f"vector {t.name} {t.element}" if t.element else f"vector {t.name}"
    elif t.kind in ("object", "enum"):
        kind = f"{t.kind} {t.name}"
    else:
        kind = t.kind
    return f"inout {kind}" if p.inout else kind


def event_entries(events):
    """(callbacks, registrations) of the events catalogue: callbacks maps each
    C callback type to (result kind, [(name, kind)]); registrations are table
    entries whose handler parameter has the kind `callback <type>`."""
    callbacks, registrations = {}, []
    if events is None:
        return callbacks, registrations
    for e in events.events():
        source = e.source
        result = f"enum {e.result.name}" if e.result.kind == "enum" else e.result.kind
        callbacks[e.callback_type] = (result, [(p.name, _callback_kind(p)) for p in e.params])
        if source.kind == "unqueried":
            params = [("handle", "raw pointer")]   # a host object, neither queried nor referenced
        else:
            params = [("events" if source.kind == "events" else "handle", f"object {source.name}")]
        if source.keyed:
            params.append(("key", "text"))
        params.append(("callback", f"callback {e.callback_type}"))
        registrations.append((e.export, "void", params))
    return callbacks, registrations


def entries(cat, events=None):
    """Every export as (name, result kind, [(Python name, kind)]), in header order."""
    out = container_entries()
    out += [(op.export, type_kind(op.result), python_params(op)) for op in cat.ops()]
    out += event_entries(events)[1]
    return out


def _entry(result, params):
    return repr((result,) + tuple(f"{kind} {name}" for name, kind in params))


def emit(cat, events=None):
    callbacks, _ = event_entries(events)
    out = ['"""Every export of the library: result and parameter kinds, for tvapic.native.\n\n'
           "Generated from the catalogue by tools/tvgen; do not edit. Each entry is the\n"
           "result's kind followed by each parameter as '<kind> <name>'.\n"
           '"""\n\n'
           "FUNCTIONS = {\n"]
    out += [f"    {name!r}: {_entry(result, params)},\n" for name, result, params in entries(cat, events)]
    out.append("}\n\n# Event handler signatures: typedef -> (result kind, '<kind> <name>', ...).\nCALLBACKS = {\n")
    out += [f"    {name!r}: {_entry(result, params)},\n" for name, (result, params) in callbacks.items()]
    out.append("}\n")
    return "".join(out)
