"""How each catalogue type appears in C (the exports) and in C++ (the host)."""

from . import families

_C_SCALAR = {"bool": "int", "int": "int", "int64": "uint64_t", "double": "double", "enum": "int"}
_C_RESULT_SCALAR = {"bool": "bool", "int": "int", "int64": "uint64_t", "double": "double", "enum": "int"}
_HOST_SCALAR = {"bool": "bool", "int": "int", "int64": "std::uint64_t", "double": "double"}


def c_param(p):
    t = p.type
    if p.mode == "out":
        return "void**" if t.kind == "object" else _C_SCALAR[t.kind] + "*"
    if t.kind in _C_SCALAR:
        return _C_SCALAR[t.kind]
    return {
        "text": "const tvWChar*",
        "object": "void*",
        "vector": f"{t.name}_t*",
        "value": f"{t.name}_t*",
    }[t.kind]


def c_result(t):
    if t.kind == "void":
        return "void"
    if t.kind in _C_RESULT_SCALAR:
        return _C_RESULT_SCALAR[t.kind]
    return {"text": "tvWChar*", "object": "void*", "vector": f"{t.name}_t*", "value": f"{t.name}_t*"}[t.kind]


def c_signature(op):
    """(result, parameter list) of an operation's export."""
    params = [] if op.interface.root else ["void* handle"]
    params += [f"{c_param(p)} {p.name}" for p in op.params]
    return c_result(op.result), ", ".join(params) or "void"


def host_element(t):
    fam = families.BY_NAME[t.name]
    return fam.host_element.format(I=t.element)


def host_value(t):
    """The host type of a value of type t (results and by-value uses)."""
    if t.kind in _HOST_SCALAR:
        return _HOST_SCALAR[t.kind]
    return {
        "void": "void",
        "enum": f"tvapi::{t.name}",
        "text": "tvapi::WString",
        "object": f"tvapi::SmartPtr<tvapi::{t.name}>",
        "vector": f"std::vector<{host_element(t)}>" if t.kind == "vector" else "",
        "value": families.VALUES.get(t.name, ""),
    }[t.kind]


def host_param(p, root=None):
    t = p.type
    if p.mode == "out":
        return host_value(t) + "*"
    if p.mode == "inout":
        return host_value(t) + "&"
    if t.kind == "object" and root == "service":
        # The transfer service receives the object itself, not one of its
        # interfaces: it is held for the call but never queried.
        return f"tvapi::{t.name}*"
    if t.kind in ("text", "object", "vector", "value"):
        return f"const {host_value(t)}&"
    return host_value(t)


def host_signature(op):
    params = ", ".join(f"{host_param(p, op.interface.root)} {p.name}" for p in op.params)
    return f"{host_value(op.result)} {op.name}({params})"
