"""Emits the API reference's index.html: the rules every export follows, the
search field, every interface A to Z, the groups, the handle base and the
vector and value functions."""

from collections import defaultdict

from .reference_pages import esc, export_count, page
from .model import families

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


def _a_to_z(ref):
    by_letter = defaultdict(list)
    names = sorted(set(ref.page_of) | {"IAPIObject"}, key=str.lower)
    for name in names:
        by_letter[name[1].upper() if name.startswith("I") and len(name) > 1 else name[0].upper()].append(name)
    rows = [f'<dt id="letter-{letter}">{letter}</dt><dd>'
            + " ".join(ref.interface_link(n) for n in by_letter[letter]) + "</dd>\n" for letter in sorted(by_letter)]
    letters = " ".join(f'<a href="#letter-{letter}">{letter}</a>' for letter in sorted(by_letter))
    return f'<p class="toc">{letters}</p>\n<dl class="az">\n' + "".join(rows) + "</dl>\n"


def _container_owns(proto):
    result = proto.result
    if result.ownership == "delete":
        if isinstance(proto.owner, families.Family):
            return "new vector: <code>_Delete</code>"
        return f"new value: <code>{result.release.function}</code>"
    if result.ownership == "free":
        return f"new text: <code>{result.release.function}</code> it"
    return "nothing (the vector keeps it)" if result.ownership == "lent" else "nothing"


# What each function of the handle base does.
HANDLE_BASE_NOTES = {
    "IAPIObject_AddRef": "The count after it; the handle must not be null.",
    "IAPIObject_Release": "The count after it; the handle must not be null.",
    "IAPIObject_IsSameObjects": "The same host object, whatever the interfaces.",
}


def _prototype(proto, note):
    return (f'<div class="fn" id="{proto.name}"><pre class="sig">{esc(proto.result.c_type)} <b>{proto.name}</b>'
            f"({esc(proto.param_list)})</pre><p>{note}</p></div>\n")


def emit(ref):
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
                   f"{len(ref.model.interfaces_in(group))}</td><td class=\"num\">{export_count(ref, group)}</td></tr>\n")
    out.append("</table>\n")
    out.append('<h2 id="handle-base">Handle base</h2>\n<p><code>IAPIObject</code> is every object\'s base: '
               "a handle of any object.</p>\n")
    out.extend(_prototype(proto, HANDLE_BASE_NOTES[proto.name]) for proto in families.HANDLE_BASE)
    out.append('<h2 id="vectors-and-values">Vectors and values</h2>\n<p>A vector is <code>{ uint64_t size; '
               "T* data; }</code>. <code>_Create(count)</code> leaves the elements unset; a vector the caller "
               "makes or receives is deleted with its family's <code>_Delete</code>. String vectors own their "
               "texts; object vectors store handles as given.</p>\n")
    out.extend(_prototype(proto, f"Caller owns: {_container_owns(proto)}.") for proto in families.container_prototypes())
    return page("Index", "".join(out))
