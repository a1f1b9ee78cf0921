"""Emits the methods of TvApic.Remote.Client (dotnet/Remote.g.cs): one per
remotable function, from the wire signatures the bridge's generator hands in
as `wire_signature` (op -> (request kinds, response kinds))."""

from .csharp_map import HEADER, ident
from .wire_view import travelling


def camel(name):
    """IDocuments -> documents: the name of an object's handle parameter."""
    return name[1].lower() + name[2:]


_REQUEST = {"u64": "U64", "i32": "I32", "f64": "F64", "string": "Text", "i32 slot": "SlotI32",
            "f64 slot": "SlotF64"}


def remote_method(op, wire_signature):
    carried, response = travelling(op, wire_signature)
    own = {p.name for p, _ in carried if p}
    params, writes, reads = [], [], []
    for p, kind in carried:
        if p is None:
            name = camel(op.interface.name)
            while name in own:
                name += "_"
            cs, value = "ulong", name
        else:
            name = ident(p.name)
            if kind.endswith("slot"):
                cs = {"bool": "bool?", "double": "double?"}.get(p.type.kind, "int?")
            else:
                cs = {"u64": "ulong", "f64": "double", "string": "string"}.get(kind)
                cs = cs or ("bool" if p.type.kind == "bool" else "int")
            value = name
        if kind.endswith("slot"):
            params.append(f"ref {cs} {name}")
            reads.append(f"{name} = __a.{_REQUEST[kind]}({name});")
        else:
            params.append(f"{cs} {name}")
        writes.append(f"__q.{_REQUEST[kind]}({value});")
    result = op.result
    last = response[-1] if response and not response[-1].endswith("slot") else None
    rtype, read = "void", None
    if last == "u64":
        rtype, read = "ulong", "__a.U64()"
    elif last == "i32":
        rtype, read = ("bool", "__a.I32() != 0") if result.kind == "bool" else ("int", "__a.I32()")
    elif last == "string":
        rtype, read = "string", "__a.Text()"
    elif last == "string vector":
        rtype, read = "string[]", "__a.TextVector()"
    lines = [f"var __q = new Request(\"{op.export}\");"] + writes + ["var __a = Call(__q);"] + reads
    lines += [f"var __r = {read};", "__a.End();", "return __r;"] if read else ["__a.End();"]
    body = "".join(f"            {line}\n" for line in lines)
    return f"        public {rtype} {op.export}({', '.join(params)})\n        {{\n{body}        }}\n"


def emit(cat, wire_signature):
    out = [HEADER, "namespace TvApic.Remote\n{\n", "    public partial class Client\n    {\n"]
    out += [remote_method(op, wire_signature) for op in cat.ops() if op.interface.remote]
    out.append("    }\n}\n")
    return "".join(out)
