"""Emits sweep/cases.cpp: every part's cases of the export sweep in one
list, and how many exports they cover."""

from .cpp import GENERATED, sweep_part


def emit(model):
    names = [sweep_part(g, n) for g in model.groups for n, _ in enumerate(model.chunks(g))]
    total = sum(1 for _ in model.ops())
    out = [GENERATED, '#include "sweep/sweep.h"\n\nnamespace sweep {\n\n']
    out.extend(f"void {name}(std::vector<Case>&);\n" for name in names)
    out.append("\nstd::vector<Case> AllCases() {\n    std::vector<Case> cases;\n")
    out.extend(f"    {name}(cases);\n" for name in names)
    out.append(f"    return cases;\n}}\n\nstd::size_t ExportCount() {{ return {total}; }}\n\n}}  // namespace sweep\n")
    return "".join(out)
