"""The function tables of docs/protocol.md: every remotable function's wire
signature, each value with its parameter's name and, where the kind alone
does not say it, what it carries: the interface of a handle, `int64` for a
64-bit integer that is not a handle, `bool`, or an enumeration.

    u64 handle: IDocuments, string fileName, i32 visible: bool

The wire kind is always the first word or two of a value, so a reader (or a
tool) that wants the kinds alone takes them from the front.
"""

import re

from .emit_bridge import param_wire, remotable, result_wire

KIND = re.compile(r"^(i32 slot|f64 slot|string vector|u64|f64|i32|string)\b")


def meaning(t):
    """What a value carries beyond its wire kind ('' when the kind says it all)."""
    if t.kind == "object":
        return t.name
    if t.kind in ("int64", "bool"):
        return t.kind
    if t.kind == "enum":
        return t.name
    return ""


def _value(kind, name, t):
    text = f"{kind} {name}" if name else kind
    return f"{text}: {meaning(t)}" if meaning(t) else text


def request(op):
    values = [] if op.interface.root else [f"u64 handle: {op.interface.name}"]
    for p in op.params:
        kind = param_wire(op, p)
        if kind:
            values.append(_value(kind, p.name, p.type))
    return values


def response(op):
    values = [_value(param_wire(op, p), p.name, p.type) for p in op.params if p.mode == "out"]
    if result_wire(op):
        values.append(_value(result_wire(op), "", op.result))
    return values


def kinds(cell):
    """The wire kinds of a table cell, in order ('nothing' is none)."""
    cell = cell.strip()
    if cell == "nothing":
        return []
    found = [KIND.match(v.strip()) for v in cell.split(",")]
    if not all(found):
        raise ValueError(f"a value without a wire kind in {cell!r}")
    return [m.group(1) for m in found]


def tables(cat):
    """The function tables, one per interface, in the bridge's order."""
    out = []
    current = None
    for op in remotable(cat):
        if op.interface is not current:
            current = op.interface
            out.append(f"\n### {current.name}\n\n| Function | Request after the name | Response |\n|---|---|---|\n")
        out.append(f"| `{op.export}` | {', '.join(request(op)) or 'nothing'} | "
                   f"{', '.join(response(op)) or 'nothing'} |\n")
    return "".join(out)
