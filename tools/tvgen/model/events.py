"""Reads catalogue/events.api: the interfaces that take event handlers.

Three kinds of block (grammar in catalogue/README.md, section "Events"):

  events Name IID keyed|unkeyed   an Events interface, queried by its IID
  handlers Name [unqueried]       handlers set on an interface of the other
                                  catalogue files, or on a host object that is
                                  not an API object at all
  interface Name IID              an ordinary interface (event results)

Ordinary operations of an Events interface (RemoveAllHandlers, the filters)
and the `interface` blocks join the interface catalogue as its group
"events", so every generator treats them like any other operation; the
events themselves stay here, with the registrations they become.
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

from . import catalogue as cat_mod
from . import families
from .catalogue import CatalogueError, Type
from .types import CALLBACK_WORDS, TYPES

GROUP = cat_mod.EVENTS_GROUP
FILE = f"{GROUP}.api"

EVENT_RE = re.compile(r"^  on (\S+) (\w+)\(([^)]*)\)(?: via (\w+))?\s*(?:#.*)?$")


def _is_enum(text):
    return re.fullmatch(TYPES["enum"].callback_named, text) is not None


@dataclass(frozen=True)
class CallbackParam:
    type: Type
    name: str
    inout: bool = False

    @property
    def conversion(self):
        """The conversion this parameter needs: the type's kind, or the list family."""
        return self.type.name if self.type.kind == "vector" else self.type.kind

    @property
    def writable(self):
        """Whether a callback may write it back (`inout`), by the type table and the families."""
        if self.type.kind == "vector":
            return families.BY_NAME[self.type.name].in_callbacks == "write"
        return TYPES[self.type.kind].callback_inout

    @property
    def mode(self):
        """As an operation's parameter says it: "inout" or ""."""
        return "inout" if self.inout else ""


@dataclass
class Event:
    source: "Source"
    name: str
    result: Type            # void, bool, enum or pointer
    params: list
    registration: str       # the host's registration method, also the export's suffix
    where: str

    @property
    def export(self):
        return f"{self.source.name}_{self.registration}"

    @property
    def callback_type(self):
        return f"{self.source.name}_{self.name}Callback"

    @property
    def handler_type(self):
        return f"{self.name}Handler"


@dataclass
class Source:
    """An interface that takes handlers, with its host operations in slot order."""
    name: str
    kind: str                       # "events", "handlers" or "unqueried"
    keyed: bool
    interface: object               # its catalogue Interface; None when unqueried
    members: list = field(default_factory=list)  # Event and Operation, in slot order
    where: str = ""

    @property
    def events(self):
        return [m for m in self.members if isinstance(m, Event)]

    @property
    def queried(self):
        return self.kind != "unqueried"


@dataclass
class Events:
    sources: dict                   # name -> Source, in file order

    def events(self):
        for s in self.sources.values():
            yield from s.events


def _callback_family(name):
    family = families.BY_NAME.get(name)
    return family if family is not None and family.in_callbacks else None


def parse_callback_type(text, where):
    m = re.fullmatch(r"(\w+)<(\w+)>", text)
    if m and _callback_family(m.group(1)) and _callback_family(m.group(1)).of_objects:
        if not cat_mod.INTERFACE_RE.match(m.group(2)):
            raise CatalogueError(f"{where}: bad element interface {m.group(2)!r}")
        return Type("vector", m.group(1), m.group(2))
    if text in CALLBACK_WORDS:
        return Type(text)
    if _callback_family(text) and not _callback_family(text).of_objects:
        return Type("vector", text)
    if cat_mod.INTERFACE_RE.match(text):
        return Type("object", text)
    if _is_enum(text):
        return Type("enum", text)
    raise CatalogueError(f"{where}: {text!r} cannot reach a callback")


def parse_callback_param(text, where):
    words = text.split()
    inout = bool(words) and words[0] == "inout"
    if inout:
        words = words[1:]
    if len(words) != 2 or not cat_mod.NAME_RE.match(words[1]):
        raise CatalogueError(f"{where}: callback parameter must be '[inout] type name': {text!r}")
    p = CallbackParam(parse_callback_type(words[0], where), words[1], inout)
    if inout and not p.writable:
        raise CatalogueError(f"{where}: 'inout' applies to what a callback may write back, not {p.type}")
    if p.type.kind == "vector" and p.writable and not inout:
        raise CatalogueError(f"{where}: a {p.type} reaches a callback only as 'inout'")
    return p


def parse_result(text, where):
    if text in ("void", "bool", "pointer"):
        return Type(text)
    if _is_enum(text):
        return Type("enum", text)
    raise CatalogueError(f"{where}: a callback returns void, bool, pointer or an enumeration, not {text!r}")


def parse_event(m, where, source):
    result_text, name, params_text, via = m.groups()
    params = [parse_callback_param(p, where) for p in cat_mod.split_params(params_text)]
    if len({p.name for p in params}) != len(params):
        raise CatalogueError(f"{where}: repeated parameter name")
    return Event(source, name, parse_result(result_text, where), params, via or f"Add{name}Handler", where)


