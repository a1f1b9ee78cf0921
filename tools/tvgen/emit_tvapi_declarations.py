"""Emits include/tvapi/declarations.h, the host stand-in's forward
declarations: every enumeration (as an int), every interface with its IID
text, and the host objects that take handlers without being API objects."""

from .cpp import GENERATED


def emit(model):
    out = [
        GENERATED,
        "#pragma once\n\n",
        "#include <cstdint>\n#include <functional>\n#include <vector>\n\n",
        '#include "tvapi/core.h"\n#include "tvapi/values.h"\n\n',
        "namespace tvapi {\n\n",
    ]
    # Enumerations named only by event callbacks are declared with the rest.
    for enum in model.enums():
        out.append(f"enum {enum} : int {{}};\n")
    out.append("\n")
    for i in model.interfaces.values():
        out.append(f"class {i.name};\n")
        if i.iid:
            out.append(f'template <> struct IAPIObjectIID<{i.name}> {{ static constexpr char text[37] = "{i.iid}"; }};\n')
    out.extend(f"class {s.name};\n" for s in model.sources.values() if not s.queried)
    out.append("\n}  // namespace tvapi\n")
    return "".join(out)
