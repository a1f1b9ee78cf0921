"""Emits the `tvapi` stand-in's header of one group (include/tvapi/<group>.h):
its abstract interfaces (emit_tvapi_declarations writes what they name).

Interfaces have no virtual destructor, so their virtual tables have the same
layout under every compiler: slots 0-3 from IAPIObject, then the operations in
catalogue order. Rooted interfaces are not API objects: slot 0 is the host's,
their operations follow from slot 1.
"""

from .cpp import GENERATED
from .model import Event
from .model.types import callback_host_signature, host_signature, registration_declaration


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


def emit(model, group):
    out = [
        GENERATED,
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
