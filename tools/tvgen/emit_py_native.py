"""Emits the in-process binding's function table: tvapic/_generated_exports.py.

One entry per export of the library, in header order: the result's kind and
each parameter's kind and Python name (bindings/python.py lists the kinds).
tvapic.native turns an entry into a ctypes function with its argument and
result conversions when the function is first used, so importing the table
costs no more than reading it.
"""

from .bindings.python import callbacks, entries


def _entry(result, params):
    return repr((result,) + tuple(f"{kind} {name}" for name, kind in params))


def emit(model):
    out = ['"""Every export of the library: result and parameter kinds, for tvapic.native.\n\n'
           "Generated from the catalogue by tools/tvgen; do not edit. Each entry is the\n"
           "result's kind followed by each parameter as '<kind> <name>'.\n"
           '"""\n\n'
           "FUNCTIONS = {\n"]
    out += [f"    {name!r}: {_entry(result, params)},\n" for name, result, params in entries(model)]
    out.append("}\n\n# Event handler signatures: typedef -> (result kind, '<kind> <name>', ...).\nCALLBACKS = {\n")
    out += [f"    {name!r}: {_entry(result, params)},\n" for name, (result, params) in callbacks(model).items()]
    out.append("}\n")
    return "".join(out)
