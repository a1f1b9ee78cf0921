"""What the API reference's pages share: where each interface, export and
enumeration is documented, the C signatures with what their handles, lists
and enumerations carry, the page around a body, and the export counts.

The reference is static HTML that a browser opens from disk (no server, no
outside scripts), searchable by any part of a name: index.html (the rules,
the search field, every interface A to Z, the groups, the handle base and the
vector and value functions), one page per interface group, enums.html,
protocol.html (and protocol.md as written), search.js, search-index.js and
style.css.
"""

import html
from collections import defaultdict
from pathlib import Path

from .model.types import c_param, c_result, callback_c_param, callback_c_result

ASSETS = Path(__file__).with_name("reference")

# How many of the exports that hand out an interface's objects its section names.
SOURCES_SHOWN = 12


def esc(text):
    return html.escape(text, quote=True)


class Reference:
    """Where each interface, export and enumeration is documented."""

    def __init__(self, model, docs):
        self.model = model
        self.docs = Path(docs)   # the folder of protocol.md and simulated-host.md
        self.page_of = {i.name: f"{i.group}.html" for i in model.interfaces.values()}
        for s in model.sources.values():
            self.page_of.setdefault(s.name, "events.html")
        self.handed_out = self._handed_out()
        self.ways = model.ways()
        self.answered_by = defaultdict(list)   # {interface: [facts of interfaces whose objects answer it]}
        self.answer_of = {}                    # {export: the fact of what its IAPIObject result answers}
        for f in model.answers:
            if f.subject in model.interfaces:
                self.answered_by[f.interface].append(f)
            else:
                self.answer_of[f.subject] = f

    def export_href(self, export):
        """Where an export is documented, or None for a name that is none."""
        page = self.page_of.get(export.split("_", 1)[0])
        return f"{page}#{export}" if page else None

    def interface_link(self, name):
        if name == "IAPIObject":
            return '<a href="index.html#handle-base">IAPIObject</a>'
        return f'<a href="{self.page_of[name]}#{name}">{name}</a>'

    def type_note(self, t):
        """The comment that tells what a C parameter or result carries ('' when its C type says it)."""
        if t.kind == "object":
            return self.interface_link(t.name)
        if t.kind == "vector" and t.element:
            inner = "of vectors of " if t.name == "ObjectReferenceVectorVector" else "of "
            return inner + self.interface_link(t.element)
        if t.kind == "enum":
            return f'<a href="enums.html#{t.name}">{t.name}</a>'
        if t.kind == "bool":
            return "bool"
        return ""

    def typed(self, c_type, t):
        note = self.type_note(t) if c_type != "bool" else ""
        return f"{esc(c_type)} <span class=\"note\">/* {note} */</span>" if note else esc(c_type)

    def signature(self, op):
        params = [] if op.interface.root else ["void* handle"]
        params += [f"{self.typed(c_param(p), p.type)} {p.name}" for p in op.params]
        return (f"{self.typed(c_result(op.result), op.result)} <b>{op.export}</b>"
                f"({', '.join(params) or 'void'})")

    def callback_signature(self, e):
        params = ", ".join(f"{self.typed(callback_c_param(p), p.type)} {p.name}" for p in e.params) or "void"
        return f"typedef {self.typed(callback_c_result(e.result), e.result)} (*{e.callback_type})({params})"

    def _handed_out(self):
        """{interface: [exports that hand out its objects: results, out-objects,
        list elements, IAPIObject results the catalogue says answer it]}"""
        found = defaultdict(list)
        answering = {f.subject: f.interface for f in self.model.answers}
        for op in self.model.ops():
            for t in [op.result] + [p.type for p in op.params if p.mode == "out"]:
                name = t.name if t.kind == "object" else t.element
                if name == "IAPIObject" and t.kind == "object":
                    name = answering.get(op.export)
                if name and name != "IAPIObject" and op.export not in found[name]:
                    found[name].append(op.export)
        return found

    def export_links(self, exports):
        links = ", ".join(f'<a href="{self.export_href(e)}">{e}</a>' for e in exports[:SOURCES_SHOWN])
        more = f" and {len(exports) - SOURCES_SHOWN} more" if len(exports) > SOURCES_SHOWN else ""
        return links + more

    def step(self, step):
        """One step of a way, as the reference shows it."""
        if step.interface:
            return f'<span class="as" title="{esc(step.reason)}">as {self.interface_link(step.interface)}</span>'
        call = f'<a href="{self.export_href(step.export)}">{step.export}</a>'
        return call + (" (its handler receives it)" if step.handler else "")


def registrations(model, name):
    source = model.sources.get(name)
    return source.events if source is not None else []


def export_count(ref, group):
    interfaces = ref.model.interfaces_in(group)
    return (sum(len(i.ops) + len(registrations(ref.model, i.name)) for i in interfaces)
            + sum(len(s.events) for s in ref.model.unqueried(group)))


def page(title, body):
    return ("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
            f"<title>{esc(title)} · tvAPIC API reference</title>\n"
            '<link rel="stylesheet" href="style.css">\n</head>\n<body>\n<header>\n'
            '<a class="home" href="index.html">tvAPIC API reference</a>\n<nav>'
            '<a href="index.html#interfaces">Interfaces</a> <a href="enums.html">Enumerations</a> '
            '<a href="index.html#vectors-and-values">Vectors</a> <a href="protocol.html">Protocol</a></nav>\n'
            '<div class="search"><input id="search" type="search" placeholder="Find an interface, function or '
            'enumeration" autocomplete="off" aria-label="Find"><ol id="results" hidden></ol></div>\n'
            f"</header>\n<main>\n{body}</main>\n"
            '<script src="search-index.js"></script>\n<script src="search.js"></script>\n</body>\n</html>\n')
