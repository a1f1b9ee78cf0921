"""Emits the export sweep's cases of one part of a group (sweep/<group>_<n>.cpp):
one per operation, naming the kind of each parameter so that tests/sweep can
call the export three ways and check it."""

from .cpp import GENERATED, sweep_part
from .model.types import TYPES, fill


def kind(p, pos):
    """The parameter's kind in tests/sweep/kinds.h: the type table's sweep
    kind (an object's names its interface), or a vector's template."""
    t = p.type
    if t.kind == "vector":
        template = "InOut" if p.mode == "inout" else "Vector"
        element = f', "{t.element}"' if t.element else ""
        return f"kind::{template}<{t.name}_t>(p, {pos}{element})"
    out = "Out" if p.mode == "out" else ""
    interface = f', "{t.name}"' if t.kind == "object" else ""
    return f"kind::{out}{fill(TYPES[t.kind].sweep, t)}(p, {pos}{interface})"


def answering_interfaces(op):
    """Interfaces the answering object needs: results, out-objects, list elements."""
    names = []
    for t, mode in [(op.result, "")] + [(p.type, p.mode) for p in op.params]:
        if t.kind == "object" and (t is op.result or mode == "out"):
            names.append(t.name)
        elif t.kind == "vector" and t.element and (t is op.result or mode == "inout"):
            names.append(t.element)
    return sorted(set(names))


def case(op):
    rooted = "true" if op.interface.root else "false"
    answering = ",".join(answering_interfaces(op))
    result_interface = op.result.name if op.result.kind == "object" else ""
    check = "CheckRooted" if op.interface.root else "Check"
    args = "".join(f", {kind(p, n)}" for n, p in enumerate(op.params))
    return (f'    cases.push_back({{"{op.interface.name}", "{op.name}", {rooted}, "{answering}", "{result_interface}",\n'
            f"        [](Pass& p) {{ p.{check}(&{op.export}{args}); }}}});\n")


def emit(model, group, part, n):
    out = [GENERATED,
           '#include "sweep/kinds.h"\n#include "tvAPIC.h"\n\nnamespace sweep {\n\n',
           f"void {sweep_part(group, n)}([[maybe_unused]] std::vector<Case>& cases) {{\n"]
    for i in part:
        out.extend(case(op) for op in i.ops)
    out.append("}\n\n}  // namespace sweep\n")
    return "".join(out)
