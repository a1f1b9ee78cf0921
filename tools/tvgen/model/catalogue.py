"""Reads the catalogue files into a checked model of interfaces and operations.

The grammar is described in catalogue/README.md. Every error names the file
and line, so a bad edit is found at build time, not in a compiler message.
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

from . import families
from .types import OPERATION_WORDS, SCALARS, TYPES

IID_RE = re.compile(r"^[0-9a-fA-F]{8}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F]{12}$")
NAME_RE = re.compile(r"^[A-Za-z_][A-Za-z0-9_]*$")
OP_RE = re.compile(r"^  (\S+(?:<\w+>)?) (\w+)\(([^)]*)\)\s*(?:#\s*(.*))?$")
INTERFACE_RE = re.compile(r"^I[A-Z0-9]\w*$")


class CatalogueError(Exception):
    pass


@dataclass(frozen=True)
class Type:
    """One parameter or result type of a host operation.

    kind is a row of the type table (types.py): void, bool, int, uint32,
    int64, double, pointer, enum, text, object, vector, value. `name` is the
    enum, interface, family or value name; `element` the element interface
    of an object vector.
    """
    kind: str
    name: str = ""
    element: str = ""

    def __str__(self):
        if self.kind == "vector" and self.element:
            return f"{self.name}<{self.element}>"
        return self.name or self.kind

    @property
    def is_scalar(self):
        return self.kind in SCALARS


@dataclass(frozen=True)
class Param:
    type: Type
    name: str
    mode: str = ""  # "", "out" or "inout"


@dataclass
class Operation:
    interface: "Interface"
    name: str
    result: Type
    params: list
    line: int
    where: str = ""
    note: str = ""          # the trailing comment of its line

    @property
    def export(self):
        return f"{self.interface.name}_{self.name}"


@dataclass
class Interface:
    name: str
    iid: str | None          # None for rooted interfaces
    root: str | None         # "application", "service" or None
    group: str
    remote: bool = False     # every operation can be called over the API Server
    ops: list = field(default_factory=list)


@dataclass
class Catalogue:
    groups: list                      # group names in file order
    interfaces: dict                  # name -> Interface, in declaration order

    def ops(self, group=None):
        for i in self.interfaces.values():
            if group is None or i.group == group:
                yield from i.ops

    def referenced_interfaces(self, group):
        """Interfaces named by the signatures of a group, its own included."""
        names = {i.name for i in self.interfaces.values() if i.group == group}
        for op in self.ops(group):
            for t in [op.result] + [p.type for p in op.params]:
                if t.kind == "object":
                    names.add(t.name)
                elif t.element:
                    names.add(t.element)
        names.discard("IAPIObject")
        return names


def parse_type(text, where):
    m = re.fullmatch(r"(\w+)<(\w+)>", text)
    if m:
        fam, elem = m.groups()
        if fam not in families.BY_NAME or not families.BY_NAME[fam].of_objects:
            raise CatalogueError(f"{where}: only object vectors take an element interface: {text}")
        if not INTERFACE_RE.match(elem):
            raise CatalogueError(f"{where}: bad element interface {elem!r}")
        return Type("vector", fam, elem)
    if text in OPERATION_WORDS:
        return Type(text)
    if re.fullmatch(TYPES["enum"].named, text):
        return Type("enum", text)
    if text in families.BY_NAME and families.BY_NAME[text].of_objects:
        raise CatalogueError(f"{where}: {text} needs its element interface, e.g. {text}<IModelObject>")
    if text in families.SIGNATURE_FAMILIES:
        return Type("vector", text)
    if text in families.BY_NAME:
        raise CatalogueError(f"{where}: {text} has no host converter and cannot appear in a signature")
    if text in families.VALUES:
        return Type("value", text)
    if INTERFACE_RE.match(text):
        return Type("object", text)
    raise CatalogueError(f"{where}: unknown type {text!r}")


def parse_param(text, where):
    words = text.split()
    mode = ""
    if words and words[0] in ("out", "inout"):
        mode, words = words[0], words[1:]
    if len(words) != 2 or not NAME_RE.match(words[1]):
        raise CatalogueError(f"{where}: parameter must be '[out|inout] type name': {text!r}")
    t = parse_type(words[0], where)
    if mode == "out" and not (t.is_scalar or t.kind == "object"):
        raise CatalogueError(f"{where}: 'out' applies to scalars and objects, not {t}")
    if mode == "inout" and (t.kind != "vector" or not families.BY_NAME[t.name].refillable):
        raise CatalogueError(f"{where}: 'inout' applies to vectors the host can refill, not {t}")
    if t.kind == "void":
        raise CatalogueError(f"{where}: a parameter cannot be void")
    return Param(t, words[1], mode)


def split_params(text):
    return [p.strip() for p in text.split(",")] if text.strip() else []


def parse_file(path, group, interfaces):
    current = None
    for number, raw in enumerate(Path(path).read_text(encoding="utf-8").splitlines(), 1):
        where = f"{path}:{number}"
        line = raw.rstrip()
        if not line.strip() or line.lstrip().startswith("#"):
            continue
        if line.startswith("interface "):
            current = parse_interface(line, where, group)
            if current.name in interfaces:
                raise CatalogueError(f"{where}: interface {current.name} declared twice")
            interfaces[current.name] = current
            continue
        m = OP_RE.match(line)
        if not m:
            raise CatalogueError(f"{where}: expected an interface line or '  result Name(params)': {line!r}")
        if current is None:
            raise CatalogueError(f"{where}: operation outside an interface")
        result_text, name, params_text, note = m.groups()
        result = parse_type(result_text, where)
        params = [parse_param(p, where) for p in split_params(params_text)]
        if any(op.name == name for op in current.ops):
            raise CatalogueError(f"{where}: {current.name}.{name} declared twice")
        if len({p.name for p in params}) != len(params):
            raise CatalogueError(f"{where}: repeated parameter name")
        current.ops.append(Operation(current, name, result, params, number, where, note or ""))


def parse_interface(line, where, group):
    words = line.split()
    remote = words[-1] == "remote"
    if remote:
        words = words[:-1]
    if len(words) == 3 and IID_RE.match(words[2]):
        name, iid, root = words[1], words[2], None
    elif len(words) == 4 and words[2] == "rooted" and words[3] in ("application", "service"):
        name, iid, root = words[1], None, words[3]
    else:
        raise CatalogueError(f"{where}: expected 'interface Name IID [remote]' or "
                             "'interface Name rooted application|service [remote]'")
    if not INTERFACE_RE.match(name):
        raise CatalogueError(f"{where}: interface names start with I and a capital: {name!r}")
    return Interface(name, iid, root, group, remote)


# The events file, events.api, is read apart (events.py); its interfaces
# make the last group, of that name.
EVENTS_GROUP = "events"


def groups_in(directory):
    """The interface groups of a catalogue directory, by name: one per
    <group>.api or <group>-<part>.api, the events file apart."""
    names = {path.stem.split("-", 1)[0] for path in Path(directory).glob("*.api")}
    return sorted(names - {EVENTS_GROUP})


def load(directory, group_names=None):
    """The interfaces of a catalogue directory's groups (all of them unless named)."""
    if group_names is None:
        group_names = groups_in(directory)
    interfaces = {}
    for group in group_names:
        # A large group may be kept in parts: <group>-<part>.api, read in name order.
        paths = sorted(Path(directory).glob(f"{group}.api")) + sorted(Path(directory).glob(f"{group}-*.api"))
        for path in paths:
            parse_file(path, group, interfaces)
    cat = Catalogue(list(group_names), interfaces)
    check_references(cat)
    check_rules(cat)
    return cat


