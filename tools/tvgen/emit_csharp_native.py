"""Emits TvApic.Native (dotnet/Native.g.cs): one [DllImport] per export, as
exported (handles, vectors and returned text as IntPtr, text arguments as
UTF-16 strings), and the C callback types of the event registrations as
delegates. clients/dotnet/TvApic has the hand-written rest of the binding."""

from .bindings.csharp import (BOOL_RESULT, HEADER, callback_native_param, callback_native_result, ident,
                              native_handle_param, native_param, native_result, raw_type)
from .model import families
from .model.types import LPWSTR


def base_imports():
    """(result, export, [(C# type, name)]) of the handle base, vector and value functions."""
    return [(raw_type(proto.result.c_type), proto.name, [(raw_type(p.c_type), p.name) for p in proto.params])
            for proto in families.HANDLE_BASE + families.container_prototypes()]


def registration_import(e):
    first = "events" if e.source.kind == "events" else "handle"
    params = [("IntPtr", first)] + ([(LPWSTR, "key")] if e.source.keyed else [])
    return "void", e.export, params + [(e.callback_type, "callback")]


def op_import(op):
    params = [] if op.interface.root else [("IntPtr", native_handle_param(op))]
    params += [(native_param(p), ident(p.name)) for p in op.params]
    return native_result(op.result), op.export, params


def imports(model):
    """Every export in header order."""
    return (base_imports() + [op_import(op) for op in model.ops()]
            + [registration_import(e) for e in model.events()])


def emit(model):
    out = [HEADER, "using System;\nusing System.Runtime.InteropServices;\n\nnamespace TvApic\n{\n",
           "    public static partial class Native\n    {\n"]
    for result, name, params in imports(model):
        args = ", ".join(f"{t} {n}" for t, n in params)
        attribute = result[:-len("bool")] if result.startswith(BOOL_RESULT) else ""
        out.append(f"        [DllImport(Library, CallingConvention = CallingConvention.Cdecl)]{attribute.rstrip()}\n"
                   f"        public static extern {result[len(attribute):]} {name}({args});\n")
    out.append("\n        // The C callback types of the event registrations.\n")
    for e in model.events():
        args = ", ".join(f"{callback_native_param(p)} {ident(p.name)}" for p in e.params)
        out.append(f"        [UnmanagedFunctionPointer(CallingConvention.Cdecl)]\n"
                   f"        public delegate {callback_native_result(e.result)} {e.callback_type}({args});\n")
    out.append("    }\n}\n")
    return "".join(out)
