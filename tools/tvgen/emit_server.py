"""Emits the API Server's handlers and name table, from the wire
signatures of the model (model/wire.py)."""

from .cpp import GENERATED
from .model.types import TYPES
from .model.wire import carriers, result_wire, wire_signature
from .model.wire_kinds import I32, STRING, STRING_VECTOR, U64

# How a handler keeps a result that travels (an object's handle is also recorded).
RETURN = {U64: "ReturnU64", I32: "ReturnI32", STRING: "ReturnText", STRING_VECTOR: "ReturnTexts"}


def handler(op):
    """The main thread's part of a remote call: the export called with the
    decoded arguments, its result kept for the response or given back."""
    travels = {p: (at, wire) for at, (p, wire) in enumerate(carriers(op)) if p is not None}
    lines = []
    args = [] if op.interface.root else ["c.Object(0)"]
    for n, p in enumerate(op.params):
        if p not in travels:
            lines.append(f"OwnVector<{p.type.name}_t> a{n};")
            args.append(f"a{n}.get()")
            continue
        at, wire = travels[p]
        args.append(f"c.Object({at})" if p.type.kind == "object" else f"c.{wire.accessor}({at})")
    call = f"{op.export}({', '.join(args)})"
    if op.result.kind == "object":
        call = f"c.ReturnObject({call})"
    elif result_wire(op):
        call = f"c.{RETURN[result_wire(op)]}({call})"
    elif TYPES[op.result.kind].ownership == "delete":
        call = f"Call::Discard({call})"   # what stays behind but would be the caller's is given back
    lines.append(f"{call};")
    body = "".join(f"    {line}\n" for line in lines)
    return f"void {op.export}_Remote([[maybe_unused]] Call& c) {{\n{body}}}\n"


def function_entry(op):
    """The decoder's description of a remotable function."""
    kinds = wire_signature(op)[0]
    if not kinds:
        return f"constexpr RemoteFunction k{op.export}{{nullptr, 0, &{op.export}_Remote}};\n"
    listed = ", ".join(f"WireKind::{k.accessor}" for k in kinds)
    return (f"constexpr WireKind k{op.export}Kinds[] = {{{listed}}};\n"
            f"constexpr RemoteFunction k{op.export}{{k{op.export}Kinds, {len(kinds)}, &{op.export}_Remote}};\n")


def emit(model):
    names = [op for op in model.ops() if op.interface.root != "service"]
    remote = model.remotable()
    out = [GENERATED,
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
