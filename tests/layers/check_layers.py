#!/usr/bin/env python3
"""Fails when an include in src/ runs against the library's layer order.

The library's folders stack one way: core, then containers, then frame, then
the three that use the frame (the API Server in bridge/, the events, and the
generated exports, which live in the build tree), then the entry that starts
them. A folder may include its own headers and those of any folder below it;
folders on one level do not include each other.
"""
import pathlib
import re
import sys

LEVEL = {"core": 0, "containers": 1, "frame": 2, "bridge": 3, "events": 3, "entry": 4}
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


def main():
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).parents[2]
    problems = list(include_violations(root / "src"))
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
