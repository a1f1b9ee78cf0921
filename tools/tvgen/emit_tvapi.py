"""Emits the `tvapi` stand-in declarations: one header of forward declarations,
enumerations and IID texts, and one header of abstract interfaces per group.

Interfaces have no virtual destructor, so their virtual tables have the same
layout under every compiler: slots 0-3 from IAPIObject, then the operations in
catalogue order. Rooted interfaces are not API objects: slot 0 is the host's,
their operations follow from slot 1.
"""

from . import emit_events
from .ctypes_map import host_signature


def emit_declarations(cat, events=None):
    out = [
        "// Generated from the catalogue; do not edit.\n",
        "#pragma once\n\n",
        "#include <cstdint>\n#include <functional>\n#include <vector>\n\n",
        '#include "tvapi/core.h"\n#include "tvapi/values.h"\n\n',
        "namespace tvapi {\n\n",
    ]
    # Enumerations named only by event callbacks are declared with the rest.
    for enum in sorted(set(cat.enums()) | set(events.enums() if events else [])):
        out.append(f"enum {enum} : int {{}};\n")
    out.append("\n")
    for i in cat.interfaces.values():
        out.append(f"class {i.name};\n")
        if i.iid:
            out.append(f'template <> struct IAPIObjectIID<{i.name}> {{ static constexpr char text[37] = "{i.iid}"; }};\n')
    if events:
        out.append(emit_events.unqueried_declarations(events))
    out.append("\n}  // namespace tvapi\n")
    return "".join(out)


def group_dependencies(cat, group):
    """Groups whose interfaces a group's signatures name (its own included)."""
    names = cat.referenced_interfaces(group)
    return sorted({cat.interfaces[n].group for n in names} | {group}, key=cat.groups.index)


def emit_group(cat, group, events=None):
    out = [
        "// Generated from the catalogue; do not edit.\n",
        "#pragma once\n\n",
        '#include "tvapi/declarations.h"\n\n',
        "namespace tvapi {\n",
    ]
    for i in cat.interfaces.values():
        if i.group != group:
            continue
        base = "" if i.root else " : public IAPIObject"
        out.append(f"\nclass {i.name}{base} {{\npublic:\n")
        if i.root:
            out.append("    virtual void HostReserved() = 0;\n")
        source = events.sources.get(i.name) if events else None
        if source:
            # An interface that takes handlers: handler types and registrations too.
            out.append(emit_events.host_class_body(source))
        else:
            for op in i.ops:
                out.append(f"    virtual {host_signature(op)} = 0;\n")
        out.append(f"\nprotected:\n    ~{i.name}() = default;\n}};\n")
    if events and group == emit_events.ev.GROUP:
        out.append(emit_events.unqueried_classes(events))
    out.append("\n}  // namespace tvapi\n")
    return "".join(out)
