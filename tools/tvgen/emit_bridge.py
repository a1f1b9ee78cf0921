"""Emits the remote call bridge's handlers and name table.

A remotable function's wire signature follows from its export's C signature:
handles and 64-bit integers travel as u64, int/bool/enum as i32, doubles as
f64, text as string, out-parameters as nullable slots; vector parameters do
not travel (an empty vector is passed) and neither do double, vector (other
than StringVector), structure or value results.
"""

from .catalogue import CatalogueError

_IN = {"bool": "i32", "int": "i32", "enum": "i32", "int64": "u64", "object": "u64", "double": "f64", "text": "string"}
_SLOT = {"bool": "i32 slot", "int": "i32 slot", "enum": "i32 slot", "double": "f64 slot"}
_RESULT = {"bool": "i32", "int": "i32", "enum": "i32", "int64": "u64", "object": "u64", "text": "string"}


def param_wire(op, p):
    """The wire kind of a parameter, or None when it does not travel."""
    t = p.type
    if p.mode == "out":
        if t.kind not in _SLOT:
            raise CatalogueError(f"{op.where}: {op.export}: an out {t} cannot travel as a slot")
        return _SLOT[t.kind]
    if t.kind == "vector":
        return None
    if t.kind not in _IN:
        raise CatalogueError(f"{op.where}: {op.export}: a {t} parameter cannot travel")
    return _IN[t.kind]


def result_wire(op):
    t = op.result
    if t.kind == "vector" and t.name == "StringVector":
        return "string vector"
    return _RESULT.get(t.kind)


def wire_signature(op):
    """(request kinds, response kinds) as the protocol reference lists them."""
    request = [] if op.interface.root else ["u64"]
    request += [k for k in (param_wire(op, p) for p in op.params) if k]
    response = [k for k in request if k.endswith("slot")]
    if result_wire(op):
        response.append(result_wire(op))
    return request, response


def remotable(cat):
    return [op for op in cat.ops() if op.interface.remote]


_KIND = {"u64": "U64", "i32": "I32", "f64": "F64", "string": "Text", "i32 slot": "SlotI32", "f64 slot": "SlotF64"}
_ARG = {"u64": "c.U64({n})", "i32": "c.I32({n})", "f64": "c.F64({n})", "string": "c.Text({n})",
        "i32 slot": "c.SlotI32({n})", "f64 slot": "c.SlotF64({n})"}


def handler(op):
    """The main thread's part of a remote call: the export called with the
    decoded arguments, its result kept for the response or given back."""
    lines = []
    args = []
    position = 0
    if not op.interface.root:
        args.append("c.Object(0)")
        position = 1
    for n, p in enumerate(op.params):
        kind = param_wire(op, p)
        if kind is None:
            lines.append(f"OwnVector<{p.type.name}_t> a{n};")
            args.append(f"a{n}.get()")
            continue
        args.append("c.Object({n})".format(n=position) if p.type.kind == "object" else _ARG[kind].format(n=position))
        position += 1
    call = f"{op.export}({', '.join(args)})"
    result = result_wire(op)
    if result == "u64":
        call = f"c.ReturnObject({call})" if op.result.kind == "object" else f"c.ReturnU64({call})"
    elif result == "i32":
        call = f"c.ReturnI32({call})"
    elif result == "string":
        call = f"c.ReturnText({call})"
    elif result == "string vector":
        call = f"c.ReturnTexts({call})"
    elif op.result.kind == "vector":
        call = f"Call::Discard({call})"
    elif op.result.kind not in ("void", "double"):
        raise CatalogueError(f"{op.where}: {op.export}: a {op.result} result has no way back from a remote call")
    lines.append(f"{call};")
    body = "".join(f"    {line}\n" for line in lines)
    return f"void {op.export}_Remote([[maybe_unused]] Call& c) {{\n{body}}}\n"


def function_entry(op):
    """The decoder's description of a remotable function."""
    kinds = wire_signature(op)[0]
    if not kinds:
        return f"constexpr RemoteFunction k{op.export}{{nullptr, 0, &{op.export}_Remote}};\n"
    listed = ", ".join(f"WireKind::{_KIND[k]}" for k in kinds)
    return (f"constexpr WireKind k{op.export}Kinds[] = {{{listed}}};\n"
            f"constexpr RemoteFunction k{op.export}{{k{op.export}Kinds, {len(kinds)}, &{op.export}_Remote}};\n")


def emit_handlers(cat):
    names = [op for op in cat.ops() if op.interface.root != "service"]
    remote = remotable(cat)
    out = ["// Generated from the catalogue; do not edit.\n",
           '#include "bridge/call.h"\n#include "bridge/name_table.h"\n#include "tvAPIC.h"\n\n'
           "namespace tvapic::bridge::generated {\n\n"]
    for op in remote:
        out.append(handler(op) + function_entry(op) + "\n")
    out.append("}  // namespace tvapic::bridge::generated\n\nnamespace tvapic::bridge {\n\n"
               "// Every function of the API, remotable or not; the others have no remote function.\n"
               "const NameEntry kNameTable[] = {\n")
    remote_set = {op.export for op in remote}
    for op in names:
        f = f"&generated::k{op.export}" if op.export in remote_set else "nullptr"
        out.append(f'    {{"{op.export}", {f}}},\n')
    out.append(f"}};\nconst std::size_t kNameTableSize = {len(names)};\n"
               f"std::size_t RemotableCount() {{ return {len(remote)}; }}\n\n}}  // namespace tvapic::bridge\n")
    return "".join(out)


def emit_signature_table(cat):
    """The wire signatures as data, for the load tool, the fuzzer's seeds and
    tests: one entry per remotable function, kinds separated by commas."""
    out = ["// Generated from the catalogue; do not edit.\n#pragma once\n\n#include <cstddef>\n\n",
           "namespace tvapic::bridge {\n\nstruct WireSignature {\n    const char* name;\n"
           "    const char* request;   // e.g. \"u64,string,i32 slot\"\n    const char* response;\n};\n\n",
           "inline constexpr WireSignature kWireSignatures[] = {\n"]
    for op in remotable(cat):
        request, response = wire_signature(op)
        out.append(f'    {{"{op.export}", "{",".join(request)}", "{",".join(response)}"}},\n')
    out.append("};\n\n}  // namespace tvapic::bridge\n")
    return "".join(out)
