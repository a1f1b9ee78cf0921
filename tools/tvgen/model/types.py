"""The one table of type facts: how each catalogue type appears in C (the
exports), in C++ (the host), on the wire, in the export sweep, in Python and
in C#, and the C and C++ forms of operations and event callbacks built on it.

In a template, {name} is the type's name (the enumeration, interface, family
or value), {element} the element interface of an object vector and
{host_element} the host type of a vector's element (its family's).

Adding a scalar type to the generator is one row here, keyed by the word the
catalogue writes for it (`operations` and/or `callbacks` true); every emitter
reads it from this table. Outside the generator: the frame's conversions, an
`Arg` in src/frame/args.h and a `Result` in src/frame/results.h (arithmetic
host types already have theirs); the sweep's `kind::<sweep>` in tests/sweep;
and the bindings' runtimes, which convert values by kind (clients/python/tvapic,
clients/dotnet). A new wire kind also needs its decoder in src/server.
"""

from dataclasses import dataclass

from . import families
from .wire_kinds import F64, F64_SLOT, I32, I32_SLOT, STRING, U64, WireKind

LPWSTR = "[MarshalAs(UnmanagedType.LPWStr)] string"


@dataclass(frozen=True)
class TypeFacts:
    kind: str
    operations: bool          # an operation's signature names it by its kind word
    callbacks: bool           # an event callback's parameters name it by its kind word
    scalar: bool              # a plain value: may be an out-parameter, is passed by value
    c_arg: str                # C type as an argument (and as a callback's result)
    c_result: str             # C type as an operation's result
    host: str                 # C++ type of a value on the host's side
    by_ref: bool              # the host takes it by const reference
    wire: WireKind | None     # how an argument travels (None: it cannot, unless it stays behind)
    wire_slot: WireKind | None    # how an out-parameter travels (None: it cannot)
    wire_result: WireKind | None  # how a result travels (None: it stays behind; see also the families' wire_result)
    wire_note: str            # what a wire value carries beyond its kind, in the protocol tables
    sweep: str | None         # the export sweep's kind::<sweep> (out-parameters: kind::Out<sweep>)
    python: str | None        # Python type of a value
    python_doc: str           # how the remote module's docstrings name a value
    csharp_native: str        # C# type of the platform-invoke declarations (a scalar's, or a text argument's)
    csharp: str               # C# type of the object layer
    ownership: str = "none"   # what the caller does with a result (docs/catalogue-json.md lists the words)
    release: str = ""         # the function a caller gives an owned result back with
    stays_behind: bool = False    # an argument that does not travel: the function receives an empty one
    callback_inout: bool = False  # a callback may write it back (`inout`)
    named: str = ""           # the names an operation's signature gives it, when not its kind word (a pattern)
    callback_named: str = ""  # ... and an event callback's


_row, _ = TypeFacts, None
TYPES = {row.kind: row for row in [
    #    kind      ops    callb. scalar c_arg             c_result        host                              by_ref wire    slot      result  note      sweep     python    python_doc          C# native C#
    _row("void",    True,  False, False, "void",           "void",         "void",                           False, _,      _,        _,      "",       _,        "None",   "",                 "void",   "void"),
    _row("bool",    True,  True,  True,  "int",            "bool",         "bool",                           False, I32,    I32_SLOT, I32,    "bool",   "Bool",   "bool",   "bool",             "int",    "bool",
         callback_inout=True),
    _row("int",     True,  True,  True,  "int",            "int",          "int",                            False, I32,    I32_SLOT, I32,    "",       "Int",    "int",    "int",              "int",    "int",
         callback_inout=True),
    _row("uint32",  False, True,  True,  "uint32_t",       "uint32_t",     "std::uint32_t",                  False, _,      _,        _,      "",       _,        "int",    "int",              "uint",   "uint"),
    _row("int64",   True,  True,  True,  "uint64_t",       "uint64_t",     "std::uint64_t",                  False, U64,    _,        U64,    "int64",  "Int64",  "int",    "64-bit integer",   "ulong",  "ulong"),
    _row("double",  True,  True,  True,  "double",         "double",       "double",                         False, F64,    F64_SLOT, _,      "",       "Double", "float",  "float",            "double", "double"),
    _row("pointer", False, True,  True,  "void*",          "void*",        "void*",                          False, _,      _,        _,      "",       _,        "int",    "address",          "IntPtr", "IntPtr"),
    _row("enum",    False, False, True,  "int",            "int",          "tvapi::{name}",                  False, I32,    I32_SLOT, I32,    "{name}", "Enum",   "int",    "{name} value",     "int",    "int",
         # Host enumerations keep the host's names: most are tv…Enum; callbacks
         # also name a few without the prefix (DocumentTypeEnum) or the suffix
         # (tvProcessContextMenuType).
         named=r"tv\w+Enum", callback_named=r"tv[A-Z]\w*|[A-Z]\w*Enum"),
    _row("text",    True,  True,  False, "const tvWChar*", "tvWChar*",     "tvapi::WString",                 True,  STRING, _,        STRING, "",       "Text",   "str",    "str",              LPWSTR,   "string",
         ownership="free", release="free", callback_inout=True),
    _row("object",  False, False, False, "void*",          "void*",        "tvapi::SmartPtr<tvapi::{name}>", True,  U64,    _,        U64,    "{name}", "Object", "Handle", "handle of {name}", "IntPtr", "{name}",
         ownership="release", release="IAPIObject_Release"),
    _row("vector",  False, False, False, "{name}_t*",      "{name}_t*",    "std::vector<{host_element}>",    True,  _,      _,        _,      "",       _,        _,        "list of str",      "IntPtr", _,
         ownership="delete", stays_behind=True),   # released as its family says
    _row("value",   False, False, False, "{name}_t*",      "{name}_t*",    "tvapi::{name}",                  True,  _,      _,        _,      "",       "{name}", _,        "",                 "IntPtr", _,
         ownership="always-null"),
]}
del _row, _

