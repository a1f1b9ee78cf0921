"""Counts of each call shape over the whole export list (interface
operations, event registrations, vector, value and handle functions), per
group, and beside them the host API's own figures (catalogue/README.md)."""

from collections import Counter

from .model import families

FOUR_BYTE = {"Int32Vector", "EnumVector", "ColorVector", "Uint32Vector"}
EIGHT_BYTE = {"DoubleVector", "NumericIdVector"}

# The host's figures for its whole export list: (figure, host, our count's key).
# Where the host groups vector families by element width, so do we.
OBJECT_VECTOR_ELEMENTS = ("IDrawingObject", "IFace", "IFeature", "ITavraAPIObject", "IMarkNode", "IModelObject",
                          "IPart", "IPropertyTreeNode", "ITextFont", "IView")
HOST_FIGURES = [
    ("functions with a text argument", "~870", "text argument"),
    ("functions returning text", "~290", "text result"),
    ("application-rooted", "48", "application-rooted"),
    ("service-rooted", "8", "service-rooted"),
    ("taking a `BoolVector`", "12", "BoolVector argument"),
    ("taking a 4-byte vector (`Int32Vector`, `EnumVector`, `ColorVector`, `Uint32Vector`)", "59",
     "4-byte vector argument"),
    ("taking a `FloatVector`", "4", "FloatVector argument"),
    ("taking a `DoubleVector`", "81", "DoubleVector argument"),
    ("taking a `NumericIdVector`", "3", "NumericIdVector argument"),
    ("taking a `Uint8Vector`", "3", "Uint8Vector argument"),
    ("taking a `StringVector`", "21", "StringVector argument"),
    ("taking an object vector", "199", "ObjectReferenceVector argument"),
    ("element interfaces of object-vector arguments", "10", "object-vector argument interfaces"),
    *[(f"taking an object vector of `{i}`", "119" if i == "IModelObject" else "–",
       f"ObjectReferenceVector<{i}> argument") for i in OBJECT_VECTOR_ELEMENTS],
    ("taking a vector of object vectors", "1", "ObjectReferenceVectorVector argument"),
    ("taking a `PropertyValueVector`", "1", "PropertyValueVector argument"),
    ("taking an `AttributeValueVector`", "1", "AttributeValueVector argument"),
    ("taking a `StorageValueVector`", "1", "StorageValueVector argument"),
    ("returning a new object vector", "200", "ObjectReferenceVector result"),
    ("refilling an object vector", "11", "ObjectReferenceVector refilled"),
    ("returning a new 8-byte vector (`DoubleVector`, `NumericIdVector`)", "46", "8-byte vector result"),
    ("refilling an 8-byte vector", "32", "8-byte vector refilled"),
    ("returning a new 4-byte vector", "18", "4-byte vector result"),
    ("refilling a 4-byte vector", "7", "4-byte vector refilled"),
    ("returning a new `Uint8Vector`", "3", "Uint8Vector result"),
    ("returning a new `BoolVector`", "6", "BoolVector result"),
    ("refilling a `BoolVector`", "5", "BoolVector refilled"),
    ("returning a new `StringVector`", "21", "StringVector result"),
    ("refilling a `StringVector`", "6", "StringVector refilled"),
    ("returning a new `PropertyValueVector`", "1", "PropertyValueVector result"),
    ("single property, attribute or storage value results", "12", "single value result"),
]


def _widths(names):
    """The element-width classes the host's converters group families by."""
    return {w for w, fams in (("4-byte vector", FOUR_BYTE), ("8-byte vector", EIGHT_BYTE)) if names & fams}


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
        taken = {p.type.name for p in params if p.type.kind == "vector" and not p.mode}
        refilled = {p.type.name for p in params if p.mode == "inout"}
        returned = {op.result.name} if op.result.kind == "vector" else set()
        for names, how in ((taken, "argument"), (refilled, "refilled"), (returned, "result")):
            for key in sorted(names | _widths(names)):
                c[f"{key} {how}"] += 1
        for elem in sorted({p.type.element for p in params if p.type.name == "ObjectReferenceVector" and not p.mode}):
            c[f"ObjectReferenceVector<{elem}> argument"] += 1
    return c


def registration_counts(model):
    """Each registration takes its object, the key when keyed, and a callback."""
    c = Counter()
    for e in model.events():
        c["operations"] += 1
        if e.source.keyed:
            c["text argument"] += 1
    return c


def container_counts():
    """The vector, value and handle functions, by their C prototypes."""
    c = Counter()
    for proto in families.HANDLE_BASE + families.container_prototypes():
        c["operations"] += 1
        if any(p.c_type == "const tvWChar*" for p in proto.params):
            c["text argument"] += 1
        if proto.result.c_type == "tvWChar*":
            c["text result"] += 1
    return c


def columns(model):
    """(title, counts) per group of the export list, then the whole list."""
    cols = [(g, shape_counts(model.ops(g))) for g in model.groups if any(True for _ in model.ops(g))]
    cols += [("registrations", registration_counts(model)), ("vectors, values, handles", container_counts())]
    total = sum((c for _, c in cols), Counter())
    # A converter per element interface, whichever kind of object vector it fills.
    elements = {p.type.element for op in model.ops() for p in op.params if p.type.element and not p.mode}
    total["object-vector argument interfaces"] = len(elements)
    return cols + [("all", total)]


def table(model):
    cols = columns(model)
    rows = sorted({k for _, c in cols[:-1] for k in c}, key=lambda k: (k != "operations", k))
    lines = ["| shape | " + " | ".join(t for t, _ in cols) + " |", "|---|" + "---:|" * len(cols)]
    for key in rows:
        lines.append(f"| {key} | " + " | ".join(str(c[key]) for _, c in cols) + " |")
    return "\n".join(lines)


def calibration_rows(model):
    """(figure, host, ours) for every figure the host gives."""
    total = columns(model)[-1][1]
    return [(figure, host, str(total[key])) for figure, host, key in HOST_FIGURES]


def calibration(model):
    lines = ["| Figure | Host | Catalogue |", "|---|---:|---:|"]
    lines += [f"| {f} | {h} | {o} |" for f, h, o in calibration_rows(model)]
    return "\n".join(lines)
