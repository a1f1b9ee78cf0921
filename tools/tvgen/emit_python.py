"""Emits the Python client's function table: tvapic/_remote.py.

For every remotable function: its signature as the wire carries it (the
parameters that travel with their names, wire kinds and catalogue kinds, so
that a handle is told from a 64-bit integer, and the result), and a method of
the RemoteAPI mixin that the client's Client class inherits. The kinds come
from emit_bridge, which the server's handlers are generated with.
"""

import keyword

from .emit_bridge import param_wire, remotable, result_wire

# Catalogue kinds the client distinguishes; anything else does not travel.
_TRAVELLING = {"object", "int64", "bool", "int", "enum", "double", "text"}


def _of(t):
    return t.name if t.kind in ("object", "enum") else ""


def _identifier(name, taken):
    name = name + "_" if keyword.iskeyword(name) or name == "self" else name
    while name in taken:
        name += "_"
    taken.add(name)
    return name


def handle_name(interface):
    """The name of the object's handle parameter: IDocuments -> documents."""
    base = interface.name[1:]
    return base[0].lower() + base[1:]


def travelling(op):
    """[(python name, wire kind, catalogue kind, of)] in request order, and the
    parameters that do not travel, as (name, type text)."""
    taken = set()
    params, dropped = [], []
    if not op.interface.root:
        params.append((None, "u64", "object", op.interface.name))
    for p in op.params:
        kind = param_wire(op, p)
        if kind is None:
            dropped.append((p.name, str(p.type)))
            continue
        assert p.type.kind in _TRAVELLING, p.type
        params.append((p.name, kind, p.type.kind, _of(p.type)))
    named = []
    own = {p[0] for p in params if p[0]}
    for name, kind, type_, of in params:
        if name is None:
            # The handle's name must not clash with the function's own parameters.
            name = handle_name(op.interface)
            while name in own:
                name += "_"
        named.append((_identifier(name, taken), kind, type_, of))
    return named, dropped


def _result(op):
    kind = result_wire(op)
    if not kind:
        return None
    t = op.result
    return kind, t.kind, _of(t)


def _value_text(type_, of, kind):
    text = {"object": f"handle of {of}", "int64": "64-bit integer", "bool": "bool", "int": "int",
            "enum": f"{of} value", "double": "float", "text": "str", "vector": "list of str"}[type_]
    if type_ == "object" and of == "IAPIObject":
        text = "handle"
    return f"{text} ({kind})"


def docstring(op, params, dropped, result):
    lines = [f"{op.interface.name}.{op.name} on the server.", ""]
    if params:
        width = max(len(p[0]) for p in params)
        lines.append("Arguments:")
        for name, kind, type_, of in params:
            text = _value_text(type_, of, kind)
            if kind.endswith("slot"):
                text += ": a value is sent and the function's comes back; None leaves it out"
            elif type_ == "object":
                text += ", or None"
            lines.append(f"    {name.ljust(width)}  {text}")
    else:
        lines.append("No arguments.")
    for name, type_ in dropped:
        lines.append(f"Not sent: {name} ({type_}); the function receives an empty list.")
    lines.append("")
    slots = [p[0] for p in params if p[1].endswith("slot")]
    if result:
        what = _value_text(result[1], result[2], result[0])
        if result[1] == "object":
            what += ", None for the null handle"
        elif result[0] == "string vector":
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
    request = ", ".join(p[1] for p in params) or "nothing"
    response = ", ".join([p[1] for p in params if p[1].endswith("slot")] + ([result[0]] if result else []))
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


def emit(cat):
    ops = remotable(cat)
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
        params, dropped = travelling(op)
        result = _result(op)
        ps = _tuple(f"_P({n!r}, {k!r}, {t!r}{f', {of!r}' if of else ''})" for n, k, t, of in params)
        rs = "None" if result is None else f"_R({result[0]!r}, {result[1]!r}{f', {result[2]!r}' if result[2] else ''})"
        stays = _stays(op, dropped, result)
        extra = f", {stays!r}" if stays else ""
        out.append(f"    {op.export!r}: _S({op.export!r}, {ps}, {rs}{extra}),\n")
        # Slots after the last argument that must be given default to absent.
        last_required = max((n for n, p in enumerate(params) if not p[1].endswith("slot")), default=-1)
        args = [p[0] if n <= last_required else f"{p[0]}=None" for n, p in enumerate(params)]
        values = _tuple(p[0] for p in params)
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
