#!/usr/bin/env python3
"""The library's export table against tvAPIC.catalogue.json, the API as data
that binding generators read: the names it lists are exactly the library's
exports, 9,447 of them, and sample entries say what the header and the
protocol reference say of them.

    check_exports.py JSON LIBRARY [--objdump PATH]

An ELF library's dynamic symbols are read with nm; a Windows DLL's export
table with the objdump of its toolchain (--objdump).
"""
import argparse
import json
import re
import subprocess
import sys
import unittest

# One line of objdump -p's "[Ordinal/Name Pointer] Table": "\t[  12] Name".
PE_EXPORT = re.compile(r"^\s*\[\s*\d+\]\s+(\S+)$")

# Written down from tvAPIC.h and docs/protocol.md, not from the generator.
GET_NAME = {"name": "GetName", "export": "ITavraDocument_GetName",
            "c_signature": "tvWChar* ITavraDocument_GetName(void* handle)",
            "result": {"kind": "text", "c_type": "tvWChar*", "ownership": "free"}, "params": [],
            "remote": True, "wire": {"request": [{"param": "handle", "kind": "u64"}], "response": ["string"]}}
HYPERLINK_WIRE = {"request": [{"param": "handle", "kind": "u64"}, {"param": "linkType", "kind": "i32 slot"}],
                  "response": ["i32 slot", "string"]}
CREATE_OBJECT_CALLBACK = "typedef int (*IDrawingObjectEvents_CreateObjectCallback)(const ObjectReferenceVector_t* objects)"


def elf_exports(library):
    symbols = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True,
                             text=True).stdout
    return [line.split()[-1] for line in symbols.splitlines() if line.split()[1] in ("T", "W")]


def pe_exports(library, objdump):
    dump = subprocess.run([objdump, "-p", library], check=True, capture_output=True, text=True).stdout
    table = dump.partition("[Ordinal/Name Pointer] Table")[2].splitlines()[1:]
    names = []
    while table and PE_EXPORT.match(table[0]):
        names.append(PE_EXPORT.match(table.pop(0))[1])
    return names


class Exports(unittest.TestCase):
    def test_the_library_exports_exactly_the_names_the_file_lists(self):
        data = ARGS.data
        listed = [f["export"] for f in data["functions"]]
        listed += [op["export"] for i in data["interfaces"] for op in i["operations"]]
        listed += [e["export"] for s in data["event_sources"] for e in s["events"]]
        exported = pe_exports(ARGS.library, ARGS.objdump) if ARGS.objdump else elf_exports(ARGS.library)
        self.assertEqual(len(listed), 9447)
        self.assertEqual(len(exported), 9447, "a name exported twice, or more than the API")
        self.assertEqual(sorted(set(exported) ^ set(listed))[:20], [])

    def test_entries_read_as_the_header_and_protocol_state_them(self):
        data = ARGS.data
        ops = {op["export"]: op for i in data["interfaces"] for op in i["operations"]}
        self.assertEqual(data["format"], "tvAPIC catalogue")
        self.assertEqual(ops["ITavraDocument_GetName"], GET_NAME)
        self.assertEqual(ops["IDrawingObject_GetHyperLinkParam"]["wire"], HYPERLINK_WIRE)
        self.assertEqual(sum(op["remote"] for op in ops.values()), 293)
        interfaces = {i["name"]: i for i in data["interfaces"]}
        self.assertEqual(interfaces["IDocuments"]["iid"], "c794983c-491c-422f-9f38-754af0db7c6b")
        self.assertEqual((interfaces["IApplication"]["iid"], interfaces["IApplication"]["root"]), (None, "application"))
        add = ops["IDocuments_Add"]
        self.assertEqual([(p["name"], p["kind"], p["mode"], p["c_type"]) for p in add["params"]],
                         [("documentType", "int", "in", "int"), ("visible", "bool", "in", "int")])
        self.assertEqual(add["result"], {"kind": "object", "interface": "ITavraDocument", "c_type": "void*",
                                         "ownership": "release"})
        gabarit = ops["ITavraDocument_GetDocumentGabarit"]["params"][0]
        self.assertEqual((gabarit["mode"], gabarit["c_type"]), ("out", "double*"))
        events = {e["export"]: e for s in data["event_sources"] for e in s["events"]}
        create = events["IDrawingObjectEvents_AddCreateObjectHandler"]["callback"]
        self.assertEqual((create["c_signature"], create["params"][0]["element"]),
                         (CREATE_OBJECT_CALLBACK, "IDrawingObject"))


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("json")
    parser.add_argument("library")
    parser.add_argument("--objdump", help="read a Windows DLL's export table with this objdump")
    ARGS = parser.parse_args()
    with open(ARGS.json, encoding="utf-8") as f:
        ARGS.data = json.load(f)
    sys.exit(not unittest.main(argv=sys.argv[:1], exit=False).result.wasSuccessful())
