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
        self.assertIn("drawing.html#ILineSegment", index)
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
