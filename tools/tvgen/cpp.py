"""What the C++ emitters share: the first line of a generated file, the
includes of the host's declarations a file needs, the probe faces' classes
(tvprobe::Object answers every operation, see host/probe/probe.h) and the
names the export sweep's parts are registered by."""

from .model import Event
from .model.types import host_signature, host_value, registration_declaration

GENERATED = "// Generated from the catalogue; do not edit.\n"


def includes(groups):
    """The host's declarations of these interface groups."""
    return "".join(f'#include "tvapi/{g}.h"\n' for g in groups)


# Probe faces

def face_head(name, base="", refs=True):
    """A probe face class of the host interface `name`, up to its operations;
    `refs`: it forwards the reference counting and the query to its object."""
    out = [f"class {name}Face final : public tvapi::{name}, public FaceBase{base} {{\npublic:\n",
           f"    explicit {name}Face(Object& o) : o_(o) {{}}\n",
           "    void HostReserved() override {}\n"]
    if refs:
        out.append("    int AddRef() override { return o_.AddRef(); }\n"
                   "    int Release() override { return o_.Release(); }\n"
                   "    void* QueryInterface(const char* iid) override { return o_.Query(iid); }\n")
    return "".join(out)


FACE_TAIL = "\nprivate:\n    Object& o_;\n};\n\n"


def face_operation(interface, op, before=""):
    """An operation that the probe object records and answers; `before` runs first."""
    args = "".join(f", {p.name}" for p in op.params)
    result = host_value(op.result)
    ret = "" if result == "void" else "return "
    return (f"    {host_signature(op)} override {{ {before}{ret}o_.On<{result}>("
            f"\"{interface}\", \"{op.name}\"{args}); }}\n")


def face_member(source, m):
    """An operation or a handler registration of an interface that takes handlers:
    a registration keeps the handler; a removal is recorded and drops what it names."""
    if isinstance(m, Event):
        key = "&key" if source.keyed else "nullptr"
        return f"    {registration_declaration(m)} override {{ Keep(\"{m.name}\", {key}, std::move(handler)); }}\n"
    drop = ""
    if m.name == "RemoveAllHandlers":
        drop = f"Drop({'&' + m.params[0].name if m.params else 'nullptr'}); "
    return face_operation(source.name, m, drop)


def face_maker(name):
    return (f"FaceMade Make{name}(Object& o) {{\n"
            f"    auto f = std::make_unique<{name}Face>(o);\n"
            f"    void* face = static_cast<tvapi::{name}*>(f.get());\n"
            f"    return {{std::move(f), face}};\n}}\n")


# The export sweep

def sweep_part(group, n):
    """The function that adds the sweep's cases of one part of a group."""
    return f"AddCases_{group}_{n}"
