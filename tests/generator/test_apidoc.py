"""The API reference in the build tree: signatures that name the interface
their handles, lists and enumerations carry, written down here; remotable
functions with their wire values; an index that reaches every interface, a
search that finds every export on its page; every link landing on something.
No browser: the pages are read as text.

    test_apidoc.py <build>/docs/api
"""
import html
import re
import sys
import unittest
from html.parser import HTMLParser
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools"))
from tvgen import model as model_mod  # noqa: E402

PAGES = Path(sys.argv.pop(1)) if len(sys.argv) > 1 else ROOT / "build" / "docs" / "api"
FUNCTION = re.compile(r'<div class="fn" id="(\w+)"><pre class="sig">(.*?)</pre>(?:<p>(.*?)</p>)?</div>', re.S)


class Anchors(HTMLParser):
    """The ids a page defines and the links it makes."""

    def __init__(self):
        super().__init__()
        self.ids, self.links = set(), []

    def handle_starttag(self, tag, attrs):
        attrs = dict(attrs)
        if "id" in attrs:
            self.ids.add(attrs["id"])
        if tag in ("a", "link", "script") and (attrs.get("href") or attrs.get("src")):
            self.links.append(attrs.get("href") or attrs.get("src"))


def text(fragment):
    return html.unescape(re.sub(r"<[^>]+>", "", fragment))


def sections(page):
    """{interface: its section's HTML} of a page."""
    found = re.finditer(r'<section id="(\w+)">(.*?)</section>', (PAGES / page).read_text(encoding="utf-8"), re.S)
    return {m.group(1): m.group(2) for m in found}


def paragraphs(section, kind):
    return [text(p) for p in re.findall(rf'<p class="{kind}">(.*?)</p>', section, re.S)]


def functions(page):
    """{export: (signature as text, what follows it as text)} of a page."""
    return {m.group(1): (text(m.group(2)), text(m.group(3) or ""))
            for m in FUNCTION.finditer((PAGES / page).read_text(encoding="utf-8"))}


