"""Emits exports.map, the ELF version script: the catalogue's exports and
nothing else, so that no template instantiation of a library the code uses
leaks out."""


def emit(model):
    names = "".join(f"    {name};\n" for name in model.export_names())
    return f"{{\n  global:\n{names}  local: *;\n}};\n"
