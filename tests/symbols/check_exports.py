#!/usr/bin/env python3
"""Checks the shared library's dynamic symbol table against the catalogue:
every expected export is there, with its exact name, and nothing else is."""
import subprocess
import sys

generator, catalogue, library = sys.argv[1:4]
expected = set(subprocess.run([sys.executable, generator, "--catalogue", catalogue, "--exports"],
                              check=True, capture_output=True, text=True).stdout.split())
symbols = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
exported = {line.split()[-1] for line in symbols.splitlines() if line.split()[1] in ("T", "W")}
missing = sorted(expected - exported)
extra = sorted(exported - expected)
print(f"{len(expected & exported)} of {len(expected)} expected exports present; {len(extra)} unexpected")
for name in missing[:20]:
    print(f"missing: {name}")
for name in extra[:20]:
    print(f"unexpected: {name}")
sys.exit(1 if missing or extra else 0)
