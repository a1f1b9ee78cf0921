"""Emits the API reference: static HTML pages that a browser opens from disk
(no server, no outside scripts), searchable by any part of a name.

- index.html: the rules every export follows, a search field, every
  interface A to Z, the groups, the handle base and the vector and value
  functions;
- one page per interface group: each interface with its IID text, where its
  objects come from, how to reach it from the application (following the
  objects that answer more than one interface, catalogue/answers.txt), and
  each export with its C signature, in which every handle, list and
  enumeration names its interface or enumeration, what the caller owns of
  the result, and for remotable functions their wire values linked to the
  protocol document;
- enums.html: every enumeration the catalogue names, with the values the
  simulated host gives meaning to;
- protocol.html (and protocol.md as written) from the docs folder;
- search.js, search-index.js and style.css.
"""

import html
import json
import re
from collections import defaultdict
from pathlib import Path

from . import markdown
from .model import families
from .model.types import c_param, c_result, callback_c_param, callback_c_result, registration_params
from .model.wire import request, response, result_wire

ASSETS = Path(__file__).with_name("reference")
# How many of the exports that hand out an interface's objects its section names.
SOURCES_SHOWN = 12

RULES = """\
<p>A null handle, or one that lacks the export's interface, calls nothing and
returns the default (0, 0.0, false, null); out-parameters stay untouched. A
handle passed in stays the caller's. Text is zero-terminated UTF-16; a null
text argument is the empty text; a null vector argument is the empty list.
In the signatures, a comment names what a <code>void*</code> or an
<code>int</code> carries: the interface of a handle, the element interface of
an object list, an enumeration, or <code>bool</code>.</p>
<p>Each interface says how to reach it: a chain of calls from the
application's functions (which take no handle), each on the object the one
before returned, or a handler registration whose handler receives the object.
"as I" passes the same handle on as I: the object answers that interface too,
as the catalogue records (its reason shows over the step). Of the ways, the
one shown needs the fewest calls that take another object, then the fewest
that take values, then the fewest calls: plain getters before a search.</p>
"""


def esc(text):
    return html.escape(text, quote=True)


class Reference:
    """Where each interface, export and enumeration is documented."""

    def __init__(self, model):
        self.model = model
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


def _owns(op):
    """What the caller owns of an export's result and how it goes back."""
    t = op.result
    if t.kind == "text":
        return "new text: <code>free</code> it"
    if t.kind == "object":
        return "one reference: <code>IAPIObject_Release</code>"
    if t.kind == "vector":
        text = f"new vector: <code>{t.name}_Delete</code>"
        if t.name == "ObjectReferenceVector":
            text += "; each element holds one reference: <code>IAPIObject_Release</code>"
        elif t.name == "ObjectReferenceVectorVector":
            text += (" (deletes the inner vectors); each of their elements holds one reference: "
                     "<code>IAPIObject_Release</code>")
        elif t.name == "PropertyValueVector":
            text += "; each element: <code>PropertyValue_Delete</code>"
        return text
    if t.kind == "value":
        return "always null"
    return ""


def _notes(op):
    """What the export does through its parameters."""
    notes = []
    for p in op.params:
        if p.mode == "out" and p.type.kind == "object":
            notes.append(f"<code>{p.name}</code> receives a borrowed handle (no reference)")
        elif p.mode == "out":
            notes.append(f"<code>{p.name}</code>: value in, the host's out (null skips it)")
        elif p.mode == "inout":
            notes.append(f"<code>{p.name}</code> is cleared and refilled, and stays yours")
    return notes


def _remote(op):
    text = (f'API Server: <a class="wire" href="protocol.html#{op.export}">'
            f"<code>{esc(', '.join(request(op)) or 'nothing')}</code> → "
            f"<code>{esc(', '.join(response(op)) or 'nothing')}</code></a>")
    stays = [f"<code>{p.name}</code> arrives empty" for p in op.params if p.type.kind == "vector" and not p.mode]
    if op.result.kind != "void" and not result_wire(op):
        stays.append("its result stays behind")
    return text + (f" ({'; '.join(stays)})" if stays else "")


