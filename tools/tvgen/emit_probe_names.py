"""Emits probe/probe_faces.h: the name each probe face records its calls
under, by host interface."""

from .cpp import GENERATED


def emit(model):
    out = [GENERATED, "#pragma once\n\n",
           '#include "probe/probe.h"\n#include "tvapi/declarations.h"\n\nnamespace tvprobe {\n\n']
    for i in model.interfaces.values():
        out.append(f'template <> struct FaceName<tvapi::{i.name}> {{ static constexpr const char* value = "{i.name}"; }};\n')
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)
