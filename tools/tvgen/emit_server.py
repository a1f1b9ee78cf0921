"""Emits the API Server's handlers and name table, from the wire
signatures of the model (model/wire.py)."""

from .model import CatalogueError
from .model.wire import ACCESSOR, param_wire, result_wire, wire_signature


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
        args.append(f"c.Object({position})" if p.type.kind == "object" else f"c.{ACCESSOR[kind]}({position})")
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
    listed = ", ".join(f"WireKind::{ACCESSOR[k]}" for k in kinds)
    return (f"constexpr WireKind k{op.export}Kinds[] = {{{listed}}};\n"
            f"constexpr RemoteFunction k{op.export}{{k{op.export}Kinds, {len(kinds)}, &{op.export}_Remote}};\n")


def emit_handlers(model):
    names = [op for op in model.ops() if op.interface.root != "service"]
    remote = model.remotable()
    out = ["// Generated from the catalogue; do not edit.\n",
           '#include "server/call.h"\n#include "server/name_table.h"\n#include "tvAPIC.h"\n\n'
           "namespace tvapic::server::generated {\n\n"]
    for op in remote:
        out.append(handler(op) + function_entry(op) + "\n")
    out.append("}  // namespace tvapic::server::generated\n\nnamespace tvapic::server {\n\n"
               "// Every function of the API, remotable or not; the others have no remote function.\n"
               "const NameEntry kNameTable[] = {\n")
    remote_set = {op.export for op in remote}
    for op in names:
        f = f"&generated::k{op.export}" if op.export in remote_set else "nullptr"
        out.append(f'    {{"{op.export}", {f}}},\n')
    out.append(f"}};\nconst std::size_t kNameTableSize = {len(names)};\n"
               f"std::size_t RemotableCount() {{ return {len(remote)}; }}\n\n}}  // namespace tvapic::server\n")
    return "".join(out)


def emit_signature_table(model):
    """The wire signatures as data, for the load tool, the fuzzer's seeds and
    tests: one entry per remotable function, kinds separated by commas."""
    out = ["// Generated from the catalogue; do not edit.\n#pragma once\n\n#include <cstddef>\n\n",
           "namespace tvapic::server {\n\nstruct WireSignature {\n    const char* name;\n"
           "    const char* request;   // e.g. \"u64,string,i32 slot\"\n    const char* response;\n};\n\n",
           "inline constexpr WireSignature kWireSignatures[] = {\n"]
    for op in model.remotable():
        request, response = wire_signature(op)
        out.append(f'    {{"{op.export}", "{",".join(request)}", "{",".join(response)}"}},\n')
    out.append("};\n\n}  // namespace tvapic::server\n")
    return "".join(out)
