"""Emits the methods of TvApic.Remote.Client (dotnet/Remote.g.cs): one per
remotable function, from the wire signatures the API Server's handlers are
generated with."""

from .bindings.csharp import HEADER, csharp_type, ident
from .bindings.names import object_param
from .model.wire import carriers, result_wire
from .model.wire_kinds import I32, STRING, STRING_VECTOR, U64

# The C# type of a result, by how it travels.
RESULT_TYPE = {U64: "ulong", I32: "int", STRING: "string", STRING_VECTOR: "string[]"}


def remote_method(op):
    carried = carriers(op)
    own = {p.name for p, _ in carried if p}
    params, writes, reads = [], [], []
    for p, wire in carried:
        if p is None:
            name = object_param(op.interface, own)
            cs = "ulong"
        else:
            name = ident(p.name)
            # A handle is a number here; a slot may be left out.
            cs = "ulong" if p.type.kind == "object" else csharp_type(p.type.kind)
            if wire.slot:
                cs += "?"
        if wire.slot:
            params.append(f"ref {cs} {name}")
            reads.append(f"{name} = __a.{wire.accessor}({name});")
        else:
            params.append(f"{cs} {name}")
        writes.append(f"__q.{wire.accessor}({name});")
    rtype, read = "void", None
    wire = result_wire(op)
    if wire:
        rtype = "bool" if op.result.kind == "bool" else RESULT_TYPE[wire]
        read = "__a.I32() != 0" if op.result.kind == "bool" else f"__a.{wire.accessor}()"
    lines = [f"var __q = new Request(\"{op.export}\");"] + writes + ["var __a = Call(__q);"] + reads
    lines += [f"var __r = {read};", "__a.End();", "return __r;"] if read else ["__a.End();"]
    body = "".join(f"            {line}\n" for line in lines)
    return f"        public {rtype} {op.export}({', '.join(params)})\n        {{\n{body}        }}\n"


def emit(model):
    out = [HEADER, "namespace TvApic.Remote\n{\n", "    public partial class Client\n    {\n"]
    out += [remote_method(op) for op in model.remotable()]
    out.append("    }\n}\n")
    return "".join(out)
