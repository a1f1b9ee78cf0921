"""Emits the Python client's function table: tvapic/_generated_remote.py.

For every remotable function: its signature as the wire carries it (the
parameters that travel with their names, wire kinds and catalogue kinds, so
that a handle is told from a 64-bit integer, and the result), and a method of
the RemoteAPI mixin that the client's Client class inherits. The kinds come
from the model's wire signatures, which the server's handlers are generated
with.
"""

from .bindings.python import RemoteParam, of, remote_params
from .model.types import TYPES
from .model.wire import result_wire
from .model.wire_kinds import STRING_VECTOR


def _result(op):
    """The result as it travels (a RemoteParam without a name), or None."""
    wire = result_wire(op)
    return RemoteParam("", wire, op.result.kind, of(op.result)) if wire else None


def _value_text(value):
    if value.kind == "object" and value.of == "IAPIObject":
        return f"handle ({value.wire})"
    return f"{TYPES[value.kind].python_doc.format(name=value.of)} ({value.wire})"


def docstring(op, params, dropped, result):
    lines = [f"{op.interface.name}.{op.name} on the server.", ""]
    if params:
        width = max(len(p[0]) for p in params)
        lines.append("Arguments:")
        for p in params:
            text = _value_text(p)
            if p.wire.slot:
                text += ": a value is sent and the function's comes back; None leaves it out"
            elif p.kind == "object":
                text += ", or None"
            lines.append(f"    {p.name.ljust(width)}  {text}")
    else:
        lines.append("No arguments.")
    for name, type_ in dropped:
        lines.append(f"Not sent: {name} ({type_}); the function receives an empty list.")
    lines.append("")
    slots = [p.name for p in params if p.wire.slot]
    if result:
        what = _value_text(result)
        if result.kind == "object":
            what += ", None for the null handle"
        elif result.wire == STRING_VECTOR:
            what += ", None for a null list"
    elif op.result.kind != "void":
        what = None
        lines.append(f"Its {op.result} result does not travel.")
    else:
        what = None
    if slots:
        tail = ", result" if result else ""
        lines.append(f"Returns ({', '.join(slots)}{tail}): each slot's value (None when left out)"
                     + (f", then the result: {what}." if result else "."))
    elif result:
        lines.append(f"Returns {what}.")
    else:
        lines.append("Returns None.")
    request = ", ".join(p.wire.name for p in params) or "nothing"
    response = ", ".join([p.wire.name for p in params if p.wire.slot] + ([result.wire.name] if result else []))
    lines.append(f"Wire: {request} -> {response or 'nothing'}.")
    return lines


def _stays(op, dropped, result):
    """What the function has that does not travel: ("fileNames StringVector", "result double")."""
    stays = tuple(f"{name} {type_}" for name, type_ in dropped)
    if result is None and op.result.kind != "void":
        stays += (f"result {op.result}",)
    return stays


def _tuple(items):
    items = list(items)
    return f"({items[0]},)" if len(items) == 1 else f"({', '.join(items)})"


def emit(model):
    ops = model.remotable()
    interfaces = []
    for op in ops:
        if op.interface.name not in interfaces:
            interfaces.append(op.interface.name)
    out = ['"""Every function the API Server serves: wire signatures and client methods.\n\n'
           "Generated from the catalogue by tools/tvgen; do not edit.\n"
           '"""\n\n'
           "from .wire import Param as _P, Result as _R, Signature as _S\n\n"
           f"INTERFACES = {tuple(interfaces)!r}\n\n"
           "SIGNATURES = {\n"]
    methods = []
    for op in ops:
        params, dropped = remote_params(op)
        result = _result(op)
        ps = _tuple(f"_P({p.name!r}, {p.wire.name!r}, {p.kind!r}{f', {p.of!r}' if p.of else ''})" for p in params)
        rs = "None" if result is None else f"_R({result.wire.name!r}, {result.kind!r}{f', {result.of!r}' if result.of else ''})"
        stays = _stays(op, dropped, result)
        extra = f", {stays!r}" if stays else ""
        out.append(f"    {op.export!r}: _S({op.export!r}, {ps}, {rs}{extra}),\n")
        # Slots after the last argument that must be given default to absent.
        last_required = max((n for n, p in enumerate(params) if not p.wire.slot), default=-1)
        args = [p.name if n <= last_required else f"{p.name}=None" for n, p in enumerate(params)]
        values = _tuple(p.name for p in params)
        doc = "\n".join(("        " + line) if line else "" for line in docstring(op, params, dropped, result))
        methods.append(f"    def {op.export}({', '.join(['self'] + args)}):\n"
                       f'        """{doc.lstrip()}\n        """\n'
                       f"        return self._invoke(SIGNATURES[{op.export!r}], {values})\n")
    out.append("}\n\n\n"
               "class RemoteAPI:\n"
               '    """One method per remotable function; the class using it supplies _invoke."""\n\n'
               "    __slots__ = ()\n\n")
    out.append("\n".join(methods))
    return "".join(out)
