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


_READ = {"i32": "ReadI32(s)", "u64": "ReadU64(s)", "f64": "ReadF64(s)", "string": "ReadText(s)",
         "i32 slot": "ReadSlotI32(s)", "f64 slot": "ReadSlotF64(s)"}


def handler(op):
    lines = []
    args = []
    own_vectors = []
    if not op.interface.root:
        lines.append("void* self = AsHandle(Admit(ReadU64(s)));")
        args.append("self")
    for n, p in enumerate(op.params):
        kind = param_wire(op, p)
        if kind is None:
            lines.append(f"{p.type.name}_t a{n}{{}};")
            args.append(f"&a{n}")
            own_vectors.append(f"a{n}")
            continue
        lines.append(f"auto a{n} = {_READ[kind]};")
        if kind == "string":
            args.append(f"a{n}.c_str()")
        elif kind.endswith("slot"):
            args.append(f"&a{n}.value")
        elif p.type.kind == "object":
            args.append(f"AsHandle(Admit(a{n}))")
        else:
            args.append(f"a{n}")
    call = f"{op.export}({', '.join(args)})"
    result = result_wire(op)
    if op.result.kind == "void":
        lines.append(f"{call};")
    else:
        lines.append(f"[[maybe_unused]] auto r = {call};")
    lines.extend(f"WriteSlot(s, a{n});" for n, p in enumerate(op.params) if p.mode == "out")
    if result == "u64":
        lines.append("WriteU64(s, Remember(AsWire(r)));" if op.result.kind == "object" else "WriteU64(s, r);")
    elif result == "i32":
        lines.append("WriteI32(s, static_cast<std::int32_t>(r));")
    elif result == "string":
        lines.append("WriteText(s, r);")
    elif result == "string vector":
        lines.append("WriteTextVector(s, r);")
    lines.extend(f"ReleaseOwn(&{v});" for v in own_vectors)
    body = "".join(f"    {line}\n" for line in lines)
    return f"void {op.export}_Remote([[maybe_unused]] ByteStream& s) {{\n{body}}}\n"


def emit_handlers(cat):
    names = [op for op in cat.ops() if op.interface.root != "service"]
    remote = remotable(cat)
    out = ["// Generated from the catalogue; do not edit.\n",
           '#include "bridge/handler_support.h"\n\nnamespace tvapic::bridge::generated {\n\n']
    out.extend(handler(op) + "\n" for op in remote)
    out.append("}  // namespace tvapic::bridge::generated\n\nnamespace tvapic::bridge {\n\n"
               "// Every function of the API, remotable or not; the others share the empty handler.\n"
               "const NameEntry kNameTable[] = {\n")
    remote_set = {op.export for op in remote}
    for op in names:
        h = f"generated::{op.export}_Remote" if op.export in remote_set else "EmptyHandler"
        out.append(f'    {{"{op.export}", {h}}},\n')
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
