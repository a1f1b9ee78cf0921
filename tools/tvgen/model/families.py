"""The C vector families and value handles of the public header, the handle
base, and the typed prototypes of their exported functions.

One row per family: its name, the C type of one element, which exported
members it has, the host element type that its converters produce (None
where no host sequence exists), how a result of the family travels, and what
its members do with what they hold: what `_Set` takes and whether it tests it
for null, the family of the vectors it holds, what a caller gives back for
each handle a result holds, whether an operation may refill a
caller's vector of it and how a callback may receive one. The value handles
have a row each too, which says whether their functions test the handle.
"""

from dataclasses import dataclass

from . import wire_kinds


@dataclass(frozen=True)
class Release:
    """How a caller gives back a result it owns: `function`, after `each` on
    every handle the vector holds (in its inner vectors when `nested`)."""
    function: str
    each: str = ""
    nested: bool = False


@dataclass(frozen=True)
class CParam:
    c_type: str
    name: str
    nullable: bool = True     # False: the function does not test it; null is a caller error


@dataclass(frozen=True)
class CResult:
    c_type: str
    ownership: str = "none"   # "none", "lent" (stays the vector's), "free" or "delete"
    release: Release | None = None
    nullable: bool = True     # False: never null


@dataclass(frozen=True)
class Prototype:
    """One exported function of the handle base, a family or a value handle."""
    result: CResult
    name: str
    params: tuple = ()
    owner: object = None      # its Family or Value row; None for the handle base

    @property
    def param_list(self):
        return ", ".join(f"{p.c_type} {p.name}" for p in self.params) or "void"

    @property
    def declaration(self):
        return f"{self.result.c_type} {self.name}({self.param_list})"


@dataclass(frozen=True)
class Family:
    name: str
    element: str                  # C type of one element in `data`, as `_Get` returns it and `_Set` takes it
    members: tuple                # exported member suffixes, in header order
    host_element: str | None = None  # C++ element type of the host sequence ({I}: the element interface)
    of_objects: bool = False      # a signature names its element interface: ObjectReferenceVector<IPart>
    wire_result: wire_kinds.WireKind | None = None  # how a result travels (None: it stays behind)
    set_value: str = ""           # what `_Set` takes when it stores a copy of it instead (a text)
    set_checks_null: bool = True  # whether `_Set` tests the value it takes for null
    inner: str = ""               # the family of the vectors it holds, and deletes with itself
    each_release: str = ""        # what a caller gives back for each handle a result holds
    refillable: bool = False      # an operation may refill a caller's vector (`inout`)
    in_callbacks: str = ""        # how a callback may receive one: "read" only, or "write" (`inout`) only

    @property
    def c_type(self) -> str:
        return f"{self.name}_t"

    @property
    def result_release(self) -> Release:
        """How a caller gives back a vector of this family an operation returned."""
        if self.inner and BY_NAME[self.inner].each_release:
            return Release(f"{self.name}_Delete", BY_NAME[self.inner].each_release, nested=True)
        return Release(f"{self.name}_Delete", self.each_release)


_ALL = ("Create", "Get", "Set", "Clear", "Delete")
_NO_CLEAR = ("Create", "Get", "Set", "Delete")
_REFILL = dict(refillable=True)

FAMILIES = [
    Family("BoolVector", "int32_t", _ALL, "bool", **_REFILL),
    Family("ColorVector", "int32_t", _ALL, "std::uint32_t", **_REFILL),
    Family("EnumVector", "int32_t", _ALL, "std::int32_t", **_REFILL),
    Family("Int32Vector", "int32_t", _ALL, "std::int32_t", in_callbacks="read", **_REFILL),
    Family("Uint32Vector", "uint32_t", _ALL, "std::uint32_t", **_REFILL),
    Family("FloatVector", "float", _ALL, "float", **_REFILL),
    Family("DoubleVector", "double", _ALL, "double", **_REFILL),
    Family("NumericIdVector", "uint64_t", _ALL, "std::uint64_t", **_REFILL),
    Family("Uint8Vector", "uint8_t", _ALL, "std::uint8_t"),
    Family("Uint8VectorVector", "Uint8Vector_t*", _ALL, inner="Uint8Vector"),
    Family("StringVector", "tvWChar*", _ALL, "tvapi::WString", wire_result=wire_kinds.STRING_VECTOR,
           set_value="const tvWChar*", set_checks_null=False, in_callbacks="write", **_REFILL),
    Family("StringVectorVector", "StringVector_t*", _ALL, inner="StringVector"),
    Family("ObjectReferenceVector", "void*", _ALL, "tvapi::SmartPtr<tvapi::{I}>", of_objects=True,
           each_release="IAPIObject_Release", in_callbacks="read", **_REFILL),
    Family("ObjectReferenceVectorVector", "ObjectReferenceVector_t*", _ALL,
           "std::vector<tvapi::SmartPtr<tvapi::{I}>>", of_objects=True, inner="ObjectReferenceVector"),
    Family("PropertyValueVector", "PropertyValue_t*", _ALL, "tvapi::PropertyValue",
           each_release="PropertyValue_Delete"),
    Family("AttributeValueVector", "AttributeValue_t*", _NO_CLEAR, "tvapi::AttributeValue"),
    Family("StorageValueVector", "StorageValue_t*", _NO_CLEAR, "tvapi::StorageValue"),
]

