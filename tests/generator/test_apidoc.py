"""The API reference in the build tree against the catalogue: every export on
its group's page under its interface, with its C signature, the interface's
IID text, what the caller owns of its result and whether it is remotable.

    test_apidoc.py <build>/docs/api
"""
import re
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import catalogue, events as events_mod  # noqa: E402
from tvgen.__main__ import GROUPS  # noqa: E402
from tvgen.ctypes_map import c_signature  # noqa: E402

PAGES = Path(sys.argv.pop(1)) if len(sys.argv) > 1 else ROOT / "build" / "docs" / "api"
ROW = re.compile(r"^\| `([^`]+) (\w+)\(([^`]*)\)` \| ([^|]*) \| ([^|]*) \|")


def load():
    cat = catalogue.load(ROOT / "catalogue", list(GROUPS))
    return cat, events_mod.load(ROOT / "catalogue", cat)


def page_rows(group):
    """{export: (interface section, result, params, owns, remote)} of a group's page."""
    rows, section = {}, None
    for line in (PAGES / f"{group}.md").read_text(encoding="utf-8").splitlines():
        if line.startswith("## "):
            section = line[3:].strip()
        m = ROW.match(line)
        if m:
            result, name, params, owns, remote = m.groups()
            rows[name] = (section, result, params, owns.strip(), remote.strip())
    return rows


def sections(group):
    """{interface: the text of its section} of a group's page."""
    text = (PAGES / f"{group}.md").read_text(encoding="utf-8")
    return {part.split("\n", 1)[0].strip(): part for part in text.split("\n## ")[1:]}


class ApiReference(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cat, cls.events = load()

    def test_every_operation_is_on_its_groups_page_as_the_header_declares_it(self):
        seen = 0
        for group in self.cat.groups:
            rows = page_rows(group)
            for op in self.cat.ops(group):
                with self.subTest(export=op.export):
                    section, result, params, owns, remote = rows[op.export]
                    self.assertEqual(section, op.interface.name)
                    self.assertEqual((result, params), c_signature(op))
                    self.assertEqual(remote.startswith("yes"), op.interface.remote)
                    seen += 1
        self.assertGreater(seen, 9000)

    def test_what_the_caller_owns_follows_the_result(self):
        expected = {"text": "`free`", "object": "`IAPIObject_Release`", "value": "always null"}
        for group in self.cat.groups:
            rows = page_rows(group)
            for op in self.cat.ops(group):
                owns = rows[op.export][3]
                kind = op.result.kind
                if kind == "vector":
                    self.assertIn(f"`{op.result.name}_Delete`", owns, op.export)
                    if op.result.name == "ObjectReferenceVector":
                        self.assertIn("`IAPIObject_Release`", owns, op.export)
                elif kind in expected:
                    self.assertIn(expected[kind], owns, op.export)
                else:
                    self.assertEqual(owns, "nothing", op.export)

    def test_each_interface_names_its_iid_text_or_its_root(self):
        for group in self.cat.groups:
            found = sections(group)
            for i in self.cat.interfaces.values():
                if i.group != group:
                    continue
                with self.subTest(interface=i.name):
                    head = found[i.name].split("\n\n", 2)[1]
                    self.assertIn(f"IID `{i.iid}`" if i.iid else f"rooted ({i.root})", head)
                    self.assertIn(f"Remotable: {'yes' if i.remote else 'no'}.", head)

    def test_handler_registrations_are_listed_with_their_callbacks(self):
        if not self.events.sources:
            self.skipTest("no events catalogue")
        text = (PAGES / "events.md").read_text(encoding="utf-8") + "".join(
            (PAGES / f"{g}.md").read_text(encoding="utf-8") for g in self.cat.groups if g != "events")
        for e in self.events.events():
            self.assertIn(f"`void {e.export}(", text, e.export)
            self.assertIn(f"(*{e.callback_type})(", text, e.export)

    def test_the_index_lists_every_group_and_the_vector_functions(self):
        index = (PAGES / "index.md").read_text(encoding="utf-8")
        for group in self.cat.groups:
            self.assertIn(f"[{group}]({group}.md)", index)
        for name in ("IAPIObject_AddRef", "StringVector_Delete", "PropertyValue_GetString"):
            self.assertIn(f" {name}(", index)


if __name__ == "__main__":
    unittest.main()
