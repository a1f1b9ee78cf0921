"""Emits the `tvapi` stand-in declarations: one header of forward declarations,
enumerations and IID texts, and one header of abstract interfaces per group.

Interfaces have no virtual destructor, so their virtual tables have the same
layout under every compiler: slots 0-3 from IAPIObject, then the operations in
catalogue order. Rooted interfaces are not API objects: slot 0 is the host's,
their operations follow from slot 1.
"""

from .model import Event
from .model.types import callback_host_signature, host_signature, registration_declaration


def emit_declarations(model):
    out = [
        "// Generated from the catalogue; do not edit.\n",
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


def handlers_class_body(source):
    """The body of a class that takes handlers: handler types, then its
    virtual operations in slot order."""
    out = [f"    using {e.handler_type} = std::function<{callback_host_signature(e)}>;\n" for e in source.events]
    out.append("\n")
    for m in source.members:
        text = registration_declaration(m) if isinstance(m, Event) else host_signature(m)
        out.append(f"    virtual {text} = 0;\n")
    return "".join(out)


def unqueried_class(source):
    return (f"\n// Not an API object: the host hands out the interface itself.\nclass {source.name} {{\npublic:\n"
            + handlers_class_body(source) + f"\nprotected:\n    ~{source.name}() = default;\n}};\n")


def emit_group(model, group):
    out = [
        "// Generated from the catalogue; do not edit.\n",
        "#pragma once\n\n",
        '#include "tvapi/declarations.h"\n\n',
        "namespace tvapi {\n",
    ]
    for i in model.interfaces_in(group):
        base = "" if i.root else " : public IAPIObject"
        out.append(f"\nclass {i.name}{base} {{\npublic:\n")
        if i.root:
            out.append("    virtual void HostReserved() = 0;\n")
        source = model.queried_source(i.name)
        if source:
            # An interface that takes handlers: handler types and registrations too.
            out.append(handlers_class_body(source))
        else:
            for op in i.ops:
                out.append(f"    virtual {host_signature(op)} = 0;\n")
        out.append(f"\nprotected:\n    ~{i.name}() = default;\n}};\n")
    out.extend(unqueried_class(s) for s in model.unqueried(group))
    out.append("\n}  // namespace tvapi\n")
    return "".join(out)
