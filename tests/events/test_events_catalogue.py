"""The events catalogue: what the generator refuses, and what the project's
own events file holds."""
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import model  # noqa: E402
from tvgen.model import catalogue, events  # noqa: E402

IID = "1CE45EFA-4362-40C5-B4E7-747838206EEC"
APPLICATION = ("interface ITavraDocument 10383170-7577-4552-997a-8a2524677c16\n"
               "interface IWindow 3d58d0df-3258-469c-aa5f-ec4ae5566496\n  int GetWidth()\n")


def load(text):
    with tempfile.TemporaryDirectory() as d:
        Path(d, "application.api").write_text(APPLICATION)
        Path(d, "events.api").write_text(text)
        cat = catalogue.load(d, ["application"])
        return cat, events.load(d, cat)


class Refusals(unittest.TestCase):
    def refused(self, text, fragment, line):
        with self.assertRaises(catalogue.CatalogueError) as e:
            load(text)
        self.assertIn(fragment, str(e.exception))
        self.assertIn(f"events.api:{line}", str(e.exception))

    def test_removal_must_match_the_key(self):
        self.refused(f"events IAEvents {IID} keyed\n  on void Open()\n  void RemoveAllHandlers()\n",
                     "needs 'void RemoveAllHandlers(text key)'", 1)
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open()\n",
                     "needs 'void RemoveAllHandlers()'", 1)

    def test_inout_only_where_the_host_reads_back(self):
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open(inout double x)\n", "'inout' applies", 2)
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open(StringVector files)\n", "only as 'inout'", 2)

    def test_duplicates(self):
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open()\n  on bool Open()\n", "declared twice", 3)
        self.refused(f"events ITavraDocument {IID} unkeyed\n", "declared twice", 1)
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open() via RemoveAllHandlers\n"
                     "  void RemoveAllHandlers()\n", "declared twice", 3)


class TheProjectsEvents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cat = cls.events = model.load(ROOT / "catalogue")  # one model holds both

    def test_every_events_interface_and_registration(self):
        sources = [s for s in self.events.sources.values() if s.kind == "events"]
        self.assertEqual(len(sources), 23)
        self.assertEqual(sum(len(s.events) for s in sources), 236)
        names = set(self.cat.export_names())
        for name in ["ITavraDocumentEvents_AddProcessActivate", "ITavraLibraryActions_AddRunCommandHandler",
                     "IPropertyUserWindow_SetCreateControlHandler", "IModelObjectEvents_RemoveAllObjectsTypes",
                     "ISpecificationObjectEvents_Add", "ITavraDocument3DEventsResult_GetNotifyObject"]:
            self.assertIn(name, names)
        self.assertNotIn("ITavraDocumentEvents_AddProcessActivateHandler", names)

    def test_model_object_events_split_begin_and_completion(self):
        model = {e.name: e.result.kind for e in self.events.sources["IModelObjectEvents"].events}
        self.assertEqual(model["BeginDeleteObject"], "bool")
        self.assertEqual(model["DeleteObject"], "void")
        drawing = {e.result.kind for e in self.events.sources["IDrawingObjectEvents"].events}
        self.assertEqual(drawing, {"bool"})


if __name__ == "__main__":
    unittest.main()
