"""Emits the export wrappers: one thin call into the frame per operation.

A group is split into several translation units of about CHUNK operations,
so that a large group compiles on every core and an edit recompiles one part.
"""

from .ctypes_map import c_signature
from .emit_tvapi import group_dependencies

CHUNK = 700

ENTRY = {None: "Method", "application": "ApplicationMethod", "service": "ServiceMethod"}


def chunks(cat, group):
    """Lists of interfaces, each list one translation unit."""
    parts, current, size = [], [], 0
    for i in cat.interfaces.values():
        if i.group != group:
            continue
        if current and size + len(i.ops) > CHUNK:
            parts.append(current)
            current, size = [], 0
        current.append(i)
        size += len(i.ops)
    if current:
        parts.append(current)
    return parts


def wrapper(op):
    result, params = c_signature(op)
    args = [] if op.interface.root else ["handle"]
    args += [p.name for p in op.params]
    entry = ENTRY[op.interface.root]
    member = f"&tvapi::{op.interface.name}::{op.name}"
    ret = "" if result == "void" else "return "
    return (f"TVAPIC_API {result} {op.export}({params}) {{\n"
            f"    {ret}{entry}<{member}, {result}>::Call({', '.join(args)});\n}}\n")


def emit_chunk(cat, group, interfaces):
    out = ["// Generated from the catalogue; do not edit.\n", '#include "frame/method.h"\n']
    for g in group_dependencies(cat, group):
        out.append(f'#include "tvapi/{g}.h"\n')
    out.append('#include "tvAPIC.h"\n\nusing namespace tvapic::frame;\n\nextern "C" {\n')
    for i in interfaces:
        out.append(f"\n// {i.name}\n")
        out.extend(wrapper(op) for op in i.ops)
    out.append("\n}  // extern \"C\"\n")
    return "".join(out)
