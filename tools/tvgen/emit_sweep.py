"""Emits the export sweep's cases: one per operation, naming the kind of each
parameter so that tests/sweep can call the export three ways and check it."""

_KIND = {"bool": "Bool", "int": "Int", "int64": "Int64", "double": "Double", "enum": "Enum", "text": "Text"}
_OUT = {"bool": "OutBool", "int": "OutInt", "int64": "OutInt64", "double": "OutDouble", "enum": "OutEnum"}


def kind(p, pos):
    t = p.type
    if p.mode == "out":
        if t.kind == "object":
            return f'kind::OutObject(p, {pos}, "{t.name}")'
        return f"kind::{_OUT[t.kind]}(p, {pos})"
    if t.kind in _KIND:
        return f"kind::{_KIND[t.kind]}(p, {pos})"
    if t.kind == "object":
        return f'kind::Object(p, {pos}, "{t.name}")'
    if t.kind == "value":
        return f"kind::{t.name}(p, {pos})"
    template = "InOut" if p.mode == "inout" else "Vector"
    element = f', "{t.element}"' if t.element else ""
    return f"kind::{template}<{t.name}_t>(p, {pos}{element})"


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


def function_name(group, n):
    return f"AddCases_{group}_{n}"


def emit_chunk(cat, group, interfaces, n):
    out = ["// Generated from the catalogue; do not edit.\n",
           '#include "sweep/kinds.h"\n#include "tvAPIC.h"\n\nnamespace sweep {\n\n',
           f"void {function_name(group, n)}([[maybe_unused]] std::vector<Case>& cases) {{\n"]
    for i in interfaces:
        out.extend(case(op) for op in i.ops)
    out.append("}\n\n}  // namespace sweep\n")
    return "".join(out)


def emit_index(cat):
    from .emit_exports import chunks
    names = [function_name(g, n) for g in cat.groups for n, _ in enumerate(chunks(cat, g))]
    total = sum(1 for _ in cat.ops())
    out = ["// Generated from the catalogue; do not edit.\n", '#include "sweep/sweep.h"\n\nnamespace sweep {\n\n']
    out.extend(f"void {name}(std::vector<Case>&);\n" for name in names)
    out.append("\nstd::vector<Case> AllCases() {\n    std::vector<Case> cases;\n")
    out.extend(f"    {name}(cases);\n" for name in names)
    out.append(f"    return cases;\n}}\n\nstd::size_t ExportCount() {{ return {total}; }}\n\n}}  // namespace sweep\n")
    return "".join(out)
