"""Emits the registration exports (api/event_registrations.cpp): one per
event, each one call of the templates in src/events/registration.h."""

from .cpp import GENERATED, includes
from .model.types import registration_params


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


def emit(model):
    sources = list(model.sources.values())
    out = [GENERATED, '#include "events/registration.h"\n', includes(model.groups_named_by(sources)),
           '#include "tvAPIC.h"\n\nusing namespace tvapic::events;\n\nextern "C" {\n']
    for source in sources:
        out.append(f"\n// {source.name}\n")
        out.extend(registration(e) for e in source.events)
    out.append("\n}  // extern \"C\"\n")
    return "".join(out)
