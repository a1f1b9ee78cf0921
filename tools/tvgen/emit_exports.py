"""Emits the export wrappers: one thin call into the frame per operation,
a translation unit per chunk of a group (the model's chunks)."""

from .model.types import c_param, c_signature, host_param, host_value


def wrapper(op):
    """The frame spelled out: target, arguments left to right, the host call,
    the result, write-backs. Locals are destroyed in reverse, so conversions
    are freed before the target's reference is given back."""
    result, params = c_signature(op)
    root = op.interface.root
    body = []
    if root == "application":
        body.append("tvapi::IApplication& self = tvapi::GetTavraApplication();")
        call_on = "self."
    elif root == "service":
        objects = [p.name for p in op.params if p.type.kind == "object" and not p.mode]
        if objects:
            body.append(f"if (!{objects[0]}) return {{}};")
        body.append("tvapi::ITransferService& self = tvapi::GetTransferService();")
        call_on = "self."
    else:
        body.append(f"Target<tvapi::{op.interface.name}> self(handle);")
        body.append("if (!self) return {};" if result != "void" else "if (!self) return;")
        call_on = "self->"
    for n, p in enumerate(op.params):
        body.append(f"Arg<{host_param(p, root)}, {c_param(p)}> a{n}({p.name});")
    call = f"{call_on}{op.name}({', '.join(f'a{n}.host()' for n in range(len(op.params)))})"
    finishes = [f"a{n}.finish();" for n, p in enumerate(op.params) if p.mode]
    if result == "void":
        body.append(f"{call};")
        body.extend(finishes)
    elif finishes:
        body.append(f"{result} r = Result<{host_value(op.result)}, {result}>::From({call});")
        body.extend(finishes)
        body.append("return r;")
    else:
        body.append(f"return Result<{host_value(op.result)}, {result}>::From({call});")
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