def check_references(cat):
    for op in cat.ops():
        for t in [op.result] + [p.type for p in op.params]:
            name = t.element or (t.name if t.kind == "object" else None)
            if name and name != "IAPIObject" and name not in cat.interfaces:
                raise CatalogueError(
                    f"{op.where}: {op.interface.name}.{op.name}: interface {name} is not declared in any catalogue file")
            if name and name in cat.interfaces and cat.interfaces[name].root:
                raise CatalogueError(f"{op.where}: {op.interface.name}.{op.name}: rooted interface {name} cannot be passed")


# A setter whose value deliberately differs from its getter's result says so
# on its line: "# unlike its getter: <why>".
SETTER_EXCEPTION = "unlike its getter"


def check_rules(cat):
    check_setters(cat)
    check_list_getters(cat)


def check_setters(cat):
    """Set<X> takes what Get<X> / Is<X> returns, after the getter's own arguments."""
    for i in cat.interfaces.values():
        by_name = {op.name: op for op in i.ops}
        for op in i.ops:
            if not op.name.startswith("Set") or not op.params or SETTER_EXCEPTION in op.note:
                continue
            x = op.name[3:]
            getter = by_name.get("Get" + x) or by_name.get("Is" + x)
            if not getter or any(p.mode for p in getter.params) or getter.result.kind == "void":
                continue
            *leading, value = op.params
            if value.type != getter.result:
                raise CatalogueError(f"{op.where}: {i.name}.{op.name} takes {value.type} but "
                                     f"{getter.name} returns {getter.result}")
            if [p.type for p in leading] != [p.type for p in getter.params]:
                raise CatalogueError(f"{op.where}: {i.name}.{op.name} must take {getter.name}'s arguments "
                                     "before its value")


# Getters that fill a list the caller passes rather than return a new one,
# by family and name ending (catalogue/README.md, rule 11). Lists with a
# setter are returned new, as the setter takes them; the remotable functions'
# results are the host's.
FILLED_BY_ENDING = {
    "DoubleVector": ("Points", "Params", "Parameters", "Array", "Gabarits", "Gabarites"),
    "NumericIdVector": ("Points", "Params", "Parameters", "Array", "Gabarits", "Gabarites"),
    "Int32Vector": ("Indexes", "LineNumbers"),
    "BoolVector": ("Flags",),
}


def fills_callers_list(op):
    """Whether the rules make a getter returning a new list fill the caller's instead."""
    t = op.result
    if t.kind != "vector" or not op.name.startswith("Get") or op.interface.remote:
        return False
    if any(other.name == "Set" + op.name[3:] for other in op.interface.ops):
        return False
    if t.name == "StringVector":
        return bool(op.params)
    return op.name.endswith(FILLED_BY_ENDING.get(t.name, ()))


def check_list_getters(cat):
    for op in cat.ops():
        if fills_callers_list(op):
            name = op.name[3].lower() + op.name[4:]
            params = ", ".join([f"{p.type} {p.name}" for p in op.params] + [f"inout {op.result} {name}"])
            raise CatalogueError(f"{op.where}: {op.interface.name}.{op.name} has no setter: it fills the "
                                 f"caller's list, 'bool {op.name}({params})'")
