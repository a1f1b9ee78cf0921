"""Counts of each call shape, per group and over the whole catalogue, to set
beside the host API's own figures (see catalogue/README.md)."""

from collections import Counter


def shape_counts(ops):
    c = Counter()
    for op in ops:
        c["operations"] += 1
        params = op.params
        if any(p.type.kind == "text" and not p.mode for p in params):
            c["text argument"] += 1
        if op.result.kind == "text":
            c["text result"] += 1
        if op.interface.root == "application":
            c["application-rooted"] += 1
        if op.interface.root == "service":
            c["service-rooted"] += 1
        if op.result.kind == "object":
            c["object result"] += 1
        if any(p.type.kind == "object" and not p.mode for p in params):
            c["object argument"] += 1
        if any(p.mode == "out" for p in params):
            c["out-parameters"] += 1
        if op.result.kind == "value":
            c["single value result"] += 1
        for fam in sorted({p.type.name for p in params if p.type.kind == "vector" and not p.mode}):
            c[f"{fam} argument"] += 1
        for fam in sorted({p.type.name for p in params if p.mode == "inout"}):
            c[f"{fam} refilled"] += 1
        for elem in sorted({p.type.element for p in params if p.type.name == "ObjectReferenceVector" and not p.mode}):
            c[f"ObjectReferenceVector<{elem}> argument"] += 1
        if op.result.kind == "vector":
            c[f"{op.result.name} result"] += 1
    return c


def table(cat):
    groups = [g for g in cat.groups if any(True for _ in cat.ops(g))]
    per_group = {g: shape_counts(cat.ops(g)) for g in groups}
    total = shape_counts(cat.ops())
    rows = sorted(total, key=lambda k: (k != "operations", k))
    lines = ["| shape | " + " | ".join(groups) + " | all |", "|---|" + "---:|" * (len(groups) + 1)]
    for key in rows:
        lines.append(f"| {key} | " + " | ".join(str(per_group[g][key]) for g in groups) + f" | {total[key]} |")
    return "\n".join(lines)
