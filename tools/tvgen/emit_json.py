"""Emits tvAPIC.catalogue.json: the whole API as data, for generators of
bindings in any language (docs/catalogue-json.md gives the schema).

Everything here is read from the model; the wire signatures are those the
API Server's handlers are generated with, so that the data says exactly what the
server reads and writes.
"""

import json

from .model import families
from .model.types import (TYPES, c_param, c_result, c_signature, callback_c_param, callback_c_params,
                          callback_c_result, registration_params)
from .model.wire import carriers, wire_signature

FORMAT = "tvAPIC catalogue"
VERSION = 1


def type_data(t):
    """A catalogue type as {"kind", and "interface" | "enum" | "family" (+ "element") | "value"}."""
    data = {"kind": t.kind}
    if t.kind == "object":
        data["interface"] = t.name
    elif t.kind == "enum":
        data["enum"] = t.name
    elif t.kind == "vector":
        data["family"] = t.name
        if t.element:
            data["element"] = t.element
    elif t.kind == "value":
        data["value"] = t.name
    return data


def operation_data(op):
    result, params = c_signature(op)
    data = {
        "name": op.name,
        "export": op.export,
        "c_signature": f"{result} {op.export}({params})",
        "result": dict(type_data(op.result), c_type=c_result(op.result), ownership=TYPES[op.result.kind].ownership),
        "params": [dict(type_data(p.type), name=p.name, mode=p.mode or "in", c_type=c_param(p)) for p in op.params],
        "remote": op.interface.remote,
        "wire": None,
    }
    if op.interface.remote:
        data["wire"] = {"request": [{"param": p.name if p else "handle", "kind": wire.name} for p, wire in carriers(op)],
                        "response": [wire.name for wire in wire_signature(op)[1]]}
    return data


def callback_param_data(p):
    return dict(type_data(p.type), name=p.name, inout=p.inout, c_type=callback_c_param(p))


def event_data(e):
    params = callback_c_params(e)
    return {
        "name": e.name,
        "export": e.export,
        "c_signature": f"void {e.export}({registration_params(e)})",
        "callback": {
            "type": e.callback_type,
            "c_signature": f"typedef {callback_c_result(e.result)} (*{e.callback_type})({params})",
            "result": dict(type_data(e.result), c_type=callback_c_result(e.result)),
            "params": [callback_param_data(p) for p in e.params],
        },
    }


def base_functions():
    """The handle base, vector and value functions: (export, C signature)."""
    return [(proto.name, proto.declaration) for proto in families.HANDLE_BASE + families.container_prototypes()]


def describe(model):
    """The catalogue as plain data (what the JSON file holds)."""
    return {
        "format": FORMAT,
        "version": VERSION,
        "functions": [{"export": name, "c_signature": sig} for name, sig in base_functions()],
        "families": [{"name": f.name, "element_c_type": f.element, "members": list(f.members)}
                     for f in families.FAMILIES],
        "interfaces": [{"name": i.name, "iid": i.iid, "group": i.group, "root": i.root, "remote": i.remote,
                        "operations": [operation_data(op) for op in i.ops]}
                       for i in model.interfaces.values()],
        "event_sources": [{"name": s.name, "kind": s.kind, "keyed": s.keyed, "events": [event_data(e) for e in s.events]}
                          for s in model.sources.values()],
    }


def _layout(value, indent=""):
    """JSON with one line per function, operation and event: readable and
    diffable, and quick to write (the library's own encoder does each line)."""
    inner = indent + " "
    if isinstance(value, list) and any(isinstance(v, dict) for v in value):
        return "[\n" + ",\n".join(inner + _layout(v, inner) for v in value) + "\n" + indent + "]"
    if isinstance(value, dict) and any(isinstance(v, list) and v and isinstance(v[0], dict) for v in value.values()):
        items = (f"{inner}{json.dumps(k)}: {_layout(v, inner)}" for k, v in value.items())
        return "{\n" + ",\n".join(items) + "\n" + indent + "}"
    return json.dumps(value, ensure_ascii=False)


def emit(model):
    return _layout(describe(model)) + "\n"
