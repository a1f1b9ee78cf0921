"""Emits the API reference: one Markdown page per interface group, and an
index with the handle base and the vector and value functions.

For every export: its C signature, the IID text of its interface, what the
caller owns of what it returns (and how to give it back), and whether the
API Server serves it.
"""

from . import families
from .ctypes_map import c_signature
from .emit_bridge import result_wire

RULES = """\
A null handle, or one that lacks the export's interface, calls nothing and
returns the default (0, 0.0, false, null); out-parameters stay untouched. A
handle passed in stays the caller's. Text is zero-terminated UTF-16; a null
text argument is the empty text; a null vector argument is the empty list.
"""


def _owns(op):
    """What the caller owns of an export's result and how it goes back."""
    t = op.result
    if t.kind == "text":
        return "new text: `free` it"
    if t.kind == "object":
        return "one reference: `IAPIObject_Release`"
    if t.kind == "vector":
        text = f"new vector: `{t.name}_Delete`"
        if t.name == "ObjectReferenceVector":
            text += "; each element holds one reference: `IAPIObject_Release`"
        elif t.name == "ObjectReferenceVectorVector":
            text += " (deletes the inner vectors); each of their elements holds one reference: `IAPIObject_Release`"
        elif t.name == "PropertyValueVector":
            text += "; each element: `PropertyValue_Delete`"
        return text
    if t.kind == "value":
        return "always null"
    return "nothing"


def _notes(op):
    """What the export does through its parameters."""
    notes = []
    for p in op.params:
        if p.mode == "out" and p.type.kind == "object":
            notes.append(f"`{p.name}` receives a borrowed handle (no reference)")
        elif p.mode == "out":
            notes.append(f"`{p.name}`: value in, the host's out (null skips it)")
        elif p.mode == "inout":
            notes.append(f"`{p.name}` is cleared and refilled, and stays yours")
    return "; ".join(notes)


def _remote(op):
    if not op.interface.remote:
        return "no"
    if op.result.kind != "void" and not result_wire(op):
        return "yes (its result stays behind)"
    return "yes"


def _anchor(name):
    return name.lower()


def _identity(i):
    if i.root:
        return f"rooted ({i.root}): its functions take no handle"
    return f"IID `{i.iid}`"


def _interface_section(i, events):
    out = [f"\n## {i.name}\n\n{_identity(i)}. Remotable: {'yes' if i.remote else 'no'}.\n\n"]
    if not i.ops and not _registrations(events, i.name):
        out.append("Declared only: it has no operations of its own.\n")
        return out
    if i.ops:
        out.append("| Function | The caller owns | Remote | Notes |\n|---|---|---|---|\n")
        for op in i.ops:
            result, params = c_signature(op)
            out.append(f"| `{result} {op.export}({params})` | {_owns(op)} | {_remote(op)} | {_notes(op)} |\n")
    out.extend(_registration_section(events, i.name))
    return out


def _registrations(events, name):
    source = events.sources.get(name) if events is not None else None
    return source.events if source is not None else []


def _registration_section(events, name):
    regs = _registrations(events, name)
    if not regs:
        return []
    from . import emit_events, events as ev
    out = ["\nHandler registrations (the callback runs on the thread that raises the event; what it "
           "receives is lent for the call):\n\n| Function | Callback |\n|---|---|\n"]
    for e in regs:
        typedef = emit_events.callback_typedef(e).strip().removeprefix("typedef ").rstrip(";")
        out.append(f"| `void {e.export}({ev.registration_params(e)})` | `{typedef}` |\n")
    return out


def emit_group(cat, group, events=None):
    interfaces = [i for i in cat.interfaces.values() if i.group == group]
    count = sum(len(i.ops) for i in interfaces) + sum(len(_registrations(events, i.name)) for i in interfaces)
    out = [f"# The {group} group\n\n",
           f"{len(interfaces)} interfaces, {count} exports. Generated from the catalogue; see the "
           "[index](index.md) for the rules every export follows and the vector functions.\n\n"]
    out.append("".join(f"[{i.name}](#{_anchor(i.name)}) " for i in interfaces).rstrip() + "\n")
    for i in interfaces:
        out.extend(_interface_section(i, events))
    unqueried = [s for s in (events.sources.values() if events is not None and group == "events" else [])
                 if not s.queried]
    for s in unqueried:
        out.append(f"\n## {s.name}\n\nNot an API object: its handle is the host's object itself, "
                   "neither queried nor referenced.\n")
        out.extend(_registration_section(events, s.name))
    return "".join(out)


def emit_index(cat, events=None):
    out = ["# tvAPIC API reference\n\n", RULES, "\n## Groups\n\n| Group | Interfaces | Exports |\n|---|---:|---:|\n"]
    for group in cat.groups:
        interfaces = [i for i in cat.interfaces.values() if i.group == group]
        count = sum(len(i.ops) for i in interfaces) + sum(len(_registrations(events, i.name)) for i in interfaces)
        if group == "events" and events is not None:
            count += sum(len(s.events) for s in events.sources.values() if not s.queried)
        out.append(f"| [{group}]({group}.md) | {len(interfaces)} | {count} |\n")
    out.append("\n## Handle base\n\n| Function | Notes |\n|---|---|\n"
               "| `int IAPIObject_AddRef(void* handle)` | the count after it; the handle must not be null |\n"
               "| `int IAPIObject_Release(void* handle)` | the count after it; the handle must not be null |\n"
               "| `bool IAPIObject_IsSameObjects(void* first, void* second)` | the same host object, "
               "whatever the interfaces |\n")
    out.append("\n## Vectors and values\n\nA vector is `{ uint64_t size; T* data; }`. `_Create(count)` "
               "leaves the elements unset; a vector the caller makes or receives is deleted with its "
               "family's `_Delete`. String vectors own their texts; object vectors store handles as given.\n\n"
               "| Function | The caller owns |\n|---|---|\n")
    for result, name, params in families.container_prototypes():
        owns = "new vector: `_Delete`" if name.endswith("_Create") and "Vector" in name else (
            "new value: `PropertyValue_Delete`" if name == "PropertyValue_Create" else (
                "new text: `free` it" if result == "tvWChar*" and name.startswith("PropertyValue_") else (
                    "nothing (the vector keeps it)" if name.endswith("_Get") else "nothing")))
        out.append(f"| `{result} {name}({params})` | {owns} |\n")
    return "".join(out)


def outputs(cat, events=None):
    """Pages by path relative to the reference's directory."""
    files = {f"{group}.md": (lambda g=group: emit_group(cat, g, events)) for group in cat.groups}
    files["index.md"] = lambda: emit_index(cat, events)
    return files
