"""Emits TvApic.Native (dotnet/Native.g.cs): one [DllImport] per export, as
exported (handles, vectors and returned text as IntPtr, text arguments as
UTF-16 strings), and the C callback types of the event registrations as
delegates. clients/dotnet/TvApic has the hand-written rest of the binding."""

from .model import families
from .model.csharp import (BOOL_RESULT, HEADER, callback_native_param, callback_native_result, handle_name, ident,
                           native_param, native_result, raw_type)
from .model.types import LPWSTR


def base_imports():
    """(result, export, [(C# type, name)]) of the handle base, vector and value functions."""
    out = [("int", "IAPIObject_AddRef", [("IntPtr", "handle")]), ("int", "IAPIObject_Release", [("IntPtr", "handle")]),
           (BOOL_RESULT + "bool", "IAPIObject_IsSameObjects", [("IntPtr", "first"), ("IntPtr", "second")])]
    for result, name, params in families.container_prototypes():
        args = []
        if params != "void":
            for param in params.split(", "):
                c_type, pname = param.rsplit(" ", 1)
                args.append((raw_type(c_type), pname))
        out.append((raw_type(result), name, args))
    return out


def registration_import(e):
    first = "events" if e.source.kind == "events" else "handle"
    params = [("IntPtr", first)] + ([(LPWSTR, "key")] if e.source.keyed else [])
    return "void", e.export, params + [(e.callback_type, "callback")]


def op_import(op):
    params = [] if op.interface.root else [("IntPtr", handle_name(op))]
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
