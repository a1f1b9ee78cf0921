#!/usr/bin/env python3
"""Fails when an include in src/ runs against the library's layer order, or
when an emitter of the generator imports another emitter.

The library's folders stack one way: core and checked mode's tracking
(check), then containers, then frame, then the three that use the frame (the
API Server in server/, the events, and the generated exports, which live in
the build tree), then the entry that starts them. A folder may include its own headers and those of any folder below it;
folders on one level do not include each other.

The generator's emitters (tools/tvgen/emit_*.py) stand side by side on its
model (tools/tvgen/model/): what two of them share belongs in the model.
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


def imported_modules(tree):
    """(line, dotted module name) of every import in a module, those inside
    functions included: `import a.b`, `from .a import x` (a), `from . import a`
    and `from tvgen import a` (a), importlib.import_module("a") and __import__("a")."""
    for node in ast.walk(tree):
        if isinstance(node, ast.Import):
            yield from ((node.lineno, alias.name) for alias in node.names)
        elif isinstance(node, ast.ImportFrom):
            base = node.module or ""
            if base:
                yield node.lineno, base
            if (node.level and not base) or base == "tvgen":
                yield from ((node.lineno, alias.name) for alias in node.names)
        elif isinstance(node, ast.Call) and node.args and isinstance(node.args[0], ast.Constant):
            func = node.func
            name = func.attr if isinstance(func, ast.Attribute) else getattr(func, "id", "")
            if name in ("import_module", "__import__") and isinstance(node.args[0].value, str):
                yield node.lineno, node.args[0].value.lstrip(".")


def emitter_violations(tvgen: pathlib.Path):
    for path in sorted(tvgen.glob("emit_*.py")):
        for line, module in imported_modules(ast.parse(path.read_text(encoding="utf-8"), str(path))):
            emitters = [part for part in module.split(".") if part.startswith("emit_") and part != path.stem]
            if emitters:
                yield f"{path}:{line}: imports the emitter {emitters[0]}; what emitters share belongs in the model"


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]
    problems = list(include_violations(root / "src")) + list(emitter_violations(root / "tools" / "tvgen"))
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