def _function(ref, op):
    lines = [f'<div class="fn" id="{op.export}"><pre class="sig">{ref.signature(op)}</pre>']
    facts = ([f"Caller owns: {_owns(op)}"] if _owns(op) else []) + _notes(op)
    answer = ref.answer_of.get(op.export)
    if answer:
        facts.append(f"Its object answers {ref.interface_link(answer.interface)} ({esc(answer.reason)})")
    if op.interface.remote:
        facts.append(_remote(op))
    if facts:
        lines.append("<p>" + ". ".join(facts) + ".</p>")
    return "".join(lines) + "</div>\n"


def _registrations(model, name):
    source = model.sources.get(name)
    return source.events if source is not None else []


def _registration_block(ref, name):
    regs = _registrations(ref.model, name)
    if not regs:
        return ""
    out = ["<h3>Handler registrations</h3>\n<p>The callback runs on the thread that raises the event; "
           "what it receives is lent for the call.</p>\n"]
    for e in regs:
        out.append(f'<div class="fn" id="{e.export}"><pre class="sig">void <b>{e.export}</b>'
                   f"({esc(registration_params(e))})\n{ref.callback_signature(e)}</pre></div>\n")
    return "".join(out)


def _identity(i):
    if i.root:
        return f"Rooted ({i.root}): its functions take no handle."
    return f"IID <code>{i.iid}</code>."


def _interface_section(ref, i):
    out = [f'<section id="{i.name}">\n<h2>{i.name}</h2>\n<p class="meta">{_identity(i)} Remotable: '
           f"{'yes, every function below' if i.remote else 'no'}.</p>\n"]
    handed = ref.handed_out.get(i.name, [])
    if handed:
        out.append(f'<p class="from">Obtained from: {ref.export_links(handed)}.</p>\n')
    for f in ref.answered_by.get(i.name, []):
        if ref.handed_out.get(f.subject):
            out.append(f'<p class="from">Obtained from, as {ref.interface_link(f.subject)} (whose objects answer it: '
                       f"{esc(f.reason)}): {ref.export_links(ref.handed_out[f.subject])}.</p>\n")
    out.append(_reach(ref, i))
    if not i.ops and not _registrations(ref.model, i.name):
        out.append("<p>Declared only: it has no operations of its own.</p>\n")
    out.extend(_function(ref, op) for op in i.ops)
    out.append(_registration_block(ref, i.name))
    out.append("</section>\n")
    return out


def _reach(ref, i):
    steps = ref.ways.get(i.name)
    if i.root:
        return ""
    if steps is None:
        return ('<p class="reach">How to reach it: no way from the application is known to the catalogue '
                "(an object some function returns as <code>IAPIObject</code> may answer it).</p>\n")
    return f'<p class="reach">How to reach it: {" → ".join(ref.step(s) for s in steps)}.</p>\n'


