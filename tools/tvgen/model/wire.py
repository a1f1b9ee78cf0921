"""How a remotable function travels over the API Server's wire.

A remotable function's wire signature follows from its export's C signature
(the type table's wire columns, in the kinds of wire_kinds.py): handles and
64-bit integers travel as u64, int/bool/enum as i32, doubles as f64, text as
string, out-parameters as nullable slots; vector parameters do not travel
(an empty vector is passed) and neither do double, vector (other than
StringVector), structure or value results.
"""

from . import families
from .catalogue import CatalogueError
from .types import TYPES, fill


def param_wire(op, p):
    """The wire kind of a parameter, or None when it does not travel."""
    t = p.type
    facts = TYPES[t.kind]
    if p.mode == "out":
        if not facts.wire_slot:
            raise CatalogueError(f"{op.where}: {op.export}: an out {t} cannot travel as a slot")
        return facts.wire_slot
    if facts.stays_behind:
        return None
    if facts.wire is None:
        raise CatalogueError(f"{op.where}: {op.export}: a {t} parameter cannot travel")
    return facts.wire


def result_wire(op):
    """The wire kind of an operation's result, or None when it stays behind."""
    t = op.result
    if t.kind == "vector":
        return families.BY_NAME[t.name].wire_result
    return TYPES[t.kind].wire_result


def wire_signature(op):
    """(request kinds, response kinds) as the protocol reference lists them."""
    request = [wire for _, wire in carriers(op)]
    response = [wire for wire in request if wire.slot]
    if result_wire(op):
        response.append(result_wire(op))
    return request, response


def remotable(cat):
    """The remotable operations, in catalogue order."""
    return [op for op in cat.ops() if op.interface.remote]


def carriers(op):
    """[(parameter, or None for the object's handle; its wire kind)] in request order.

    C vectors do not travel; every other parameter does, in order, after the
    handle of a non-rooted interface.
    """
    carried = [] if op.interface.root else [(None, TYPES["object"].wire)]
    carried += [(p, param_wire(op, p)) for p in op.params]
    return [(p, wire) for p, wire in carried if wire]


# The values as docs/protocol.md and the API reference write them: each
# with its parameter's name and, where the kind alone does not say it, what
# it carries: the interface of a handle, `int64` for a 64-bit integer that is
# not a handle, `bool`, or an enumeration.
#
#     u64 handle: IDocuments, string fileName, i32 visible: bool

def meaning(t):
    """What a value carries beyond its wire kind ('' when the kind says it all)."""
    return fill(TYPES[t.kind].wire_note, t)


def _value(wire, name, t):
    text = f"{wire} {name}" if name else str(wire)
    return f"{text}: {meaning(t)}" if meaning(t) else text


def request(op):
    return [f"{wire} handle: {op.interface.name}" if p is None else _value(wire, p.name, p.type)
            for p, wire in carriers(op)]


def response(op):
    values = [_value(param_wire(op, p), p.name, p.type) for p in op.params if p.mode == "out"]
    if result_wire(op):
        values.append(_value(result_wire(op), "", op.result))
    return values
