"""A remotable function's wire signature, parameter by parameter.

The bridge's generator owns the wire kinds; it hands them over as one
function, op -> (request kinds, response kinds). This view pairs each kind
with the parameter it carries, for generators of clients in other languages.
"""


def travelling(op, wire_signature):
    """([(parameter or None for the object's handle, wire kind)], response kinds).

    C vectors do not travel; every other parameter does, in order, after the
    handle of a non-rooted interface.
    """
    request, response = wire_signature(op)
    carriers = ([] if op.interface.root else [None]) + [p for p in op.params if p.type.kind != "vector"]
    if len(carriers) != len(request):
        raise ValueError(f"{op.export}: {len(request)} wire kinds for {len(carriers)} travelling parameters")
    return list(zip(carriers, request)), response