def parse_source(line, where, cat):
    words = line.split()
    if words[0] == "events":
        if len(words) != 4 or not cat_mod.IID_RE.match(words[2]) or words[3] not in ("keyed", "unkeyed"):
            raise CatalogueError(f"{where}: expected 'events Name IID keyed|unkeyed'")
        name = words[1]
        if not cat_mod.INTERFACE_RE.match(name):
            raise CatalogueError(f"{where}: interface names start with I and a capital: {name!r}")
        if name in cat.interfaces:
            raise CatalogueError(f"{where}: interface {name} declared twice")
        interface = cat_mod.Interface(name, words[2], None, GROUP)
        cat.interfaces[name] = interface
        return Source(name, "events", words[3] == "keyed", interface, where=where)
    if len(words) == 2 or (len(words) == 3 and words[2] == "unqueried"):
        name = words[1]
        if len(words) == 3:
            if name in cat.interfaces:
                raise CatalogueError(f"{where}: {name} is an API object; drop 'unqueried'")
            return Source(name, "unqueried", False, None, where=where)
        interface = cat.interfaces.get(name)
        if interface is None or interface.iid is None:
            raise CatalogueError(f"{where}: handlers need a queried interface of the catalogue, not {name!r}")
        return Source(name, "handlers", False, interface, list(interface.ops), where)
    raise CatalogueError(f"{where}: expected 'handlers Name [unqueried]'")


def parse_file(path, cat, sources):
    block = None   # the open Source, or the open plain Interface
    for number, raw in enumerate(Path(path).read_text(encoding="utf-8").splitlines(), 1):
        where = f"{path}:{number}"
        line = raw.rstrip()
        if not line.strip() or line.lstrip().startswith("#"):
            continue
        first = line.split()[0]
        if first in ("events", "handlers"):
            block = parse_source(line, where, cat)
            if block.name in sources:
                raise CatalogueError(f"{where}: {block.name} takes handlers in two blocks")
            sources[block.name] = block
            continue
        if first == "interface":
            block = cat_mod.parse_interface(line, where, GROUP)
            if block.name in cat.interfaces:
                raise CatalogueError(f"{where}: interface {block.name} declared twice")
            cat.interfaces[block.name] = block
            continue
        if block is None:
            raise CatalogueError(f"{where}: operation outside a block")
        m = EVENT_RE.match(line)
        if m:
            if not isinstance(block, Source):
                raise CatalogueError(f"{where}: events belong in an 'events' or 'handlers' block")
            add_event(block, parse_event(m, where, block))
            continue
        m = cat_mod.OP_RE.match(line)
        if not m:
            raise CatalogueError(f"{where}: expected '  on result Event(params) [via Name]' or '  result Name(params)'")
        interface = block.interface if isinstance(block, Source) else block
        if isinstance(block, Source) and block.kind != "events":
            raise CatalogueError(f"{where}: a 'handlers' block holds events only")
        result_text, name, params_text, note = m.groups()
        op = cat_mod.Operation(interface, name, cat_mod.parse_type(result_text, where),
                               [cat_mod.parse_param(p, where) for p in cat_mod.split_params(params_text)],
                               number, where, note or "")
        taken = [o.name for o in interface.ops]
        if isinstance(block, Source):
            taken += [e.registration for e in block.events]
        if name in taken:
            raise CatalogueError(f"{where}: {interface.name}.{name} declared twice")
        interface.ops.append(op)
        if isinstance(block, Source):
            block.members.append(op)


def add_event(source, event):
    taken = {e.name for e in source.events}
    if event.name in taken:
        raise CatalogueError(f"{event.where}: {source.name} event {event.name} declared twice")
    members = {getattr(m, "registration", None) or m.name for m in source.members}
    if event.registration in members:
        raise CatalogueError(f"{event.where}: {source.name}.{event.registration} declared twice")
    source.members.append(event)


def check_source(source, cat):
    if not source.events:
        raise CatalogueError(f"{source.where}: {source.name} has no events")
    for e in source.events:
        for p in e.params:
            name = p.type.element or (p.type.name if p.type.kind == "object" else None)
            if name and name != "IAPIObject" and name not in cat.interfaces:
                raise CatalogueError(f"{e.where}: {source.name}.{e.name}: interface {name} is not declared")
            if name and name in cat.interfaces and cat.interfaces[name].root:
                raise CatalogueError(f"{e.where}: {source.name}.{e.name}: rooted interface {name} cannot be passed")
    if source.kind != "events":
        return
    # Removal takes the subscriber key exactly when registration does.
    removal = [op for op in source.interface.ops if op.name == "RemoveAllHandlers"]
    expected = ["text"] if source.keyed else []
    if (len(removal) != 1 or removal[0].result.kind != "void"
            or [str(p.type) for p in removal[0].params] != expected or any(p.mode for p in removal[0].params)):
        shape = "void RemoveAllHandlers(text key)" if source.keyed else "void RemoveAllHandlers()"
        raise CatalogueError(f"{source.where}: {'keyed' if source.keyed else 'unkeyed'} {source.name} "
                             f"needs '{shape}'")


def load(directory, cat):
    """Reads the events file of a catalogue directory into `cat` and returns
    the interfaces that take handlers. No file: no events."""
    sources = {}
    path = Path(directory) / FILE
    if path.exists():
        parse_file(path, cat, sources)
    for s in sources.values():
        check_source(s, cat)
    if any(i.group == GROUP for i in cat.interfaces.values()) and GROUP not in cat.groups:
        cat.groups.append(GROUP)
    cat_mod.check_references(cat)
    cat_mod.check_rules(cat)
    exports = {op.export for op in cat.ops()}
    for e in Events(sources).events():
        if e.export in exports:
            raise CatalogueError(f"{e.where}: export {e.export} declared twice")
        exports.add(e.export)
    return Events(sources)
