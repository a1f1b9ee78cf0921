"""The events catalogue: what the generator refuses, and what the project's
own events file holds."""
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import model  # noqa: E402
from tvgen.model import catalogue, events, types  # noqa: E402

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

    def test_callbacks_reach_only_known_kinds(self):
        self.refused(f"events IAEvents {IID} unkeyed\n  on text Open()\n", "a callback returns", 2)
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open(DoubleVector v)\n", "cannot reach a callback", 2)
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open(IMissing m)\n  void RemoveAllHandlers()\n",
                     "IMissing is not declared", 2)

    def test_duplicates(self):
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open()\n  on bool Open()\n", "declared twice", 3)
        self.refused(f"events ITavraDocument {IID} unkeyed\n", "declared twice", 1)
        self.refused(f"events IAEvents {IID} unkeyed\n  on void Open() via RemoveAllHandlers\n"
                     "  void RemoveAllHandlers()\n", "declared twice", 3)

    def test_handlers_blocks(self):
        self.refused("handlers IMissing\n  on void Create()\n", "need a queried interface", 1)
        self.refused("handlers IWindow unqueried\n", "is an API object", 1)
        self.refused("handlers IWindow\n  on void Create()\n  void Reset()\n", "holds events only", 3)
        self.refused(f"events IAEvents {IID} sometimes\n", "keyed|unkeyed", 1)


class Accepted(unittest.TestCase):
    def test_slots_names_and_forms(self):
        cat, ev = load(f"events IAEvents {IID} keyed\n"
                       "  on bool Opened(ITavraDocument document, inout text name)\n"
                       "  on bool Activate(int process) via AddActivate\n"
                       "  void RemoveAllHandlers(text key)\n"
                       "handlers IWindow\n  on pointer Create(pointer parent) via SetCreateHandler\n"
                       "handlers IActions unqueried\n  on void Run(uint32 command, tvModeEnum mode)\n")
        source = ev.sources["IAEvents"]
        self.assertEqual([getattr(m, "registration", m.name) for m in source.members],
                         ["AddOpenedHandler", "AddActivate", "RemoveAllHandlers"])
        self.assertEqual(cat.interfaces["IAEvents"].iid, IID)
        self.assertEqual(cat.interfaces["IAEvents"].group, "events")
        opened = source.events[0]
        self.assertEqual(types.callback_host_signature(opened),
                         "bool(const tvapi::SmartPtr<tvapi::ITavraDocument>&, tvapi::WString&)")
        self.assertEqual([types.callback_c_param(p) for p in opened.params], ["void*", "tvWChar**"])
        self.assertEqual(types.registration_params(opened),
                         "void* events, const tvWChar* key, IAEvents_OpenedCallback callback")
        window = ev.sources["IWindow"]
        self.assertEqual([getattr(m, "registration", m.name) for m in window.members],
                         ["GetWidth", "SetCreateHandler"])
        self.assertEqual(types.registration_params(ev.sources["IActions"].events[0]),
                         "void* handle, IActions_RunCallback callback")


class TheProjectsEvents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cat = cls.events = model.load(ROOT / "catalogue")  # one model holds both

    def test_every_events_interface_and_registration(self):
        sources = [s for s in self.events.sources.values() if s.kind == "events"]
        self.assertEqual(len(sources), 23)
        self.assertEqual(sum(len(s.events) for s in sources), 236)
        self.assertEqual({s.name for s in sources if not s.keyed},
                         {"IDrawingObjectEvents", "IModelObjectEvents", "ISpecificationObjectEvents",
                          "IContentDialogEvents"})
        names = set(self.cat.export_names())
        self.assertEqual(sum(1 for n in names if n.endswith("_RemoveAllHandlers")), 23)
        for name in ["ITavraDocumentEvents_AddProcessActivate", "IApplicationEvents_AddBeginOpenDocumentHandler",
                     "ITavraLibraryActions_AddRunCommandHandler", "IPropertyUserWindow_SetCreateControlHandler",
                     "IPropertyUserWindow_SetDestroyControlHandler", "IModelObjectEvents_RemoveAllObjectsTypes",
                     "ISpecificationObjectEvents_Add", "IDrawingObjectEventsResult_GetSheetPoint",
                     "ITavraDocument3DEventsResult_GetNotifyObject"]:
            self.assertIn(name, names)
        self.assertNotIn("ITavraDocumentEvents_AddProcessActivateHandler", names)

    def test_iid_texts_keep_their_case(self):
        iids = {n: self.cat.interfaces[n].iid for n in
                ["IApplicationEvents", "IDrawingObjectEvents", "ISpecificationObjectEvents"]}
        self.assertEqual(iids, {"IApplicationEvents": "1CE45EFA-4362-40C5-B4E7-747838206EEC",
                                "IDrawingObjectEvents": "cbed0f8a-fd20-4bc1-b870-8bcba9ae1e62",
                                "ISpecificationObjectEvents": "245893b1-4f6d-44f1-94e9-a8353e43d48c"})

    def test_model_object_events_split_begin_and_completion(self):
        model = {e.name: e.result.kind for e in self.events.sources["IModelObjectEvents"].events}
        self.assertEqual(model["BeginDeleteObject"], "bool")
        self.assertEqual(model["DeleteObject"], "void")
        drawing = {e.result.kind for e in self.events.sources["IDrawingObjectEvents"].events}
        self.assertEqual(drawing, {"bool"})


if __name__ == "__main__":
    unittest.main()
