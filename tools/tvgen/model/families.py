"""The C vector and value families of the public header.

One row per family: its name, the C type of one element, the type that `_Get`
returns and `_Set` takes, which exported members it has, the host element
type that its converters produce (None where no host sequence exists), and
the wire kind a result of the family travels as (None: it stays behind).
"""

from dataclasses import dataclass


@dataclass(frozen=True)
class Family:
    name: str
    element: str          # C type of one element in `data`
    value: str            # C type returned by `_Get` and taken by `_Set`
    members: tuple        # exported member suffixes, in header order
    host_element: str | None = None  # C++ element type of the host sequence
    wire_result: str | None = None   # wire kind of a result of the family (None: it stays behind)

    @property
    def c_type(self) -> str:
        return f"{self.name}_t"


_ALL = ("Create", "Get", "Set", "Clear", "Delete")
_NO_CLEAR = ("Create", "Get", "Set", "Delete")

FAMILIES = [
    Family("BoolVector", "int32_t", "int32_t", _ALL, "bool"),
    Family("ColorVector", "int32_t", "int32_t", _ALL, "std::uint32_t"),
    Family("EnumVector", "int32_t", "int32_t", _ALL, "std::int32_t"),
    Family("Int32Vector", "int32_t", "int32_t", _ALL, "std::int32_t"),
    Family("Uint32Vector", "uint32_t", "uint32_t", _ALL, "std::uint32_t"),
    Family("FloatVector", "float", "float", _ALL, "float"),
    Family("DoubleVector", "double", "double", _ALL, "double"),
    Family("NumericIdVector", "uint64_t", "uint64_t", _ALL, "std::uint64_t"),
    Family("Uint8Vector", "uint8_t", "uint8_t", _ALL, "std::uint8_t"),
    Family("Uint8VectorVector", "Uint8Vector_t*", "Uint8Vector_t*", _ALL),
    Family("StringVector", "tvWChar*", "tvWChar*", _ALL, "tvapi::WString", "string vector"),
    Family("StringVectorVector", "StringVector_t*", "StringVector_t*", _ALL),
    Family("ObjectReferenceVector", "void*", "void*", _ALL, "tvapi::SmartPtr<tvapi::{I}>"),
    Family("ObjectReferenceVectorVector", "ObjectReferenceVector_t*", "ObjectReferenceVector_t*", _ALL,
           "std::vector<tvapi::SmartPtr<tvapi::{I}>>"),
    Family("PropertyValueVector", "PropertyValue_t*", "PropertyValue_t*", _ALL, "tvapi::PropertyValue"),
    Family("AttributeValueVector", "AttributeValue_t*", "AttributeValue_t*", _NO_CLEAR, "tvapi::AttributeValue"),
    Family("StorageValueVector", "StorageValue_t*", "StorageValue_t*", _NO_CLEAR, "tvapi::StorageValue"),
]

BY_NAME = {f.name: f for f in FAMILIES}

# Families a catalogue signature may use: those with host converters.
SIGNATURE_FAMILIES = {f.name for f in FAMILIES if f.host_element is not None}
OBJECT_FAMILIES = {"ObjectReferenceVector", "ObjectReferenceVectorVector"}

# The value handles and the host classes they hold.
VALUES = {
    "PropertyValue": "tvapi::PropertyValue",
    "AttributeValue": "tvapi::AttributeValue",
    "StorageValue": "tvapi::StorageValue",
}

# Functions of a single property value, in header order: (name, result, params).
PROPERTY_VALUE_FUNCTIONS = [
    ("Create", "PropertyValue_t*", ""),
    ("Delete", "void", "PropertyValue_t* value"),
    ("GetBool", "int32_t", "PropertyValue_t* value"),
    ("GetInt", "int32_t", "PropertyValue_t* value"),
    ("GetDouble", "double", "PropertyValue_t* value"),
    ("GetString", "tvWChar*", "PropertyValue_t* value"),
    ("GetValueType", "int32_t", "PropertyValue_t* value"),
    ("SetBool", "void", "PropertyValue_t* value, int32_t flag"),
    ("SetInt", "void", "PropertyValue_t* value, int32_t number"),
    ("SetDouble", "void", "PropertyValue_t* value, double number"),
    ("SetString", "void", "PropertyValue_t* value, const tvWChar* text"),
    ("ToBool", "int32_t", "PropertyValue_t* value"),
    ("ToInt", "int32_t", "PropertyValue_t* value"),
    ("ToDouble", "double", "PropertyValue_t* value"),
    ("ToString", "tvWChar*", "PropertyValue_t* value"),
]


def member_prototype(family: Family, member: str) -> tuple[str, str, str]:
    """(result, name, parameters) of one exported family member."""
    t = family.c_type
    name = f"{family.name}_{member}"
    if member == "Create":
        return f"{t}*", name, "uint64_t count"
    if member == "Get":
        return family.value, name, f"{t}* vector, uint64_t index"
    if member == "Set":
        value = "const tvWChar*" if family.name == "StringVector" else family.value
        return "void", name, f"{t}* vector, uint64_t index, {value} value"
    return "void", name, f"{t}* vector"


def container_prototypes() -> list[tuple[str, str, str]]:
    """Every exported vector and value function, as (result, name, parameters)."""
    out = [member_prototype(f, m) for f in FAMILIES for m in f.members]
    out += [(r, f"PropertyValue_{n}", p or "void") for n, r, p in PROPERTY_VALUE_FUNCTIONS]
    return out
