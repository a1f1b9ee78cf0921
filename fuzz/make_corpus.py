#!/usr/bin/env python3
"""Seed corpus for the request fuzzer, built from the protocol reference.

One valid request per function of the reference's tables (handles 0, short
texts, slots carrying a value), a second one with every slot empty where the
function has slots, and a few requests the server must refuse. Optionally a
libFuzzer dictionary of the function names, bare and as counted names.

    make_corpus.py docs/protocol.md OUT_DIR [--dict FILE]
"""
import argparse
import re
import struct
import sys
from pathlib import Path

ROW = re.compile(r"^\| `(?P<name>\w+)` \| (?P<request>[^|]+) \| (?P<response>[^|]+) \|$")
KINDS = ("u64", "i32", "f64", "string", "i32 slot", "f64 slot", "string vector")
NAME_LIMIT = 4096
TEXT_LIMIT = 64 << 20


def u64(v):
    return struct.pack("<Q", v)


def i32(v):
    return struct.pack("<i", v)


def f64(v):
    return struct.pack("<d", v)


def text(s):
    data = s.encode("utf-8") if isinstance(s, str) else s
    return u64(len(data)) + data


def kinds(cell):
    """The wire kinds of a cell: each value is its kind, then its name and meaning."""
    cell = cell.strip()
    if cell == "nothing":
        return []
    out = []
    for value in cell.split(","):
        kind = next((k for k in sorted(KINDS, key=len, reverse=True) if value.strip().startswith(k)), None)
        if kind is None:
            raise ValueError(f"unknown kind in {value.strip()!r}")
        out.append(kind)
    return out


def functions(reference):
    """(name, request kinds) of every function row, in the reference's order."""
    found = []
    in_functions = False
    for number, line in enumerate(reference.read_text(encoding="utf-8").splitlines(), 1):
        if line.startswith("## "):
            in_functions = line.strip() == "## Functions"
        m = ROW.match(line.strip())
        if not in_functions or not m:
            continue
        try:
            found.append((m["name"], kinds(m["request"]), kinds(m["response"])))
        except ValueError as e:
            sys.exit(f"{reference}:{number}: {e}")
    return found


def request(name, request_kinds, slot_flag):
    """A request with harmless values; slots carry a value when slot_flag is 0."""
    out = text(name)
    for kind in request_kinds:
        if kind == "u64":
            out += u64(0)
        elif kind == "i32":
            out += i32(1)
        elif kind == "f64":
            out += f64(1.5)
        elif kind == "string":
            out += text("Tavra \u00e9t\u00e9 \u2713 \U0001d11e")
        elif kind == "i32 slot":
            out += bytes([slot_flag]) + (i32(7) if slot_flag == 0 else b"")
        elif kind == "f64 slot":
            out += bytes([slot_flag]) + (f64(2.5) if slot_flag == 0 else b"")
        else:
            raise ValueError(f"{name}: {kind} is not a request kind")
    return out


def refused():
    """Requests that end without an answer: each names the rule it breaks."""
    set_dir = text("IApplication_SetCurrentDirectory")
    return {
        "bad-unknown-name": text("INoSuchInterface_NoSuchFunction"),
        "bad-name-case": text("iapplication_getdocuments"),
        "bad-empty-name": u64(0),
        "bad-name-cut-short": u64(30) + b"IApplication_",
        "bad-name-over-limit": u64(NAME_LIMIT + 1) + b"I" * 64,
        "bad-name-count-2-63": u64(1 << 63) + b"IApplication",
        "bad-text-over-limit": set_dir + u64(TEXT_LIMIT + 1) + b"x" * 16,
        "bad-text-count-2-63": set_dir + u64(1 << 63),
        "bad-text-invalid-utf8": set_dir + text(b"\xff\xfe\xc3"),
        "bad-text-surrogate-utf8": set_dir + text(b"\xed\xa0\x80"),
        "bad-arguments-cut-short": text("IDocuments_Add") + u64(0) + i32(1),
        "bad-slot-cut-short": text("ITavraDocument_GetDocumentGabarit") + u64(0) + b"\x00" + f64(1)[:3],
    }


def dictionary_entry(data):
    return '"' + "".join(chr(b) if 0x20 <= b < 0x7F and chr(b) not in '"\\' else f"\\x{b:02x}" for b in data) + '"'


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("reference", type=Path)
    parser.add_argument("out", type=Path)
    parser.add_argument("--dict", type=Path)
    args = parser.parse_args()

    table = functions(args.reference)
    if not table:
        sys.exit(f"{args.reference}: no function rows found")
    seeds = {}
    for name, request_kinds, _ in table:
        seeds[name] = request(name, request_kinds, 0)
        if any(k.endswith("slot") for k in request_kinds):
            seeds[name + "-empty-slots"] = request(name, request_kinds, 1)
    seeds.update(refused())

    args.out.mkdir(parents=True, exist_ok=True)
    for stale in args.out.iterdir():
        if stale.name not in seeds:
            stale.unlink()
    for file_name, data in seeds.items():
        (args.out / file_name).write_bytes(data)

    if args.dict:
        lines = []
        for name, _, _ in table:
            lines.append(dictionary_entry(name.encode()))
            lines.append(dictionary_entry(text(name)))
        args.dict.parent.mkdir(parents=True, exist_ok=True)
        args.dict.write_text("\n".join(lines) + "\n", encoding="ascii")
    print(f"make_corpus: {len(table)} functions, {len(seeds)} seeds in {args.out}")


if __name__ == "__main__":
    main()
