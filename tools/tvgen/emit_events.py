"""Emits what the events catalogue becomes: the callback types and
registration prototypes of tvAPIC.h, the handler types and registration
methods of the host's interfaces, the registration exports, the probe faces of
the interfaces that take handlers, and the registration sweep's cases.

Slot order of an interface that takes handlers: an Events interface's
operations and registrations as its block lists them; an interface of the
other catalogue files keeps its operations and takes its registrations after
them; a host object that is not an API object has only its registrations,
from slot 0.
"""

from . import events as ev
from .ctypes_map import host_signature as op_host_signature, host_value

GENERATED = "// Generated from the catalogue; do not edit.\n"


# tvAPIC.h

def callback_typedef(e):
    params = ", ".join(f"{ev.c_param(p)} {p.name}" for p in e.params) or "void"
    return f"typedef {ev.c_result(e.result)} (*{e.callback_type})({params});\n"


def header_section(events):
    out = ["\n/* Event subscriptions. A callback runs on the thread that raises the event;\n"
           " * handles and texts it receives are lent for the call, vectors made for it are\n"
           " * freed after it. A keyed registration is removed with its interface's\n"
           " * RemoveAllHandlers(key); a null key is the empty key. */\n"]
    for source in events.sources.values():
        out.append(f"\n/* {source.name} */\n")
        out.extend(callback_typedef(e) for e in source.events)
        out.extend(f"TVAPIC_API void {e.export}({ev.registration_params(e)});\n" for e in source.events)
    return "".join(out)


# tvapi declarations

def registration_declaration(e):
    key = "const tvapi::WString& key, " if e.source.keyed else ""
    return f"void {e.registration}({key}{e.handler_type} handler)"


def host_class_body(source):
    """The body of a class that takes handlers: handler types, then its
    virtual operations in slot order."""
    out = [f"    using {e.handler_type} = std::function<{ev.host_signature(e)}>;\n" for e in source.events]
    out.append("\n")
    for m in source.members:
        text = registration_declaration(m) if isinstance(m, ev.Event) else op_host_signature(m)
        out.append(f"    virtual {text} = 0;\n")
    return "".join(out)


def unqueried_classes(events):
    out = []
    for source in events.sources.values():
        if source.queried:
            continue
        out.append(f"\n// Not an API object: the host hands out the interface itself.\nclass {source.name} {{\npublic:\n")
        out.append(host_class_body(source))
        out.append(f"\nprotected:\n    ~{source.name}() = default;\n}};\n")
    return "".join(out)


def unqueried_declarations(events):
    return "".join(f"class {s.name};\n" for s in events.sources.values() if not s.queried)


# Registration exports

def registration(e):
    source = e.source
    method = f"&tvapi::{source.name}::{e.registration}"
    handler = f"tvapi::{source.name}::{e.handler_type}"
    first = "events" if source.kind == "events" else "handle"
    if not source.queried:
        call = f"RegisterUnqueried<tvapi::{source.name}, {handler}>({first}, callback, {method})"
    elif source.keyed:
        call = f"Register<tvapi::{source.name}, {handler}>({first}, key, callback, {method})"
    else:
        call = f"Register<tvapi::{source.name}, {handler}>({first}, callback, {method})"
    return f"TVAPIC_API void {e.export}({ev.registration_params(e)}) {{\n    {call};\n}}\n"


def includes(cat, events, sources):
    return "".join(f'#include "tvapi/{g}.h"\n' for g in events.groups_named_by(cat, sources))


def emit_registrations(cat, events):
    sources = list(events.sources.values())
    out = [GENERATED, '#include "events/registration.h"\n', includes(cat, events, sources),
           '#include "tvAPIC.h"\n\nusing namespace tvapic::events;\n\nextern "C" {\n']
    for source in sources:
        out.append(f"\n// {source.name}\n")
        out.extend(registration(e) for e in source.events)
    out.append("\n}  // extern \"C\"\n")
    return "".join(out)


# Probe faces

def probe_member(source, m):
    if isinstance(m, ev.Event):
        key = "&key" if source.keyed else "nullptr"
        return (f"    {registration_declaration(m)} override {{ Keep(\"{m.name}\", {key}, std::move(handler)); }}\n")
    args = "".join(f", {p.name}" for p in m.params)
    result = host_value(m.result)
    ret = "" if result == "void" else "return "
    # Removal is recorded like any call and also drops what it names.
    drop = ""
    if m.name == "RemoveAllHandlers":
        drop = f"Drop({'&' + m.params[0].name if m.params else 'nullptr'}); "
    return (f"    {op_host_signature(m)} override {{ {drop}{ret}o_.On<{result}>("
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


def emit_probe_header(cat, events):
    sources = [s for s in events.sources.values() if not s.queried]
    out = [GENERATED, "#pragma once\n\n#include <utility>\n\n", '#include "probe/event_sink.h"\n',
           includes(cat, events, sources), "\nnamespace tvprobe {\n\n"]
    out.extend(unqueried_probe(s) for s in sources)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)


def emit_probe_faces(cat, events):
    sources = [s for s in events.sources.values() if s.queried]
    out = [GENERATED, "#include <memory>\n#include <utility>\n\n",
           '#include "probe/event_sink.h"\n#include "probe/probe_faces.h"\n', includes(cat, events, sources),
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


def emit_sweep_cases(cat, events):
    sources = list(events.sources.values())
    count = sum(len(s.events) for s in sources)
    out = [GENERATED, '#include "events/registration_sweep.h"\n#include "probe/event_faces.h"\n',
           includes(cat, events, sources), '#include "tvAPIC.h"\n\nnamespace eventsweep {\n\n',
           "std::vector<Case> AllCases() {\n    std::vector<Case> cases;\n"]
    for source in sources:
        out.extend(sweep_case(e) for e in source.events)
    out.append(f"    return cases;\n}}\n\nstd::size_t RegistrationCount() {{ return {count}; }}\n\n"
               "}  // namespace eventsweep\n")
    return "".join(out)


def outputs(cat, events):
    """Files of the events catalogue, by path relative to the generated tree."""
    return {
        "api/event_registrations.cpp": lambda: emit_registrations(cat, events),
        "probe/event_faces.h": lambda: emit_probe_header(cat, events),
        "probe/event_faces.cpp": lambda: emit_probe_faces(cat, events),
        "events_tests/registrations.cpp": lambda: emit_sweep_cases(cat, events),
    }
