"""How the catalogue appears in C#: identifiers, and the types of the
platform-invoke declarations (TvApic.Native), which take and give what the
C exports do; the type table has each kind's C# types."""

from ..model.types import LPWSTR, TYPES
from .names import unique

HEADER = "// Generated from the catalogue by tools/tvgen; do not edit.\n"

KEYWORDS = set("""abstract as base bool break byte case catch char checked class const continue decimal default
delegate do double else enum event explicit extern false finally fixed float for foreach goto if implicit in int
interface internal is lock long namespace new null object operator out override params private protected public
readonly ref return sbyte sealed short sizeof stackalloc static string struct switch this throw true try typeof uint
ulong unchecked unsafe ushort using virtual void volatile while""".split())

BOOL_RESULT = "[return: MarshalAs(UnmanagedType.I1)] "

# C types of the handle base, vector and value functions.
RAW = {"void": "void", "int": "int", "uint64_t": "ulong", "int32_t": "int", "uint32_t": "uint", "uint8_t": "byte",
       "float": "float", "double": "double", "const tvWChar*": LPWSTR, "bool": BOOL_RESULT + "bool"}


def ident(name):
    return "@" + name if name in KEYWORDS else name


def native_handle_param(op):
    """The export's handle parameter: `handle`, unless the operation has a parameter of that name."""
    return unique("handle", {p.name for p in op.params})


def csharp_type(kind):
    """The object layer's C# type of a scalar or text kind."""
    return TYPES[kind].csharp


def _native(kind):
    """A scalar's C# type as exported; anything else is an address."""
    facts = TYPES[kind]
    return facts.csharp_native if facts.scalar else "IntPtr"


def native_param(p):
    t = p.type
    if p.mode == "out":
        return f"ref {_native(t.kind)}"
    return TYPES[t.kind].csharp_native


def native_result(t):
    if t.kind == "bool":
        return BOOL_RESULT + "bool"
    return "void" if t.kind == "void" else _native(t.kind)


def raw_type(c_type):
    return RAW.get(c_type, "IntPtr" if c_type.endswith("*") else None)


def callback_native_param(p):
    if p.inout and p.conversion in ("int", "bool"):
        return "ref int"
    return _native(p.conversion) if p.conversion in TYPES else "IntPtr"


def callback_native_result(t):
    return _native(t.kind) if t.kind != "void" else "void"