class ApiReference(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.cat = model_mod.load(ROOT / "catalogue")
        cls.pages = {group: functions(f"{group}.html") for group in cls.cat.groups}

    def test_signatures_name_the_interfaces_a_reader_needs(self):
        application = self.pages["application"]
        self.assertEqual(application["IDocuments_Add"][0], "void* /* ITavraDocument */ IDocuments_Add(void* handle, "
                         "int documentType, int /* bool */ visible)")
        self.assertIn("void* /* ITavraDocument */ document", application["IApplication_StopCurrentProcess"][0])
        self.assertIn("ObjectReferenceVector_t* /* of IDrawingObject */ ITavraDocument2D_CopyObjects",
                      application["ITavraDocument2D_CopyObjects"][0])
        self.assertIn("int /* tvViewTypeEnum */ viewType", self.pages["drawing"]["IViews_Add"][0])
        self.assertIn("u64 handle: IDocuments, string fileName, i32 visible: bool, i32 readOnly: bool → "
                      "u64: ITavraDocument", application["IDocuments_Open"][1])
        self.assertIn("one reference: IAPIObject_Release", application["IDocuments_Open"][1])
        self.assertIn("its result stays behind", self.pages["drawing"]["ILineSegment_GetX1"][1])
        self.assertIn("(*IApplicationEvents_CreateDocumentCallback)(void* /* ITavraDocument */ document)",
                      functions("events.html")["IApplicationEvents_AddCreateDocumentHandler"][0])

    def test_every_link_lands_and_the_index_reaches_every_interface_in_one_step(self):
        pages = {}
        for path in PAGES.glob("*.html"):
            parser = Anchors()
            parser.feed(path.read_text(encoding="utf-8"))
            pages[path.name] = parser
        broken = []
        for name, parser in pages.items():
            for link in parser.links:
                target, _, anchor = link.partition("#")
                page = target or name
                if re.match(r"^(https?:)?//", target) or page not in pages and not (PAGES / page).exists() \
                        or anchor and anchor not in pages[page].ids:
                    broken.append((name, link))
        self.assertEqual(broken[:10], [], f"{len(broken)} links go nowhere or outside")
        index = set(pages["index.html"].links)
        for i in self.cat.interfaces.values():
            self.assertIn(f"{i.group}.html#{i.name}", index, i.name)
        self.assertIn("IDocuments_Open", pages["protocol.html"].ids)
        self.assertTrue((PAGES / "protocol.md").exists())

    def test_the_search_finds_exports_on_their_pages(self):
        script = (PAGES / "search-index.js").read_text(encoding="utf-8")
        pages = re.search(r"TVAPIC_PAGES = (\[.*?\]);", script).group(1)
        pages = [p.strip(' "') for p in pages.strip("[]").split(",")]
        entries = dict(line.split(" ") for line in re.search(r'TVAPIC_INDEX = "(.*)";', script).group(1).split("\\n"))
        self.assertEqual(sum("_" in name for name in entries), 9447)   # every export once
        for name, page in [("IDocuments_Open", "application.html"), ("ILineSegment_SetX1", "drawing.html"),
                           ("IApplicationEvents_AddCreateDocumentHandler", "events.html")]:
            self.assertEqual(pages[int(entries[name])], page, name)
        for name in ("ILineSegment", "tvDocumentTypeEnum", "StringVector_Delete", "IAPIObject_Release"):
            self.assertIn(name, entries)

    def test_the_way_to_an_interface_and_where_its_objects_come_from(self):
        drawing, application = sections("drawing.html"), sections("application.html")
        view = ("IApplication_GetActiveDocument → as ITavraDocument2D → ITavraDocument2D_GetViewsAndLayersManager → "
                "IViewsAndLayersManager_GetViews → IViews_GetActiveView")
        self.assertEqual(paragraphs(drawing["ILineSegments"], "reach"),
                         [f"How to reach it: {view} → as IDrawingContainer → IDrawingContainer_GetLineSegments."])
        container, = paragraphs(drawing["IDrawingContainer"], "from")
        self.assertRegex(container, r"^Obtained from, as IView \(whose objects answer it: .*IViews_GetActiveView")
        self.assertEqual(paragraphs(sections("events.html")["IApplicationEvents"], "from"),
                         ["Obtained from: IApplication_Events."])
        for export, interface in [("IApplication_Events", "IApplicationEvents"),
                                  ("ITavraDocument_Events", "ITavraDocumentEvents"),
                                  ("ITavraDocument2D_GetObject2DEvents", "IDrawingObjectEvents")]:
            self.assertIn(f"Its object answers {interface} (", self.pages["application"][export][1], export)
        self.assertNotIn('class="reach"', application["IApplication"])   # rooted: no handle to reach

    def test_every_way_shown_can_be_walked_call_by_call(self):
        facts = {tuple(line.split("#")[0].split()[::2]) for line in (ROOT / "catalogue" / "answers.txt")
                 .read_text(encoding="utf-8").splitlines() if line.strip() and not line.startswith("#")}
        gives = {op.export: [op.result] + [p.type for p in op.params if p.mode == "out"] for op in self.cat.ops()}
        gives.update({f"{e.export} (its handler receives it)": [p.type for p in e.params]
                      for s in self.cat.sources.values() for e in s.events})
        walked = 0
        for group in self.cat.groups:
            for name, section in sections(f"{group}.html").items():
                if name not in self.cat.interfaces or self.cat.interfaces[name].root:
                    continue   # no API object, or rooted: no handle to reach
                way, = paragraphs(section, "reach")
                if "no way from the application" in way:
                    continue
                seen_as = {i.name for i in self.cat.interfaces.values() if i.root}   # what the object in hand answers
                for step in way.removeprefix("How to reach it: ").removesuffix(".").split(" → "):
                    if step.startswith("as "):
                        self.assertTrue({(i, step[3:]) for i in seen_as} & facts, way)
                        seen_as = {step[3:]}
                    else:
                        self.assertIn(step.split("_")[0], seen_as, way)
                        seen_as = {t.element or t.name for t in gives[step] if t.kind == "object" or t.element}
                        seen_as |= {i for subject, i in facts if subject == step}
                self.assertIn(name, seen_as, way)
                walked += 1
        self.assertGreater(walked, 300)

    def test_enumerations_tell_the_simulated_hosts_values_or_that_they_are_the_hosts(self):
        page = (PAGES / "enums.html").read_text(encoding="utf-8")
        rows = {m.group(1): text(m.group(2)) for m in re.finditer(r'<tr id="(\w+)">(.*?)</tr>', page)}
        self.assertEqual(set(rows), set(self.cat.enums()))
        self.assertIn("1 drawing, 2 fragment", rows["tvDocumentTypeEnum"])
        self.assertIn("0 sheet view", rows["tvViewTypeEnum"])
        self.assertIn("the host's, unknown here", rows["tvArrowTypeEnum"])
        self.assertIn("IViews_Add", rows["tvViewTypeEnum"])


if __name__ == "__main__":
    unittest.main()
