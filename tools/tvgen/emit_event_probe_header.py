"""Emits probe/event_faces.h: a stand-in object for each host object that
takes handlers without being an API object, keeping the handlers it is given."""

from .cpp import GENERATED, face_member, includes


def unqueried_probe(source):
    name = source.name
    members = "".join(face_member(source, m) for m in source.members)
    return (f"// A stand-in {name} object: keeps the handlers it is given.\n"
            f"class {name}Probe final : public tvapi::{name}, public EventSink {{\npublic:\n{members}}};\n")


def emit(model):
    sources = [s for s in model.sources.values() if not s.queried]
    out = [GENERATED, "#pragma once\n\n#include <utility>\n\n", '#include "probe/event_sink.h"\n',
           includes(model.groups_named_by(sources)), "\nnamespace tvprobe {\n\n"]
    out.extend(unqueried_probe(s) for s in sources)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)
