"""Emits the API reference's page of one interface group (<group>.html):
each interface with its IID text, where its objects come from, how to reach
it from the application (following the objects that answer more than one
interface, catalogue/answers.txt), and each export with its C signature, in
which every handle, list and enumeration names its interface or enumeration,
what the caller owns of the result, and for remotable functions their wire
values linked to the protocol document."""

from .reference_pages import esc, export_count, page, registrations
from .model.types import TYPES, registration_params, result_release
from .model.wire import request, response, result_wire


def _owns(op):
    """What the caller owns of an export's result and how it goes back."""
    ownership = TYPES[op.result.kind].ownership
    release = result_release(op.result)
    if ownership == "always-null":
        return "always null"
    if ownership == "free":
        return f"new text: <code>{release.function}</code> it"
    if ownership == "release":
        return f"one reference: <code>{release.function}</code>"
    if ownership != "delete":
        return ""
    text = f"new vector: <code>{release.function}</code>"
    if release.each:
        holds = " holds one reference" if release.each == TYPES["object"].release else ""
        if release.nested:
            text += f" (deletes the inner vectors); each of their elements{holds}: <code>{release.each}</code>"
        else:
            text += f"; each element{holds}: <code>{release.each}</code>"
    return text


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


def _registration_block(ref, name):
    regs = registrations(ref.model, name)
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
    if not i.ops and not registrations(ref.model, i.name):
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


def emit(ref, group):
    interfaces = ref.model.interfaces_in(group)
    out = [f"<h1>The {group} group</h1>\n<p>{len(interfaces)} interfaces, {export_count(ref, group)} exports, "
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
