#!/usr/bin/env python3
"""Checks the library's export table against the catalogue: every expected
export is there, with its exact name, and nothing else is.

    check_exports.py GENERATOR CATALOGUE LIBRARY [--objdump PATH]

An ELF library's dynamic symbols are read with nm; a Windows DLL's export
table with the objdump of its toolchain (--objdump).
"""
import argparse
import re
import subprocess
import sys

# One line of objdump -p's "[Ordinal/Name Pointer] Table": "\t[  12] Name".
PE_EXPORT = re.compile(r"^\s*\[\s*\d+\]\s+(\S+)$")


def elf_exports(library):
    symbols = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True,
                             text=True).stdout
    return {line.split()[-1] for line in symbols.splitlines() if line.split()[1] in ("T", "W")}


def pe_exports(library, objdump):
    dump = subprocess.run([objdump, "-p", library], check=True, capture_output=True, text=True).stdout
    _, found, table = dump.partition("[Ordinal/Name Pointer] Table")
    if not found:
        sys.exit(f"{library}: no export name table in `{objdump} -p`")
    names = []
    for line in table.splitlines()[1:]:
        match = PE_EXPORT.match(line)
        if not match:
            break
        names.append(match[1])
    if len(names) != len(set(names)):
        sys.exit(f"{library}: a name is exported twice")
    return set(names)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("generator")
    parser.add_argument("catalogue")
    parser.add_argument("library")
    parser.add_argument("--objdump", help="read a Windows DLL's export table with this objdump")
    args = parser.parse_args()
    expected = set(subprocess.run([sys.executable, args.generator, "--catalogue", args.catalogue, "--exports"],
                                  check=True, capture_output=True, text=True).stdout.split())
    exported = pe_exports(args.library, args.objdump) if args.objdump else elf_exports(args.library)
    missing = sorted(expected - exported)
    extra = sorted(exported - expected)
    print(f"{len(expected & exported)} of {len(expected)} expected exports present; {len(extra)} unexpected")
    for name in missing[:20]:
        print(f"missing: {name}")
    for name in extra[:20]:
        print(f"unexpected: {name}")
    return 1 if missing or extra else 0


if __name__ == "__main__":
    sys.exit(main())
