"""Emits the probe faces: for every interface, a class implementing it whose
operations all forward to tvprobe::Object::On (see host/probe/probe.h)."""

from .model.types import host_signature, host_value


def emit_declarations(model):
    out = ["// Generated from the catalogue; do not edit.\n#pragma once\n\n",
           '#include "probe/probe.h"\n#include "tvapi/declarations.h"\n\nnamespace tvprobe {\n\n']
    for i in model.interfaces.values():
        out.append(f'template <> struct FaceName<tvapi::{i.name}> {{ static constexpr const char* value = "{i.name}"; }};\n')
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)


def face(i):
    out = [f"class {i.name}Face final : public tvapi::{i.name}, public FaceBase {{\npublic:\n",
           f"    explicit {i.name}Face(Object& o) : o_(o) {{}}\n",
           "    void HostReserved() override {}\n"]
    if not i.root:
        out.append("    int AddRef() override { return o_.AddRef(); }\n"
                   "    int Release() override { return o_.Release(); }\n"
                   "    void* QueryInterface(const char* iid) override { return o_.Query(iid); }\n")
    for op in i.ops:
        args = "".join(f", {p.name}" for p in op.params)
        result = host_value(op.result)
        ret = "" if result == "void" else "return "
        out.append(f"    {host_signature(op)} override {{ {ret}o_.On<{result}>(\"{i.name}\", \"{op.name}\"{args}); }}\n")
    out.append("\nprivate:\n    Object& o_;\n};\n\n")
    return "".join(out)


def maker(i):
    return (f"FaceMade Make{i.name}(Object& o) {{\n"
            f"    auto f = std::make_unique<{i.name}Face>(o);\n"
            f"    void* face = static_cast<tvapi::{i.name}*>(f.get());\n"
            f"    return {{std::move(f), face}};\n}}\n")


def emit_chunk(model, group, interfaces):
    out = ["// Generated from the catalogue; do not edit.\n#include <memory>\n\n",
           '#include "probe/probe_faces.h"\n']
    for g in model.group_dependencies(group):
        out.append(f'#include "tvapi/{g}.h"\n')
    out.append("\nnamespace tvprobe {\nnamespace {\n\n")
    out.extend(face(i) for i in interfaces)
    out.append("}  // namespace\n\n")
    out.extend(maker(i) for i in interfaces)
    out.append("\n}  // namespace tvprobe\n")
    return "".join(out)


def emit_registry(model):
    out = ["// Generated from the catalogue; do not edit.\n#include <string>\n#include <unordered_map>\n\n",
           '#include "probe/probe.h"\n\nnamespace tvprobe {\n\n']
    for i in model.interfaces.values():
        out.append(f"FaceMade Make{i.name}(Object&);\n")
    out.append("\nconst FaceFactory* FindFace(const std::string& name) {\n"
               "    static const std::unordered_map<std::string, FaceFactory> factories = {\n")
    for i in model.interfaces.values():
        iid = f'"{i.iid}"' if i.iid else "nullptr"
        out.append(f'        {{"{i.name}", {{"{i.name}", {iid}, Make{i.name}}}}},\n')
    out.append("    };\n    auto it = factories.find(name);\n"
               "    return it == factories.end() ? nullptr : &it->second;\n}\n\n}  // namespace tvprobe\n")
    return "".join(out)
