#!/usr/bin/env python3
"""Checks tvAPIC.catalogue.json as a binding generator reads it: the export
names it lists are exactly the library's dynamic symbols, and sample entries
say what the header and the protocol reference say of them.

    check_catalogue_json.py JSON LIBRARY
"""
import json
import sys
import unittest

from check_exports import elf_exports

JSON_PATH = LIBRARY = None

# Written down from tvAPIC.h and docs/protocol.md, not from the generator.
GET_NAME = {"name": "GetName", "export": "ITavraDocument_GetName",
            "c_signature": "tvWChar* ITavraDocument_GetName(void* handle)",
            "result": {"kind": "text", "c_type": "tvWChar*", "ownership": "free"}, "params": [],
            "remote": True, "wire": {"request": [{"param": "handle", "kind": "u64"}], "response": ["string"]}}
HYPERLINK_WIRE = {"request": [{"param": "handle", "kind": "u64"}, {"param": "linkType", "kind": "i32 slot"}],
                  "response": ["i32 slot", "string"]}
CREATE_OBJECT_CALLBACK = "typedef int (*IDrawingObjectEvents_CreateObjectCallback)(const ObjectReferenceVector_t* objects)"


def exports(data):
    """Every export the file lists, in its order."""
    names = [f["export"] for f in data["functions"]]
    names += [op["export"] for i in data["interfaces"] for op in i["operations"]]
    names += [e["export"] for s in data["event_sources"] for e in s["events"]]
    return names


class CatalogueJson(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        with open(JSON_PATH, encoding="utf-8") as f:
            cls.data = json.load(f)
        cls.ops = {op["export"]: op for i in cls.data["interfaces"] for op in i["operations"]}

    def test_the_export_names_are_the_library_exports(self):
        names = exports(self.data)
        self.assertEqual(len(names), len(set(names)), "an export listed twice")
        self.assertEqual(len(names), 9447)
        self.assertEqual(set(names), elf_exports(LIBRARY))

    def test_entries_read_as_the_header_and_protocol_state_them(self):
        self.assertEqual(self.data["format"], "tvAPIC catalogue")
        self.assertEqual(self.ops["ITavraDocument_GetName"], GET_NAME)
        self.assertEqual(self.ops["IDrawingObject_GetHyperLinkParam"]["wire"], HYPERLINK_WIRE)
        self.assertEqual(sum(op["remote"] for op in self.ops.values()), 293)
        interfaces = {i["name"]: i for i in self.data["interfaces"]}
        self.assertEqual(interfaces["IDocuments"]["iid"], "c794983c-491c-422f-9f38-754af0db7c6b")
        self.assertIsNone(interfaces["IApplication"]["iid"])
        self.assertEqual(interfaces["IApplication"]["root"], "application")
        add = self.ops["IDocuments_Add"]
        self.assertEqual([(p["name"], p["kind"], p["mode"], p["c_type"]) for p in add["params"]],
                         [("documentType", "int", "in", "int"), ("visible", "bool", "in", "int")])
        self.assertEqual(add["result"], {"kind": "object", "interface": "ITavraDocument", "c_type": "void*",
                                         "ownership": "release"})
        gabarit = self.ops["ITavraDocument_GetDocumentGabarit"]["params"][0]
        self.assertEqual((gabarit["mode"], gabarit["c_type"]), ("out", "double*"))
        events = {e["export"]: e for s in self.data["event_sources"] for e in s["events"]}
        create = events["IDrawingObjectEvents_AddCreateObjectHandler"]
        self.assertEqual(create["callback"]["c_signature"], CREATE_OBJECT_CALLBACK)
        self.assertEqual(create["callback"]["params"][0]["element"], "IDrawingObject")


if __name__ == "__main__":
    JSON_PATH, LIBRARY = sys.argv[1:3]
    unittest.main(argv=sys.argv[:1])
