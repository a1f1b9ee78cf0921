"""Emits the registration sweep's cases (events_tests/registrations.cpp):
one per event, by the shape of its registration (tests/events/registration_sweep.h)."""

from .cpp import GENERATED, includes


def sweep_case(e):
    source = e.source
    shape = "Unqueried" if not source.queried else "Keyed" if source.keyed else "Unkeyed"
    probe = "" if source.queried else f", tvprobe::{source.name}Probe"
    return (f"    cases.push_back({shape}<tvapi::{source.name}, tvapi::{source.name}::{e.handler_type}{probe}>(\n"
            f"        \"{source.name}\", \"{e.name}\", &{e.export}));\n")


def emit(model):
    sources = list(model.sources.values())
    count = sum(len(s.events) for s in sources)
    out = [GENERATED, '#include "events/registration_sweep.h"\n#include "probe/event_faces.h"\n',
           includes(model.groups_named_by(sources)), '#include "tvAPIC.h"\n\nnamespace eventsweep {\n\n',
           "std::vector<Case> AllCases() {\n    std::vector<Case> cases;\n"]
    for source in sources:
        out.extend(sweep_case(e) for e in source.events)
    out.append(f"    return cases;\n}}\n\nstd::size_t RegistrationCount() {{ return {count}; }}\n\n"
               "}  // namespace eventsweep\n")
    return "".join(out)
