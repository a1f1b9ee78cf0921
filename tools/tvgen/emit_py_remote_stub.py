"""Emits _generated_remote.pyi: the type stubs of the remote client's methods, which
tvapic.Client inherits (bindings/stubs.py has the types)."""

from .bindings.python import python_type, remote_params
from .bindings.stubs import T, optional
from .model.wire import result_wire

REMOTE_HEAD = '''"""Type stubs of the remote client's function table. Generated from the catalogue by tools/tvgen; do not edit."""

import typing as _t

from .wire import Handle, Signature

INTERFACES: _t.Tuple[str, ...]
SIGNATURES: _t.Dict[str, Signature]


class RemoteAPI:
'''


def _wire_value(kind):
    """The remote client's type of a value of a catalogue kind: handles may be null."""
    if kind == "vector":   # a StringVector result, the one list that travels
        return f"{T}Optional[{T}List[str]]"
    return optional(python_type(kind)) if kind == "object" else python_type(kind)


def emit(model):
    out = [REMOTE_HEAD]
    for op in model.remotable():
        params, _ = remote_params(op)
        last_required = max((n for n, p in enumerate(params) if not p.wire.slot), default=-1)
        args = ["self"]
        slots = []
        for n, p in enumerate(params):
            if p.wire.slot:
                slots.append(optional(_wire_value(p.kind)))
                args.append(f"{p.name}: {optional(_wire_value(p.kind))}" + (" = ..." if n > last_required else ""))
            else:
                args.append(f"{p.name}: {_wire_value(p.kind)}")
        result = _wire_value(op.result.kind) if result_wire(op) else None
        if slots:
            answer = f"{T}Tuple[{', '.join(slots + ([result] if result else []))}]"
        else:
            answer = result or "None"
        out.append(f"    def {op.export}({', '.join(args)}) -> {answer}: ...\n")
    return "".join(out)