def _export_count(ref, group):
    interfaces = ref.model.interfaces_in(group)
    return (sum(len(i.ops) + len(_registrations(ref.model, i.name)) for i in interfaces)
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


def emit_group(ref, group):
    interfaces = ref.model.interfaces_in(group)
    out = [f"<h1>The {group} group</h1>\n<p>{len(interfaces)} interfaces, {_export_count(ref, group)} exports, "
           'generated from the catalogue. The <a href="index.html">index</a> has the rules every export '
           "follows.</p>\n<p class=\"toc\">"
           + " ".join(f'<a href="#{i.name}">{i.name}</a>' for i in interfaces) + "</p>\n"]
    for i in interfaces:
        out.extend(_interface_section(ref, i))
    for s in ref.model.unqueried(group):
        out.append(f'<section id="{s.name}">\n<h2>{s.name}</h2>\n<p class="meta">Not an API object: its handle '
                   "is the host's object itself, neither queried nor referenced.</p>\n"
                   + _registration_block(ref, s.name) + "</section>\n")
    return page(f"The {group} group", "".join(out))


def _a_to_z(ref):
    by_letter = defaultdict(list)
    names = sorted(set(ref.page_of) | {"IAPIObject"}, key=str.lower)
    for name in names:
        by_letter[name[1].upper() if name.startswith("I") and len(name) > 1 else name[0].upper()].append(name)
    rows = [f'<dt id="letter-{letter}">{letter}</dt><dd>'
            + " ".join(ref.interface_link(n) for n in by_letter[letter]) + "</dd>\n" for letter in sorted(by_letter)]
    letters = " ".join(f'<a href="#letter-{letter}">{letter}</a>' for letter in sorted(by_letter))
    return f'<p class="toc">{letters}</p>\n<dl class="az">\n' + "".join(rows) + "</dl>\n"


def _container_owns(result, name):
    if name.endswith("_Create") and "Vector" in name:
        return "new vector: <code>_Delete</code>"
    if name == "PropertyValue_Create":
        return "new value: <code>PropertyValue_Delete</code>"
    if result == "tvWChar*" and name.startswith("PropertyValue_"):
        return "new text: <code>free</code> it"
    return "nothing (the vector keeps it)" if name.endswith("_Get") else "nothing"


def emit_index(ref):
    out = ["<h1>tvAPIC API reference</h1>\n", RULES,
           "<p>Type any part of a name in the field above to find an interface, function or enumeration "
           "(<code>index.html?q=LineSeg</code> opens with a search). The remotable functions link to their "
           'wire values in the <a href="protocol.html">protocol document</a> (also beside these pages as '
           '<a href="protocol.md">protocol.md</a>).</p>\n',
           f'<h2 id="interfaces">Interfaces A to Z</h2>\n<p>{len(ref.page_of)} interfaces, by the letter '
           "after their <code>I</code>.</p>\n", _a_to_z(ref),
           '<h2 id="groups">Groups</h2>\n<table>\n<tr><th>Group</th><th class="num">Interfaces</th>'
           '<th class="num">Exports</th></tr>\n']
    for group in ref.model.groups:
        out.append(f'<tr><td><a href="{group}.html">{group}</a></td><td class="num">'
                   f"{len(ref.model.interfaces_in(group))}</td><td class=\"num\">{_export_count(ref, group)}</td></tr>\n")
    out.append("</table>\n")
    out.append('<h2 id="handle-base">Handle base</h2>\n<p><code>IAPIObject</code> is every object\'s base: '
               "a handle of any object.</p>\n"
               '<div class="fn" id="IAPIObject_AddRef"><pre class="sig">int <b>IAPIObject_AddRef</b>(void* handle)'
               "</pre><p>The count after it; the handle must not be null.</p></div>\n"
               '<div class="fn" id="IAPIObject_Release"><pre class="sig">int <b>IAPIObject_Release</b>(void* handle)'
               "</pre><p>The count after it; the handle must not be null.</p></div>\n"
               '<div class="fn" id="IAPIObject_IsSameObjects"><pre class="sig">bool <b>IAPIObject_IsSameObjects</b>'
               "(void* first, void* second)</pre><p>The same host object, whatever the interfaces.</p></div>\n")
    out.append('<h2 id="vectors-and-values">Vectors and values</h2>\n<p>A vector is <code>{ uint64_t size; '
               "T* data; }</code>. <code>_Create(count)</code> leaves the elements unset; a vector the caller "
               "makes or receives is deleted with its family's <code>_Delete</code>. String vectors own their "
               "texts; object vectors store handles as given.</p>\n")
    for result, name, params in families.container_prototypes():
        out.append(f'<div class="fn" id="{name}"><pre class="sig">{esc(result)} <b>{name}</b>({esc(params)})</pre>'
                   f"<p>Caller owns: {_container_owns(result, name)}.</p></div>\n")
    return page("Index", "".join(out))


def simulated_values(docs_text):
    """{enumeration: values as the simulated host's document tells them}, from
    the table of its section "Enumeration values"."""
    section = docs_text.split("## Enumeration values", 1)[-1].split("\n## ", 1)[0]
    found = {}
    for line in section.splitlines():
        cells = [c.strip() for c in line.strip().strip("|").split("|")] if line.startswith("| `") else []
        if len(cells) == 2:
            for name in re.findall(r"`(\w+)`", cells[0]):
                found[name] = cells[1]
    return found


def emit_enums(ref, docs):
    simulated = simulated_values((docs / "simulated-host.md").read_text(encoding="utf-8"))
    users = defaultdict(list)
    for op in ref.model.ops():
        for t in [op.result] + [p.type for p in op.params]:
            if t.kind == "enum" and op.export not in users[t.name]:
                users[t.name].append(op.export)
    for e in ref.model.events():
        for t in [e.result] + [p.type for p in e.params]:
            if t.kind == "enum" and e.export not in users[t.name]:
                users[t.name].append(e.export)
    out = ["<h1>Enumerations</h1>\n<p>Every enumeration the catalogue names. An enumeration travels as an "
           "<code>int</code> (on the wire an <code>i32</code>) holding the host's value. The host application's "
           "values are its own and <strong>not known here</strong>; where the simulated host gives values a "
           "meaning, they are listed (its documentation, <code>docs/simulated-host.md</code>, tells more). "
           "Elsewhere pass the host's values.</p>\n"
           '<table class="enums">\n<tr><th>Enumeration</th><th>Values</th><th>Used by</th></tr>\n']
    for name in sorted(users, key=str.lower):
        values = (f"simulated host: {markdown.inline(simulated[name])}" if name in simulated
                  else "the host's, unknown here")
        used = ", ".join(f'<a href="{ref.export_href(x)}">{x}</a>' for x in users[name])
        out.append(f'<tr id="{name}"><td><code>{name}</code></td><td>{values}</td><td class="users">{used}</td></tr>\n')
    out.append("</table>\n")
    return page("Enumerations", "".join(out))


def emit_protocol(ref, docs):
    text = (docs / "protocol.md").read_text(encoding="utf-8")
    return page("The remote call protocol", markdown.to_html(text, lambda name: ref.export_href(name)))


def search_index(ref):
    """The names the search finds, each with the page that documents it (at
    the anchor of its own name): 'name page-number' a line."""
    entries = [(name, page) for name, page in ref.page_of.items()]
    entries += [(op.export, ref.page_of[op.interface.name]) for op in ref.model.ops()]
    entries += [(e.export, ref.page_of[e.source.name]) for e in ref.model.events()]
    entries += [(name, "enums.html") for name in ref.model.enums()]
    entries += [(n, "index.html") for n in ("IAPIObject_AddRef", "IAPIObject_Release", "IAPIObject_IsSameObjects")]
    entries += [(name, "index.html") for _, name, _ in families.container_prototypes()]
    pages = sorted({page for _, page in entries})
    lines = "\\n".join(f"{name} {pages.index(page)}" for name, page in entries)
    return ("// Generated from the catalogue: every name the search finds and the page that documents it.\n"
            f"const TVAPIC_PAGES = {json.dumps(pages)};\nconst TVAPIC_INDEX = \"{lines}\";\n")


def outputs(model, docs):
    """Pages by path relative to the reference's directory; `docs` is the
    folder that holds protocol.md and simulated-host.md."""
    docs = Path(docs)
    ref = Reference(model)
    files = {f"{group}.html": (lambda g=group: emit_group(ref, g)) for group in model.groups}
    files["index.html"] = lambda: emit_index(ref)
    files["enums.html"] = lambda: emit_enums(ref, docs)
    files["protocol.html"] = lambda: emit_protocol(ref, docs)
    files["protocol.md"] = lambda: (docs / "protocol.md").read_text(encoding="utf-8")
    files["search-index.js"] = lambda: search_index(ref)
    for asset in ("search.js", "style.css"):
        files[asset] = lambda a=asset: (ASSETS / a).read_text(encoding="utf-8")
    return files
