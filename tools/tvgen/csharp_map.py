"""How catalogue types appear in C#: identifiers, and the types of the
platform-invoke declarations (TvApic.Native), which take and give what the
C exports do. The C# emitters share these, as the C ones share ctypes_map."""

HEADER = "// Generated from the catalogue by tools/tvgen; do not edit.\n"

KEYWORDS = set("""abstract as base bool break byte case catch char checked class const continue decimal default
delegate do double else enum event explicit extern false finally fixed float for foreach goto if implicit in int
interface internal is lock long namespace new null object operator out override params private protected public
readonly ref return sbyte sealed short sizeof stackalloc static string struct switch this throw true try typeof uint
ulong unchecked unsafe ushort using virtual void volatile while""".split())

LPWSTR = "[MarshalAs(UnmanagedType.LPWStr)] string"
BOOL_RESULT = "[return: MarshalAs(UnmanagedType.I1)] "

# C types of the handle base, vector and value functions.
RAW = {"void": "void", "int": "int", "uint64_t": "ulong", "int32_t": "int", "uint32_t": "uint", "uint8_t": "byte",
       "float": "float", "double": "double", "const tvWChar*": LPWSTR}

NATIVE_SCALAR = {"bool": "int", "int": "int", "enum": "int", "int64": "ulong", "double": "double"}


def ident(name):
    return "@" + name if name in KEYWORDS else name


def handle_name(op):
    """The export's handle parameter: `handle`, unless the operation has a parameter of that name."""
    own = {p.name for p in op.params}
    name = "handle"
    while name in own:
        name += "_"
    return name


def native_param(p):
    t = p.type
    if p.mode == "out":
        return "ref IntPtr" if t.kind == "object" else f"ref {NATIVE_SCALAR[t.kind]}"
    if t.kind in NATIVE_SCALAR:
        return NATIVE_SCALAR[t.kind]
    return LPWSTR if t.kind == "text" else "IntPtr"


def native_result(t):
    if t.kind == "void":
        return "void"
    if t.kind == "bool":
        return BOOL_RESULT + "bool"
    return NATIVE_SCALAR.get(t.kind, "IntPtr")


def raw_type(c_type):
    return RAW.get(c_type, "IntPtr" if c_type.endswith("*") else None)


def callback_native_param(p):
    if p.inout and p.kind in ("int", "bool"):
        return "ref int"
    return {"bool": "int", "int": "int", "uint32": "uint", "int64": "ulong", "double": "double",
            "enum": "int"}.get(p.kind, "IntPtr")


def callback_native_result(t):
    return {"void": "void", "bool": "int", "enum": "int", "pointer": "IntPtr"}[t.kind]
