"""Emits probe/event_faces.cpp: the probe faces of the interfaces that take
handlers, which keep the handlers they are given (probe/event_sink.h).

Slot order of an interface that takes handlers: an Events interface's
operations and registrations as its block lists them; an interface of the
other catalogue files keeps its operations and takes its registrations after
them.
"""

from .cpp import FACE_TAIL, GENERATED, face_head, face_maker, face_member, includes


def emit(model):
    sources = [s for s in model.sources.values() if s.queried]
    out = [GENERATED, "#include <memory>\n#include <utility>\n\n",
           '#include "probe/event_sink.h"\n#include "probe/probe_faces.h"\n', includes(model.groups_named_by(sources)),
           "\nnamespace tvprobe {\nnamespace {\n\n"]
    for s in sources:
        out.append(face_head(s.name, ", public EventSink") + "".join(face_member(s, m) for m in s.members) + FACE_TAIL)
    out.append("}  // namespace\n\n")
    out.extend(face_maker(s.name) for s in sources)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)
