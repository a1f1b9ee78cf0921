"""The protocol reference's function tables against the bridge: every
remotable function with the wire kinds the bridge is generated with, in the
same order per interface, and each value's name and meaning as the catalogue
has them."""
import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import protocol_doc  # noqa: E402
from tvgen.model import catalogue, wire  # noqa: E402

ROW = re.compile(r"^\| `(I\w+_\w+)` \| ([^|]+) \| ([^|]+) \|$")


def reference():
    """{interface: [(function, request, response), ...]} from docs/protocol.md."""
    tables = {}
    for line in (ROOT / "docs" / "protocol.md").read_text(encoding="utf-8").splitlines():
        m = ROW.match(line.strip())
        if m:
            name, request, response = m.groups()
            tables.setdefault(name.split("_", 1)[0], []).append((name, request.strip(), response.strip()))
    return tables


class ProtocolReference(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cat = catalogue.load(ROOT / "catalogue")
        cls.ref = reference()

    def test_every_remotable_function_has_the_bridges_wire_kinds_in_order(self):
        generated = {}
        for op in wire.remotable(self.cat):
            generated.setdefault(op.interface.name, []).append((op.export, *wire.wire_signature(op)))
        self.assertEqual(sum(len(v) for v in self.ref.values()), 293)
        self.assertEqual(sorted(generated), sorted(self.ref))
        for interface, rows in self.ref.items():
            with self.subTest(interface=interface):
                kinds = [(name, protocol_doc.kinds(req), protocol_doc.kinds(resp)) for name, req, resp in rows]
                self.assertEqual(kinds, [(n, list(q), list(r)) for n, q, r in generated[interface]])

    def test_values_carry_their_parameters_names_and_meanings(self):
        ops = {op.export: op for op in wire.remotable(self.cat)}
        for rows in self.ref.values():
            for name, request, response in rows:
                op = ops[name]
                self.assertEqual(request, ", ".join(protocol_doc.request(op)) or "nothing", name)
                self.assertEqual(response, ", ".join(protocol_doc.response(op)) or "nothing", name)
        rows = {name: (req, resp) for rows in self.ref.values() for name, req, resp in rows}
        self.assertEqual(rows["IApplication_GetMainWindowHandle"], ("nothing", "u64: int64"))
        self.assertEqual(rows["IApplication_StopCurrentProcess"][0], "i32 cancel: bool, u64 document: ITavraDocument")
        self.assertEqual(rows["IDocuments_Open"], ("u64 handle: IDocuments, string fileName, i32 visible: bool, "
                                                   "i32 readOnly: bool", "u64: ITavraDocument"))
        self.assertEqual(rows["IApplication_GetSystemVersion"][1],
                         "i32 slot major, i32 slot minor, i32 slot release, i32 slot build, i32: bool")


if __name__ == "__main__":
    unittest.main()
