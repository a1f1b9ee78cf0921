"""Emits the object layer's interface table: tvapic/_generated_classes.py.

For every interface: its group, IID text (None for rooted ones), root,
whether the API Server serves it, and its methods in host order, each the
export it calls. tvapic.objects makes one class per interface from it; the
methods' parameters and results come from the binding's table (_generated_exports.py),
so the two cannot disagree.
"""

from .bindings.python import methods


def emit(model):
    out = ['"""Every interface of the host API, for tvapic.objects: group, IID text, root,\n'
           "whether the API Server serves it, and its methods with the exports they call.\n\n"
           "Generated from the catalogue by tools/tvgen; do not edit.\n"
           '"""\n\n'
           "INTERFACES = {\n"]
    for i in model.interfaces.values():
        names = tuple(name for name, export in methods(model, i))
        # Every method calls <Interface>_<method>; only the names are listed.
        assert all(export == f"{i.name}_{name}" for name, export in methods(model, i))
        out.append(f"    {i.name!r}: ({i.group!r}, {i.iid!r}, {i.root!r}, {i.remote!r}, {names!r}),\n")
    out.append("}\n")
    return "".join(out)