BY_NAME = {f.name: f for f in FAMILIES}

# Families a catalogue signature may use: those with host converters.
SIGNATURE_FAMILIES = {f.name for f in FAMILIES if f.host_element is not None}


@dataclass(frozen=True)
class Value:
    """A value handle (it holds one host value of its name) and its own exported
    functions (member, result C type, further parameters), in header order."""
    name: str
    functions: tuple = ()
    checks_null: bool = True      # whether its functions test the handle for null

    @property
    def c_type(self) -> str:
        return f"{self.name}_t"


VALUES = {v.name: v for v in [
    Value("PropertyValue", (
        ("Create", "PropertyValue_t*", None),
        ("Delete", "void", ()),
        ("GetBool", "int32_t", ()),
        ("GetInt", "int32_t", ()),
        ("GetDouble", "double", ()),
        ("GetString", "tvWChar*", ()),
        ("GetValueType", "int32_t", ()),
        ("SetBool", "void", (("int32_t", "flag"),)),
        ("SetInt", "void", (("int32_t", "number"),)),
        ("SetDouble", "void", (("double", "number"),)),
        ("SetString", "void", (("const tvWChar*", "text"),)),
        ("ToBool", "int32_t", ()),
        ("ToInt", "int32_t", ()),
        ("ToDouble", "double", ()),
        ("ToString", "tvWChar*", ()),
    ), checks_null=False),
    Value("AttributeValue"),
    Value("StorageValue"),
]}

# The handle base: references and identity of any object.
HANDLE_BASE = [
    Prototype(CResult("int"), "IAPIObject_AddRef", (CParam("void*", "handle", nullable=False),)),
    Prototype(CResult("int"), "IAPIObject_Release", (CParam("void*", "handle", nullable=False),)),
    Prototype(CResult("bool"), "IAPIObject_IsSameObjects", (CParam("void*", "first"), CParam("void*", "second"))),
]


def member_prototype(family: Family, member: str) -> Prototype:
    """One exported family member."""
    vector = CParam(f"{family.c_type}*", "vector")
    index = CParam("uint64_t", "index")
    name = f"{family.name}_{member}"
    if member == "Create":
        result = CResult(f"{family.c_type}*", "delete", Release(f"{family.name}_Delete"))
        return Prototype(result, name, (CParam("uint64_t", "count"),), family)
    if member == "Get":
        return Prototype(CResult(family.element, "lent"), name, (vector, index), family)
    if member == "Set":
        value = CParam(family.set_value or family.element, "value", nullable=family.set_checks_null)
        return Prototype(CResult("void"), name, (vector, index, value), family)
    return Prototype(CResult("void"), name, (vector,), family)


def value_prototype(value: Value, member: str, result: str, params) -> Prototype:
    """One function of a value handle; `params` None: it takes no handle (it makes one)."""
    name = f"{value.name}_{member}"
    if params is None:
        return Prototype(CResult(result, "delete", Release(f"{value.name}_Delete"), nullable=False), name, (), value)
    handle = CParam(f"{value.c_type}*", "value", nullable=value.checks_null)
    owned = CResult(result, "free", Release("free")) if result == "tvWChar*" else CResult(result)
    return Prototype(owned, name, (handle,) + tuple(CParam(t, n) for t, n in params), value)


def container_prototypes() -> list[Prototype]:
    """Every exported vector and value function, in header order."""
    out = [member_prototype(f, m) for f in FAMILIES for m in f.members]
    out += [value_prototype(v, *fn) for v in VALUES.values() for fn in v.functions]
    return out
