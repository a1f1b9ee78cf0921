"""Emits default implementations of every interface for the simulated host:
tvsim::Default<I> answers every operation with an empty result, so that a
simulated object overrides only the operations it models.

An interface that takes handlers keeps them: one HandlerList per event, in a
public `handlers` member the simulated model raises events through (and tests
raise any event through); RemoveAllHandlers drops a key's handlers, or all of
them on an unkeyed interface."""

from .cpp import GENERATED, includes
from .model import Event
from .model.types import host_param, host_value, registration_declaration


def operation(op):
    params = ", ".join(host_param(p, op.interface.root) for p in op.params)
    result = host_value(op.result)
    body = "{}" if result == "void" else "{ return {}; }"
    return f"    {result} {op.name}({params}) override {body}\n"


def registration(e):
    key = "key, " if e.source.keyed else ""
    # A "Set…" registration holds one handler: the new one replaces the old.
    replace = f"handlers.{e.name}.Clear(); " if e.registration.startswith("Set") else ""
    return (f"    {registration_declaration(e)} override "
            f"{{ {replace}handlers.{e.name}.Add({key}std::move(handler)); }}\n")


def removal(source):
    if source.keyed:
        return "    void RemoveAllHandlers(const tvapi::WString& key) override { handlers.Remove(key); }\n"
    return "    void RemoveAllHandlers() override { handlers.Clear(); }\n"


# The filter operations of the Events interfaces, as what they do to the
# events object's filters.
FILTER_OPS = {
    "AddObjects": "objects.Add", "RemoveObjects": "objects.Remove", "RemoveAllObjects": "objects.Clear",
    "AddObjectsTypes": "types.Add", "RemoveObjectsTypes": "types.Remove", "RemoveAllObjectsTypes": "types.Clear",
    "Add": "types.Add", "Remove": "types.Remove",   # codes, on interfaces without an object filter
}


def filter_operation(op):
    params = ", ".join(f"{host_param(p, False)} {p.name}" for p in op.params)
    args = ", ".join(p.name for p in op.params)
    return f"    void {op.name}({params}) override {{ filters.{FILTER_OPS[op.name]}({args}); }}\n"


def filter_members(source):
    ops = [m for m in source.members if not isinstance(m, Event) and m.name in FILTER_OPS]
    if not ops:
        return ""
    elements = {p.type.element for op in ops for p in op.params if p.type.element}
    objects = f"        ObjectFilter<tvapi::{elements.pop()}> objects;\n" if elements else ""
    return ("\n    // The objects and types the subscriber chose to hear of.\n    struct Filters {\n"
            f"{objects}        TypeFilter types;\n    }} filters;\n")


def handler_lists(source):
    names = [e.name for e in source.events]
    lists = "".join(f"        HandlerList<{e.handler_type}> {e.name};\n" for e in source.events)
    remove = "".join(f"            {n}.Remove(key);\n" for n in names)
    clear = "".join(f"            {n}.Clear();\n" for n in names)
    return ("\n    // The registered handlers, one list per event.\n    struct Handlers {\n" + lists +
            f"        void Remove(const tvapi::WString& key) {{\n{remove}        }}\n"
            f"        void Clear() {{\n{clear}        }}\n    }} handlers;\n")


def members(i, source):
    if source is None:
        return [operation(op) for op in i.ops]
    out = []
    for m in source.members:
        if isinstance(m, Event):
            out.append(registration(m))
        elif source.kind == "events" and m.name == "RemoveAllHandlers":
            out.append(removal(source))
        elif source.kind == "events" and m.name in FILTER_OPS:
            out.append(filter_operation(m))
        else:
            out.append(operation(m))
    return out + [handler_lists(source), filter_members(source)]


def emit(model, group):
    out = [GENERATED + "#pragma once\n\n",
           "#include <utility>\n\n", '#include "sim/handlers.h"\n', '#include "sim/object.h"\n']
    out.append(includes(model.group_dependencies(group)))
    out.append("\nnamespace tvsim {\n")
    for i in model.interfaces_in(group):
        source = model.queried_source(i.name)
        out.append(f"\ntemplate <>\nclass Default<tvapi::{i.name}> : public tvapi::{i.name} {{\npublic:\n")
        if i.root:
            out.append("    void HostReserved() override {}\n")
        else:
            out.append("    explicit Default(Object* owner) : owner_(*owner) {}\n"
                       "    void HostReserved() override {}\n"
                       "    int AddRef() override { return owner_.AddRef(); }\n"
                       "    int Release() override { return owner_.Release(); }\n"
                       "    void* QueryInterface(const char* iid) override { return owner_.Query(iid); }\n")
        out.extend(members(i, source))
        if not i.root:
            out.append("\nprivate:\n    Object& owner_;\n")
        out.append("};\n")
    out.append("\n}  // namespace tvsim\n")
    return "".join(out)
