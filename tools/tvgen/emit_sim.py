"""Emits default implementations of every interface for the simulated host:
tvsim::Default<I> answers every operation with an empty result, so that a
simulated object overrides only the operations it models."""

from .ctypes_map import host_param, host_value
from .emit_tvapi import group_dependencies


def operation(op):
    params = ", ".join(host_param(p, op.interface.root) for p in op.params)
    result = host_value(op.result)
    body = "{}" if result == "void" else "{ return {}; }"
    return f"    {result} {op.name}({params}) override {body}\n"


def emit_group(cat, group):
    out = ["// Generated from the catalogue; do not edit.\n#pragma once\n\n",
           '#include "sim/object.h"\n']
    for g in group_dependencies(cat, group):
        out.append(f'#include "tvapi/{g}.h"\n')
    out.append("\nnamespace tvsim {\n")
    for i in cat.interfaces.values():
        if i.group != group:
            continue
        out.append(f"\ntemplate <>\nclass Default<tvapi::{i.name}> : public tvapi::{i.name} {{\npublic:\n")
        if i.root:
            out.append("    void HostReserved() override {}\n")
        else:
            out.append("    explicit Default(Object* owner) : owner_(*owner) {}\n"
                       "    void HostReserved() override {}\n"
                       "    int AddRef() override { return owner_.AddRef(); }\n"
                       "    int Release() override { return owner_.Release(); }\n"
                       "    void* QueryInterface(const char* iid) override { return owner_.Query(iid); }\n")
        out.extend(operation(op) for op in i.ops)
        if not i.root:
            out.append("\nprivate:\n    Object& owner_;\n")
        out.append("};\n")
    out.append("\n}  // namespace tvsim\n")
    return "".join(out)
