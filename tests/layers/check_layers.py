#!/usr/bin/env python3
"""Fails when an include in src/ runs against the library's layer order, or
an import in the generator against its own.

The library's folders stack one way: core and checked mode's tracking
(check), then containers, then frame, then the three that use the frame (the
API Server in server/, the events, and the generated exports, which live in
the build tree), then the entry that starts them. A folder may include its own headers and those of any folder below it;
folders on one level do not include each other.

The generator (tools/tvgen) stacks one way too: its model (model/), then
what emitters share (the bindings' helpers in bindings/, and the modules
beside the emitters that are not emitters), then the emitters (emit_*.py),
which stand side by side, then the entry point (__main__.py), which lists
the outputs. A module imports only from below its level, or its own level
below the emitters'.
"""
import ast
import pathlib
import re
import sys

LEVEL = {"core": 0, "check": 0, "containers": 1, "frame": 2, "server": 3, "events": 3, "entry": 4}
INCLUDE = re.compile(r'^\s*#\s*include\s+"([a-z_]+)/[^"]+"', re.M)


def include_violations(src: pathlib.Path):
    for path in sorted(src.rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        folder = path.relative_to(src).parts[0]
        if folder not in LEVEL:
            yield f"{path}: folder {folder!r} has no place in the layer order"
            continue
        for target in INCLUDE.findall(path.read_text()):
            if target not in LEVEL or target == folder:
                continue  # the host's headers, the public header, the folder's own
            if LEVEL[target] >= LEVEL[folder]:
                yield f"{path}: {folder}/ includes {target}/, which is not below it"


def imported_modules(tree, package):
    """(line, module path in tvgen as a tuple) of every import of a module in
    `package` (a tuple), those inside functions included: `import a.b`,
    `from .a import x` (a), `from . import a`, `from tvgen import a`,
    importlib.import_module("a") and __import__("a")."""
    for node in ast.walk(tree):
        if isinstance(node, ast.Import):
            yield from ((node.lineno, _absolute(alias.name.split("."))) for alias in node.names)
        elif isinstance(node, ast.ImportFrom):
            base = package[:len(package) - node.level + 1] if node.level else ()
            parts = _absolute(node.module.split(".")) if node.module else ()
            if not node.level and not parts:
                continue  # a module outside the generator
            module = base + parts
            yield node.lineno, module
            yield from ((node.lineno, module + (alias.name,)) for alias in node.names)
        elif isinstance(node, ast.Call) and node.args and isinstance(node.args[0], ast.Constant):
            func = node.func
            name = func.attr if isinstance(func, ast.Attribute) else getattr(func, "id", "")
            if name in ("import_module", "__import__") and isinstance(node.args[0].value, str):
                yield node.lineno, tuple(node.args[0].value.lstrip(".").split("."))


def _absolute(parts):
    return tuple(parts[1:]) if parts and parts[0] == "tvgen" else tuple(parts)


def generator_level(module, tvgen):
    """0 model, 1 shared helpers, 2 emitters, 3 the entry point; None outside the generator."""
    if not module or not ((tvgen / module[0]).is_dir() or (tvgen / f"{module[0]}.py").exists()):
        return None
    if module[0] == "model":
        return 0
    if module[0] == "__main__":
        return 3
    return 2 if module[0].startswith("emit_") else 1


def generator_violations(tvgen: pathlib.Path):
    for path in sorted(tvgen.rglob("*.py")):
        module = path.relative_to(tvgen).with_suffix("").parts
        level = generator_level(module, tvgen)
        reported = set()
        for line, imported in imported_modules(ast.parse(path.read_text(encoding="utf-8"), str(path)), module[:-1]):
            target = generator_level(imported, tvgen)
            if target is None or imported[0] == module[0] or line in reported:
                continue
            if target > level or (target == level == 2):
                reported.add(line)
                yield f"{path}:{line}: imports {'.'.join(imported)}, which is not below it"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]
    problems = list(include_violations(root / "src")) + list(generator_violations(root / "tools" / "tvgen"))
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
