"""Emits probe/registry.cpp: every probe face's maker, found by interface name."""

from .cpp import GENERATED


def emit(model):
    out = [GENERATED, "#include <string>\n#include <unordered_map>\n\n", '#include "probe/probe.h"\n\nnamespace tvprobe {\n\n']
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
