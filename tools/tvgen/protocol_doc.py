"""The function tables of docs/protocol.md: every remotable function's wire
signature, each value with its parameter's name and what it carries (the
model's wire.request and wire.response):

    u64 handle: IDocuments, string fileName, i32 visible: bool

The wire kind is always the first word or two of a value, so a reader (or a
tool) that wants the kinds alone takes them from the front.
"""

import re

from .model.wire import request, response

KIND = re.compile(r"^(i32 slot|f64 slot|string vector|u64|f64|i32|string)\b")


def kinds(cell):
    """The wire kinds of a table cell, in order ('nothing' is none)."""
    cell = cell.strip()
    if cell == "nothing":
        return []
    found = [KIND.match(v.strip()) for v in cell.split(",")]
    if not all(found):
        raise ValueError(f"a value without a wire kind in {cell!r}")
    return [m.group(1) for m in found]


def tables(model):
    """The function tables, one per interface, in the API Server's order."""
    out = []
    current = None
    for op in model.remotable():
        if op.interface is not current:
            current = op.interface
            out.append(f"\n### {current.name}\n\n| Function | Request after the name | Response |\n|---|---|---|\n")
        out.append(f"| `{op.export}` | {', '.join(request(op)) or 'nothing'} | "
                   f"{', '.join(response(op)) or 'nothing'} |\n")
    return "".join(out)
