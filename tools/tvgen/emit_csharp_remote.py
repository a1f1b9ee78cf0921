"""Emits the methods of TvApic.Remote.Client (dotnet/Remote.g.cs): one per
remotable function, from the wire signatures the API Server's handlers are
generated with."""

from .model.csharp import HEADER, csharp_type, ident
from .model.wire import ACCESSOR, travelling


def camel(name):
    """IDocuments -> documents: the name of an object's handle parameter."""
    return name[1].lower() + name[2:]


def remote_method(op):
    carried, response = travelling(op)
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
            # A handle is a number here; a slot may be left out.
            cs = "ulong" if p.type.kind == "object" else csharp_type(p.type.kind)
            if kind.endswith("slot"):
                cs += "?"
            value = name
        if kind.endswith("slot"):
            params.append(f"ref {cs} {name}")
            reads.append(f"{name} = __a.{ACCESSOR[kind]}({name});")
        else:
            params.append(f"{cs} {name}")
        writes.append(f"__q.{ACCESSOR[kind]}({value});")
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


def emit(model):
    out = [HEADER, "namespace TvApic.Remote\n{\n", "    public partial class Client\n    {\n"]
    out += [remote_method(op) for op in model.remotable()]
    out.append("    }\n}\n")
    return "".join(out)
