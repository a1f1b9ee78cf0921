"""tvgen: turns the catalogue into the library's generated sources.

    python3 tools/generate.py --catalogue catalogue --out build/generated [--list]
    python3 tools/generate.py --catalogue catalogue --reference docs --out build/docs/api [--list]

--list prints the files that would be written (the build system reads it at
configure time). --reference writes the API reference instead of the code,
with the documents of the given folder (the protocol, the simulated host's
enumeration values). Files whose content has not changed are left untouched, so
an edit of one group recompiles only what depends on it.
"""

import argparse
import sys
from pathlib import Path

from . import model as model_mod
from . import protocol_doc, stats
from . import (emit_csharp_native, emit_csharp_objects, emit_csharp_remote, emit_event_probe_header,
               emit_event_probes, emit_exports, emit_header, emit_json, emit_probe_names, emit_probe_registry,
               emit_probes, emit_py_native, emit_py_native_stub, emit_py_objects, emit_py_objects_stub,
               emit_py_remote, emit_py_remote_stub, emit_registration_sweep, emit_registrations,
               emit_reference_enums, emit_reference_group, emit_reference_index, emit_reference_protocol,
               emit_reference_search, emit_server, emit_sim, emit_sweep, emit_sweep_index, emit_tvapi,
               emit_tvapi_declarations, emit_version_script, emit_wire_signatures)
from .reference_pages import ASSETS, Reference


def export_chunk(model, group, part, n):
    return emit_exports.emit_chunk(model, group, part)


def document(name):
    """An output that is a file of the reference's documents folder, as written."""
    return lambda ref: (ref.docs / name).read_text(encoding="utf-8")


def asset(name):
    """An output that is a file of the reference's own assets (tools/tvgen/reference/), as written."""
    return lambda ref: (ASSETS / name).read_text(encoding="utf-8")


# Every file the generator writes, and its emitter. A path with {group} is
# written once per interface group, with {group} and {n} once per part of a
# group (the model's chunks); the emitter takes the model, then the group,
# then the part's interfaces and its number.
CODE = [
    ("include/tvAPIC.h", emit_header.emit),
    ("include/tvapi/declarations.h", emit_tvapi_declarations.emit),
    ("include/tvapi/{group}.h", emit_tvapi.emit),
    ("api/{group}_{n}.cpp", export_chunk),
    ("api/event_registrations.cpp", emit_registrations.emit),
    ("exports.map", emit_version_script.emit),
    ("check/interfaces.cpp", emit_exports.emit_interface_table),
    ("server/handlers.cpp", emit_server.emit),
    ("server/wire_signatures.h", emit_wire_signatures.emit),
    ("sim/defaults_{group}.h", emit_sim.emit),
    ("probe/probe_faces.h", emit_probe_names.emit),
    ("probe/{group}_{n}.cpp", emit_probes.emit),
    ("probe/registry.cpp", emit_probe_registry.emit),
    ("probe/event_faces.h", emit_event_probe_header.emit),
    ("probe/event_faces.cpp", emit_event_probes.emit),
    ("sweep/{group}_{n}.cpp", emit_sweep.emit),
    ("sweep/cases.cpp", emit_sweep_index.emit),
    ("events_tests/registrations.cpp", emit_registration_sweep.emit),
    ("python/tvapic/_generated_remote.py", emit_py_remote.emit),
    ("python/tvapic/_generated_remote.pyi", emit_py_remote_stub.emit),
    ("python/tvapic/_generated_exports.py", emit_py_native.emit),
    ("python/tvapic/native.pyi", emit_py_native_stub.emit),
    ("python/tvapic/_generated_classes.py", emit_py_objects.emit),
    ("python/tvapic/objects.pyi", emit_py_objects_stub.emit),
    ("dotnet/Native.g.cs", emit_csharp_native.emit),
    ("dotnet/Objects.g.cs", emit_csharp_objects.emit),
    ("dotnet/Remote.g.cs", emit_csharp_remote.emit),
    ("tvAPIC.catalogue.json", emit_json.emit),
]

# The API reference's pages, the same way; their emitters take the Reference.
REFERENCE = [
    ("index.html", emit_reference_index.emit),
    ("{group}.html", emit_reference_group.emit),
    ("enums.html", emit_reference_enums.emit),
    ("protocol.html", emit_reference_protocol.emit),
    ("protocol.md", document("protocol.md")),
    ("search-index.js", emit_reference_search.emit),
    ("search.js", asset("search.js")),
    ("style.css", asset("style.css")),
]


def outputs(table, model, subject):
    """{relative path: function producing its text} of a table, for the
    model's groups and parts; `subject` is what the emitters take first."""
    files = {}
    for path, emit in table:
        if "{n}" in path:
            for group in model.groups:
                for n, part in enumerate(model.chunks(group)):
                    files[path.format(group=group, n=n)] = lambda e=emit, g=group, p=part, k=n: e(subject, g, p, k)
        elif "{group}" in path:
            for group in model.groups:
                files[path.format(group=group)] = lambda e=emit, g=group: e(subject, g)
        else:
            files[path] = lambda e=emit: e(subject)
    return files


def write_if_changed(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    if path.exists() and path.read_text(encoding="utf-8") == text:
        return
    path.write_text(text, encoding="utf-8")


def main(argv=None):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--catalogue", required=True, type=Path)
    parser.add_argument("--out", type=Path)
    parser.add_argument("--list", action="store_true", help="print the output files and exit")
    parser.add_argument("--reference", type=Path, metavar="DOCS",
                        help="write the API reference, with the documents of the folder DOCS")
    parser.add_argument("--exports", action="store_true", help="print every export name, one per line, and exit")
    parser.add_argument("--protocol", action="store_true",
                        help="print the remote functions' wire signatures as docs/protocol.md lists them, and exit")
    parser.add_argument("--stats", action="store_true",
                        help="print the shape counts per group and the host's figures beside ours, and exit")
    args = parser.parse_args(argv)
    try:
        model = model_mod.load(args.catalogue)
    except model_mod.CatalogueError as e:
        print(f"tvgen: {e}", file=sys.stderr)
        return 1
    if args.protocol:
        print(protocol_doc.tables(model), end="")
        return 0
    if args.stats:
        print(f"{stats.table(model)}\n\n{stats.calibration(model)}")
        return 0
    if args.exports:
        print("\n".join(model.export_names()))
        return 0
    if args.reference:
        files = outputs(REFERENCE, model, Reference(model, args.reference))
    else:
        files = outputs(CODE, model, model)
    if args.list:
        print(";".join(sorted(files)))
        return 0
    if not args.out:
        parser.error("--out is required unless --list is given")
    for rel, make in files.items():
        write_if_changed(args.out / rel, make())
    return 0


if __name__ == "__main__":
    sys.exit(main())
