"""Emits what the events catalogue becomes beside the header and the host's
declarations: the registration exports, the probe faces of the interfaces
that take handlers, and the registration sweep's cases.

Slot order of an interface that takes handlers: an Events interface's
operations and registrations as its block lists them; an interface of the
other catalogue files keeps its operations and takes its registrations after
them; a host object that is not an API object has only its registrations,
from slot 0.
"""

from .model import Event
from .model.types import host_signature, host_value, registration_declaration, registration_params

GENERATED = "// Generated from the catalogue; do not edit.\n"


# Registration exports

def registration(e):
    source = e.source
    method = f"&tvapi::{source.name}::{e.registration}"
    handler = f"tvapi::{source.name}::{e.handler_type}"
    first = f'"{e.export}", ' + ("events" if source.kind == "events" else "handle")
    if not source.queried:
        call = f"RegisterUnqueried<tvapi::{source.name}, {handler}>({first}, callback, {method})"
    elif source.keyed:
        call = f"Register<tvapi::{source.name}, {handler}>({first}, key, callback, {method})"
    else:
        call = f"Register<tvapi::{source.name}, {handler}>({first}, callback, {method})"
    return f"TVAPIC_API void {e.export}({registration_params(e)}) {{\n    {call};\n}}\n"


def includes(model, sources):
    return "".join(f'#include "tvapi/{g}.h"\n' for g in model.groups_named_by(sources))


def emit_registrations(model):
    sources = list(model.sources.values())
    out = [GENERATED, '#include "events/registration.h"\n', includes(model, sources),
           '#include "tvAPIC.h"\n\nusing namespace tvapic::events;\n\nextern "C" {\n']
    for source in sources:
        out.append(f"\n// {source.name}\n")
        out.extend(registration(e) for e in source.events)
    out.append("\n}  // extern \"C\"\n")
    return "".join(out)


# Probe faces

def probe_member(source, m):
    if isinstance(m, Event):
        key = "&key" if source.keyed else "nullptr"
        return (f"    {registration_declaration(m)} override {{ Keep(\"{m.name}\", {key}, std::move(handler)); }}\n")
    args = "".join(f", {p.name}" for p in m.params)
    result = host_value(m.result)
    ret = "" if result == "void" else "return "
    # Removal is recorded like any call and also drops what it names.
    drop = ""
    if m.name == "RemoveAllHandlers":
        drop = f"Drop({'&' + m.params[0].name if m.params else 'nullptr'}); "
    return (f"    {host_signature(m)} override {{ {drop}{ret}o_.On<{result}>("
            f"\"{source.name}\", \"{m.name}\"{args}); }}\n")


def probe_face(source):
    name = source.name
    out = [f"class {name}Face final : public tvapi::{name}, public FaceBase, public EventSink {{\npublic:\n",
           f"    explicit {name}Face(Object& o) : o_(o) {{}}\n",
           "    void HostReserved() override {}\n"
           "    int AddRef() override { return o_.AddRef(); }\n"
           "    int Release() override { return o_.Release(); }\n"
           "    void* QueryInterface(const char* iid) override { return o_.Query(iid); }\n"]
    out.extend(probe_member(source, m) for m in source.members)
    out.append("\nprivate:\n    Object& o_;\n};\n\n")
    return "".join(out)


def probe_maker(source):
    name = source.name
    return (f"FaceMade Make{name}(Object& o) {{\n"
            f"    auto f = std::make_unique<{name}Face>(o);\n"
            f"    void* face = static_cast<tvapi::{name}*>(f.get());\n"
            f"    return {{std::move(f), face}};\n}}\n")


def unqueried_probe(source):
    name = source.name
    members = "".join(probe_member(source, m) for m in source.members)
    return (f"// A stand-in {name} object: keeps the handlers it is given.\n"
            f"class {name}Probe final : public tvapi::{name}, public EventSink {{\npublic:\n{members}}};\n")


def emit_probe_header(model):
    sources = [s for s in model.sources.values() if not s.queried]
    out = [GENERATED, "#pragma once\n\n#include <utility>\n\n", '#include "probe/event_sink.h"\n',
           includes(model, sources), "\nnamespace tvprobe {\n\n"]
    out.extend(unqueried_probe(s) for s in sources)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)


def emit_probe_faces(model):
    sources = [s for s in model.sources.values() if s.queried]
    out = [GENERATED, "#include <memory>\n#include <utility>\n\n",
           '#include "probe/event_sink.h"\n#include "probe/probe_faces.h"\n', includes(model, sources),
           "\nnamespace tvprobe {\nnamespace {\n\n"]
    out.extend(probe_face(s) for s in sources)
    out.append("}  // namespace\n\n")
    out.extend(probe_maker(s) for s in sources)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)


# The registration sweep's cases (tests/events/registration_sweep.h)

def sweep_case(e):
    source = e.source
    shape = "Unqueried" if not source.queried else "Keyed" if source.keyed else "Unkeyed"
    probe = "" if source.queried else f", tvprobe::{source.name}Probe"
    return (f"    cases.push_back({shape}<tvapi::{source.name}, tvapi::{source.name}::{e.handler_type}{probe}>(\n"
            f"        \"{source.name}\", \"{e.name}\", &{e.export}));\n")


def emit_sweep_cases(model):
    sources = list(model.sources.values())
    count = sum(len(s.events) for s in sources)
    out = [GENERATED, '#include "events/registration_sweep.h"\n#include "probe/event_faces.h"\n',
           includes(model, sources), '#include "tvAPIC.h"\n\nnamespace eventsweep {\n\n',
           "std::vector<Case> AllCases() {\n    std::vector<Case> cases;\n"]
    for source in sources:
        out.extend(sweep_case(e) for e in source.events)
    out.append(f"    return cases;\n}}\n\nstd::size_t RegistrationCount() {{ return {count}; }}\n\n"
               "}  // namespace eventsweep\n")
    return "".join(out)


def outputs(model):
    """Files of the events catalogue, by path relative to the generated tree."""
    return {
        "api/event_registrations.cpp": lambda: emit_registrations(model),
        "probe/event_faces.h": lambda: emit_probe_header(model),
        "probe/event_faces.cpp": lambda: emit_probe_faces(model),
        "events_tests/registrations.cpp": lambda: emit_sweep_cases(model),
    }
