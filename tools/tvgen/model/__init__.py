"""The generator's model of the catalogue: every interface with its
operations, every interface that takes event handlers with its events, and
the facts the emitters derive from them.

    model = load("catalogue")

Its parts:

    catalogue.py, events.py   read and check the files (grammar in catalogue/README.md)
    answers.py                the objects that answer more than one interface; the way to each interface
    types.py                  the one table of type facts, and the C and C++ forms built on it
    families.py               the C vector families, the value handles and the handle base, with
                              the typed prototypes of their functions
    wire_kinds.py, wire.py    the kinds of wire value; how a remotable function travels over the
                              API Server's wire

The model knows no output. Above it, bindings/ holds what the language
bindings' emitters share, and the modules beside the emitters what other
emitters share; the emitters read those and the model, never each other, and
__main__.py lists every output with its emitter (tests/layers/check_layers.py
holds them to it). A new scalar type is a row of the table in types.py; its
docstring says what else it may need.
"""

from dataclasses import dataclass, field

from . import answers as _answers
from . import catalogue as _catalogue
from . import events as _events
from .catalogue import CatalogueError, groups_in
from .events import Event
from .families import HANDLE_BASE, container_prototypes
from .wire import remotable as _remotable

__all__ = ["CatalogueError", "Event", "Model", "groups_in", "load"]

# Operations per generated translation unit of a group: a large group
# compiles on every core and an edit recompiles one part.
CHUNK = 700


@dataclass
class Model(_catalogue.Catalogue):
    """The checked catalogue: groups (by name, "events" last),
    interfaces (by name, in declaration order), the interfaces that take
    handlers (`sources`, by name, in the events file's order) and the facts of
    objects that answer more than one interface (`answers`)."""
    sources: dict = field(default_factory=dict)
    answers: list = field(default_factory=list)

    def interfaces_in(self, group):
        return [i for i in self.interfaces.values() if i.group == group]

    def events(self):
        for s in self.sources.values():
            yield from s.events

    def enums(self):
        """Every enumeration named, by operations or by event callbacks."""
        signatures = [[op.result] + [p.type for p in op.params] for op in self.ops()]
        signatures += [[e.result] + [p.type for p in e.params] for e in self.events()]
        return sorted({t.name for types in signatures for t in types if t.kind == "enum"})

    # Event sources

    def queried_source(self, interface_name):
        """The handlers an interface of the catalogue takes (its Source), or None."""
        s = self.sources.get(interface_name)
        return s if s is not None and s.queried else None

    def plain(self, interfaces):
        """The interfaces of a list that take no handlers."""
        return [i for i in interfaces if self.queried_source(i.name) is None]

    def unqueried(self, group):
        """The host objects that take handlers but are no API objects; the
        events group declares them."""
        return [s for s in self.sources.values() if not s.queried] if group == _events.GROUP else []

    # Derived facts

    def group_dependencies(self, group):
        """Groups whose interfaces a group's signatures name (its own included)."""
        names = self.referenced_interfaces(group)
        return sorted({self.interfaces[n].group for n in names} | {group}, key=self.groups.index)

    def groups_named_by(self, sources):
        """Interface groups that the sources' signatures name, their own included."""
        names = set()
        for s in sources:
            types = [p.type for e in s.events for p in e.params]
            if s.interface is not None:
                names.add(s.interface.name)
                types += [t for op in s.interface.ops for t in [op.result] + [p.type for p in op.params]]
            names |= {t.element or t.name for t in types if t.kind == "object" or t.element}
        names.discard("IAPIObject")
        groups = {self.interfaces[n].group for n in names}
        if any(not s.queried for s in sources):
            groups.add(_events.GROUP)  # where the unqueried interfaces are declared
        return sorted(groups, key=self.groups.index)

    def chunks(self, group):
        """The group's interfaces in lists of about CHUNK operations, each one translation unit."""
        parts, current, size = [], [], 0
        for i in self.interfaces_in(group):
            if current and size + len(i.ops) > CHUNK:
                parts.append(current)
                current, size = [], 0
            current.append(i)
            size += len(i.ops)
        if current:
            parts.append(current)
        return parts

    def remotable(self):
        return _remotable(self)

    def ways(self):
        """{interface: [answers.Step]}: how each interface is reached from the rooted ones."""
        return _answers.ways(self, self.answers)

    def export_names(self):
        """Every function the library exports, in header order."""
        names = [proto.name for proto in HANDLE_BASE + container_prototypes()]
        names += [op.export for op in self.ops()]
        names += [e.export for e in self.events()]
        return names


def load(directory):
    """Reads every group of a catalogue directory, then its events file."""
    cat = _catalogue.load(directory)
    events = _events.load(directory, cat)
    model = Model(cat.groups, cat.interfaces, events.sources)
    model.answers = _answers.load(directory, model)
    return model
