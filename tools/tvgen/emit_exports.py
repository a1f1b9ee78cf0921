"""Emits the export wrappers: one thin call into the frame per operation,
a translation unit per chunk of a group (the model's chunks), and the table
of interfaces that checked mode names handles by."""

from .model.types import c_param, c_signature, host_param, host_value


def wrapper(op):
    """The frame spelled out: target, arguments left to right, the host call,
    the result, write-backs, and what checked mode learns of it on the way
    out. Locals are destroyed in reverse, so conversions are freed before the
    target's reference is given back."""
    result, params = c_signature(op)
    root = op.interface.root
    name = f'"{op.export}"'
    body = []
    if root == "application":
        body.append("tvapi::IApplication& self = tvapi::GetTavraApplication();")
        call_on = "self."
    elif root == "service":
        objects = [p.name for p in op.params if p.type.kind == "object" and not p.mode]
        if objects:
            body.append(f"if (!{objects[0]}) return NullArgument<{result}>({name});")
        body.append("tvapi::ITransferService& self = tvapi::GetTransferService();")
        call_on = "self."
    else:
        body.append(f"Target<tvapi::{op.interface.name}> self(handle);")
        body.append(f"if (!self) return Refused<tvapi::{op.interface.name}, {result}>({name}, handle);")
        call_on = "self->"
    for n, p in enumerate(op.params):
        body.append(f"Arg<{host_param(p, root)}, {c_param(p)}> a{n}({p.name});")
    call = f"{call_on}{op.name}({', '.join(f'a{n}.host()' for n in range(len(op.params)))})"
    finishes = [f"a{n}.finish();" for n, p in enumerate(op.params) if p.mode]
    host = host_value(op.result)
    if result == "void":
        body.append(f"{call};")
        body.extend(finishes)
        body.append(f"Returned({name});")
    elif finishes:
        body.append(f"{result} r = Result<{host}, {result}>::From({call});")
        body.extend(finishes)
        body.append(f"return Returned<{host}>({name}, r);")
    else:
        body.append(f"return Returned<{host}>({name}, Result<{host}, {result}>::From({call}));")
    lines = "".join(f"    {line}\n" for line in body)
    return f"TVAPIC_API {result} {op.export}({params}) {{\n{lines}}}\n"


def emit_chunk(model, group, interfaces):
    out = ["// Generated from the catalogue; do not edit.\n", '#include "frame/frame.h"\n']
    for g in model.group_dependencies(group):
        out.append(f'#include "tvapi/{g}.h"\n')
    out.append('#include "tvAPIC.h"\n\nusing namespace tvapic::frame;\n\nextern "C" {\n')
    for i in interfaces:
        out.append(f"\n// {i.name}\n")
        out.extend(wrapper(op) for op in i.ops)
    out.append("\n}  // extern \"C\"\n")
    return "".join(out)


def emit_interface_table(model):
    """Every catalogued interface by IID text, for checked mode's reports
    (src/check/interfaces.h)."""
    entries = "".join(f'    {{"{i.iid}", "{i.name}"}},\n' for i in model.interfaces.values() if i.iid)
    return ("// Generated from the catalogue; do not edit.\n#include \"check/interfaces.h\"\n\n"
            "namespace tvapic::check {\n\n"
            f"const InterfaceEntry kInterfaces[] = {{\n{entries}}};\n"
            "const std::size_t kInterfaceCount = sizeof kInterfaces / sizeof kInterfaces[0];\n\n"
            "}  // namespace tvapic::check\n")
