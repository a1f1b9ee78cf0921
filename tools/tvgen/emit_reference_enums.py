"""Emits the API reference's enums.html: every enumeration the catalogue
names, with the values the simulated host gives meaning to."""

import re
from collections import defaultdict

from . import markdown
from .reference_pages import page

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


def emit(ref):
    simulated = simulated_values((ref.docs / "simulated-host.md").read_text(encoding="utf-8"))
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
