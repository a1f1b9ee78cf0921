"""The wire signatures the bridge is generated with are the protocol
reference's, function for function and in the same order per interface."""
import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import catalogue, emit_bridge  # noqa: E402
from tvgen.__main__ import GROUPS  # noqa: E402

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


def generated():
    cat = catalogue.load(ROOT / "catalogue", GROUPS)
    tables = {}
    for op in emit_bridge.remotable(cat):
        request, response = emit_bridge.wire_signature(op)
        tables.setdefault(op.interface.name, []).append(
            (op.export, ", ".join(request) or "nothing", ", ".join(response) or "nothing"))
    return tables


class ProtocolReference(unittest.TestCase):
    def test_every_remotable_function_has_the_reference_signature_in_order(self):
        ref, gen = reference(), generated()
        self.assertEqual(sum(len(v) for v in ref.values()), 293)
        self.assertEqual(sorted(gen), sorted(ref))
        for interface, rows in ref.items():
            with self.subTest(interface=interface):
                self.assertEqual(gen[interface], rows)


if __name__ == "__main__":
    unittest.main()
