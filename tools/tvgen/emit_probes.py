"""Emits the probe faces of one part of a group (probe/<group>_<n>.cpp): for
every interface, a class implementing it whose operations all forward to
tvprobe::Object::On (see host/probe/probe.h). Faces of interfaces that take
handlers are emit_event_probes'."""

from .cpp import FACE_TAIL, GENERATED, face_head, face_maker, face_operation, includes


def emit(model, group, part, n):
    interfaces = model.plain(part)
    out = [GENERATED, "#include <memory>\n\n", '#include "probe/probe_faces.h"\n',
           includes(model.group_dependencies(group)), "\nnamespace tvprobe {\nnamespace {\n\n"]
    for i in interfaces:
        out.append(face_head(i.name, refs=not i.root) + "".join(face_operation(i.name, op) for op in i.ops) + FACE_TAIL)
    out.append("}  // namespace\n\n")
    out.extend(face_maker(i.name) for i in interfaces)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)