# The words a signature writes for the types that are not named by pattern.
OPERATION_WORDS = {f.kind for f in TYPES.values() if f.operations}
CALLBACK_WORDS = {f.kind for f in TYPES.values() if f.callbacks}
SCALARS = {f.kind for f in TYPES.values() if f.scalar}


def fill(template, t):
    """A template of the table for the type t."""
    return template.format(name=t.name, element=t.element) if "{" in template else template


# C: the exports and the callbacks

def result_release(t):
    """How a caller gives back an operation's result of type t (None: nothing of it is the caller's)."""
    if t.kind == "vector":
        return families.BY_NAME[t.name].result_release
    return families.Release(TYPES[t.kind].release) if TYPES[t.kind].release else None


def c_param(p):
    text = fill(TYPES[p.type.kind].c_arg, p.type)
    return text + "*" if p.mode == "out" else text


def c_result(t):
    return fill(TYPES[t.kind].c_result, t)


def c_signature(op):
    """(result, parameter list) of an operation's export."""
    params = [] if op.interface.root else ["void* handle"]
    params += [f"{c_param(p)} {p.name}" for p in op.params]
    return c_result(op.result), ", ".join(params) or "void"


def callback_c_param(p):
    t = p.type
    text = fill(TYPES[t.kind].c_arg, t)
    if t.kind == "vector":
        return text if p.inout else "const " + text
    if p.inout:
        # The callback may replace a text: it receives where the text is.
        return ("tvWChar*" if t.kind == "text" else text) + "*"
    return text


def callback_c_result(t):
    return TYPES[t.kind].c_arg


def callback_c_params(e):
    return ", ".join(f"{callback_c_param(p)} {p.name}" for p in e.params) or "void"


def registration_params(e):
    """The export's C parameters: the object, the key when keyed, the callback."""
    first = "events" if e.source.kind == "events" else "handle"
    key = ["const tvWChar* key"] if e.source.keyed else []
    return ", ".join([f"void* {first}"] + key + [f"{e.callback_type} callback"])


# C++: the host

def host_element(t):
    return families.BY_NAME[t.name].host_element.format(I=t.element)


def host_value(t):
    """The host type of a value of type t (results and by-value uses)."""
    if t.kind == "vector":
        return TYPES["vector"].host.format(host_element=host_element(t))
    return fill(TYPES[t.kind].host, t)


def host_param(p, root=None):
    t = p.type
    if p.mode == "out":
        return host_value(t) + "*"
    if p.mode == "inout":
        return host_value(t) + "&"
    if t.kind == "object" and root == "service":
        # The transfer service receives the object itself, not one of its
        # interfaces: it is held for the call but never queried.
        return f"tvapi::{t.name}*"
    if TYPES[t.kind].by_ref:
        return f"const {host_value(t)}&"
    return host_value(t)


def host_signature(op):
    params = ", ".join(f"{host_param(p, op.interface.root)} {p.name}" for p in op.params)
    return f"{host_value(op.result)} {op.name}({params})"


def callback_host_signature(e):
    """The host handler's function type, e.g. bool(const tvapi::WString&)."""
    return f"{host_value(e.result)}({', '.join(host_param(p) for p in e.params)})"


def registration_declaration(e):
    """The host's registration method."""
    key = "const tvapi::WString& key, " if e.source.keyed else ""
    return f"void {e.registration}({key}{e.handler_type} handler)"
