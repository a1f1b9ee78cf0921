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
from . import emit_server, emit_events, emit_exports, emit_header, emit_probes, emit_py_remote, emit_sim, emit_sweep
from . import emit_apidoc, emit_pynative, emit_pyobjects, emit_stubs, emit_tvapi
from . import emit_csharp_native, emit_csharp_objects, emit_csharp_remote, emit_json


def outputs(model):
    """Map of relative output path -> function producing its text."""
    files = {
        "include/tvAPIC.h": lambda: emit_header.emit(model),
        "include/tvapi/declarations.h": lambda: emit_tvapi.emit_declarations(model),
        "probe/probe_faces.h": lambda: emit_probes.emit_declarations(model),
    }
    for group in model.groups:
        files[f"include/tvapi/{group}.h"] = lambda g=group: emit_tvapi.emit_group(model, g)
        files[f"sim/defaults_{group}.h"] = lambda g=group: emit_sim.emit_group(model, g)
        for n, part in enumerate(model.chunks(group)):
            files[f"api/{group}_{n}.cpp"] = lambda g=group, p=part: emit_exports.emit_chunk(model, g, p)
            # Faces of interfaces that take handlers come from emit_events.
            files[f"probe/{group}_{n}.cpp"] = lambda g=group, p=part: emit_probes.emit_chunk(model, g, model.plain(p))
            files[f"sweep/{group}_{n}.cpp"] = lambda g=group, p=part, k=n: emit_sweep.emit_chunk(model, g, p, k)
    files["check/interfaces.cpp"] = lambda: emit_exports.emit_interface_table(model)
    files["probe/registry.cpp"] = lambda: emit_probes.emit_registry(model)
    files["server/handlers.cpp"] = lambda: emit_server.emit_handlers(model)
    files["server/wire_signatures.h"] = lambda: emit_server.emit_signature_table(model)
    files["python/tvapic/_remote.py"] = lambda: emit_py_remote.emit(model)
    files["python/tvapic/_native.py"] = lambda: emit_pynative.emit(model)
    files["python/tvapic/_objects.py"] = lambda: emit_pyobjects.emit(model)
    for rel, make in emit_stubs.outputs(model).items():
        files[f"python/tvapic/{rel}"] = make
    files["tvAPIC.catalogue.json"] = lambda: emit_json.emit(model)
    files["dotnet/Native.g.cs"] = lambda: emit_csharp_native.emit(model)
    files["dotnet/Objects.g.cs"] = lambda: emit_csharp_objects.emit(model)
    files["dotnet/Remote.g.cs"] = lambda: emit_csharp_remote.emit(model)
    files["exports.map"] = lambda: version_script(model)
    files["sweep/cases.cpp"] = lambda: emit_sweep.emit_index(model)
    files.update(emit_events.outputs(model))
    return files


def version_script(model):
    """The ELF version script: the catalogue's exports and nothing else, so
    that no template instantiation of a library the code uses leaks out."""
    names = "".join(f"    {name};\n" for name in model.export_names())
    return f"{{\n  global:\n{names}  local: *;\n}};\n"


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
    files = emit_apidoc.outputs(model, args.reference) if args.reference else outputs(model)
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
