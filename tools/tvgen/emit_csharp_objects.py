"""Emits TvApic.Objects (dotnet/Objects.g.cs): one class per interface over
TvApic.Native. Arguments and results are converted (text copied and freed,
vectors to arrays and deleted with their family's _Delete, handles wrapped in
objects that hold one reference), handlers are .NET delegates."""

from .bindings.csharp import HEADER, callback_native_param, csharp_type, ident
from .model.types import SCALARS

# Members the binding gives every object class: no operation may take their names.
RESERVED = {"Dispose", "Handle", "Query", "IsSameObject", "Interface", "From", "Iid", "Finalize", "MemberwiseClone",
            "ReferenceEquals"}
# System.Object's members and their parameter counts: an operation of the
# same shape hides them (`new`), as ITavraAPIObject.GetType() does.
OBJECT_MEMBERS = {"GetType": 0, "ToString": 0, "GetHashCode": 0, "Equals": 1}

# Element types of the vector families as .NET arrays hold them.
ELEMENTS = {"BoolVector": "bool", "ColorVector": "uint", "EnumVector": "int", "Int32Vector": "int",
            "Uint32Vector": "uint", "FloatVector": "float", "DoubleVector": "double", "NumericIdVector": "ulong",
            "Uint8Vector": "byte", "StringVector": "string", "PropertyValueVector": "object",
            "AttributeValueVector": "object", "StorageValueVector": "object"}


def class_name(interface):
    """The .NET type an argument of an interface takes: any object where the signature leaves it open."""
    return "ApiObject" if interface == "IAPIObject" else interface


def factory(interface):
    return f"{interface}.From"


class Method:
    """One generated method body in parts: parameters, statements before the
    call, the call's arguments, statements after it."""

    def __init__(self):
        self.params, self.before, self.args, self.after = [], [], [], []
        self.uses_call = False

    def through(self, param, before, after, arg):
        """A parameter passed through a local: set before the call, read back after it."""
        self.params.append(param)
        self.before.append(before)
        self.after.append(after)
        return arg


def _vector_arg(m, p, n):
    t = p.type
    m.uses_call = True
    if t.name == "ObjectReferenceVector":
        element = class_name(t.element)
        m.params.append(f"{element}[] {ident(p.name)}")
        return f"__call.ObjectReferenceVector({ident(p.name)})"
    if t.name == "ObjectReferenceVectorVector":
        m.params.append(f"{class_name(t.element)}[][] {ident(p.name)}")
        return f"__call.ObjectReferenceVectorVector({ident(p.name)})"
    element = ELEMENTS[t.name]
    if p.mode == "inout":
        name = ident(p.name)
        return m.through(f"ref {element}[] {name}", f"IntPtr __v{n} = __call.{t.name}({name});",
                         f"{name} = Vectors.Read{t.name}(__v{n});", f"__v{n}")
    m.params.append(f"{element}[] {ident(p.name)}")
    return f"__call.{t.name}({ident(p.name)})"


def _out_arg(m, p, n):
    t, name = p.type, ident(p.name)
    if t.kind == "object":
        return m.through(f"out {t.name} {name}", f"IntPtr __o{n} = IntPtr.Zero;",
                         f"{name} = {factory(t.name)}(__o{n});", f"ref __o{n}")
    if t.kind == "bool":
        return m.through(f"ref bool {name}", f"int __b{n} = {name} ? 1 : 0;", f"{name} = __b{n} != 0;", f"ref __b{n}")
    m.params.append(f"ref {csharp_type(t.kind)} {name}")
    return f"ref {name}"


def _arg(m, p, n):
    t, name = p.type, ident(p.name)
    if p.mode == "out":
        return _out_arg(m, p, n)
    if t.kind == "vector":
        return _vector_arg(m, p, n)
    if t.kind == "bool":
        m.params.append(f"bool {name}")
        return f"({name} ? 1 : 0)"
    if t.kind in SCALARS:
        m.params.append(f"{csharp_type(t.kind)} {name}")
        return name
    if t.kind == "text":
        m.params.append(f"string {name}")
        return name
    if t.kind == "object":
        m.params.append(f"{class_name(t.name)} {name}")
        return f"ApiObject.HandleOf({name})"
    if t.name == "PropertyValue":
        m.uses_call = True
        m.params.append(f"object {name}")
        return f"__call.PropertyValue({name})"
    m.params.append(f"IntPtr {name}")   # attribute and storage values: no C way to make one
    return name


def result_type(t):
    if t.kind == "void":
        return "void"
    if t.kind in SCALARS:
        return csharp_type(t.kind)
    if t.kind == "text":
        return "string"
    if t.kind == "object":
        return t.name
    if t.kind == "vector":
        if t.name == "ObjectReferenceVector":
            return f"{t.element}[]"
        if t.name == "ObjectReferenceVectorVector":
            return f"{t.element}[][]"
        return ELEMENTS[t.name] + "[]"
    return "object" if t.name == "PropertyValue" else "IntPtr"


def take_result(t, call):
    """The expression that turns the export's result into the method's."""
    if t.kind in SCALARS or t.kind == "void":
        return call
    if t.kind == "text":
        return f"Text.Take({call})"
    if t.kind == "object":
        return f"{factory(t.name)}({call})"
    if t.kind == "vector":
        if t.element:
            return f"Vectors.Take{t.name}({call}, {factory(t.element)})"
        return f"Vectors.Take{t.name}({call})"
    return f"Values.Take({call})" if t.name == "PropertyValue" else call


def modifiers(name, params, static):
    hides = OBJECT_MEMBERS.get(name) == len(params) and not static
    return "public " + ("static " if static else "") + ("new " if hides else "")


def method_text(name, static, handle, native_name, params_of, result, body_extra="", first=""):
    """A method: parameters and conversions from params_of, the native call, the result."""
    m = Method()
    args = ([handle] if handle else []) + [_arg(m, p, n) for n, p in enumerate(params_of)]
    call = f"Native.{native_name}({', '.join(args)})"
    lines = ([first] if first else []) + m.before
    rtype = result_type(result)
    if result.kind == "void":
        lines.append(f"{call};")
        lines += m.after
    elif m.after:
        lines.append(f"var __r = {take_result(result, call)};")
        lines += m.after
        lines.append("return __r;")
    else:
        lines.append(f"return {take_result(result, call)};")
    if body_extra:
        lines.append(body_extra)
    indent = "            "
    if m.uses_call:
        body = ["using (var __call = new Call())", "{"] + [f"    {line}" for line in lines] + ["}"]
    else:
        body = lines
    head = f"        {modifiers(name, m.params, static)}{rtype} {ident(name)}({', '.join(m.params)})"
    return head + "\n        {\n" + "".join(f"{indent}{line}\n" for line in body) + "        }\n"


def handler_param(p):
    t = p.type
    conversion = p.conversion
    if conversion == "object":
        return t.name
    if conversion == "ObjectReferenceVector":
        return f"{t.element}[]"
    if conversion == "Int32Vector":
        return "int[]"
    if conversion == "StringVector":
        return "ref string[]"
    base = csharp_type(conversion)
    return f"ref {base}" if p.inout else base


def handler_result(t):
    return csharp_type(t.kind)


def handler_type(e):
    return f"{e.source.name}_{e.name}Handler"


# What a callback may write, passed to the handler through a local: the
# local's declaration before the call and its write-back after it.
_WRITABLE = {
    "StringVector": ("string[] {t} = Vectors.ReadStringVector({p});", "Vectors.ReplaceStrings({p}, {t});"),
    "text": ("string {t} = null;", "Text.ToSlot({p}, {t});"),   # the callback does not see the host's text
    "bool": ("bool {t} = {p} != 0;", "{p} = {t} ? 1 : 0;"),
}


def adapter(e):
    """The lambda that the library calls: C arguments to .NET ones, the
    handler, its result back. What it lends is given back when it returns."""
    before, args, after = [], [], []
    for n, p in enumerate(e.params):
        name = f"__p{n}"   # the registration's own parameters keep their names
        conversion = p.conversion
        if conversion == "object":
            args.append(f"__lent.Object({name}, {factory(p.type.name)})")
        elif conversion == "ObjectReferenceVector":
            args.append(f"__lent.Objects({name}, {factory(p.type.element)})")
        elif conversion == "Int32Vector":
            args.append(f"Vectors.ReadInt32Vector({name})")
        elif p.inout and conversion in _WRITABLE:
            declare, write_back = _WRITABLE[conversion]
            before.append(declare.format(t=f"__w{n}", p=name))
            args.append(f"ref __w{n}")
            after.append(write_back.format(t=f"__w{n}", p=name))
        elif conversion == "text":
            args.append(f"Text.Borrow({name})")
        elif conversion == "bool":
            args.append(f"{name} != 0")
        else:
            args.append(f"ref {name}" if p.inout else name)
    call = f"handler({', '.join(args)})"
    result = e.result.kind
    lines = list(before)
    if result == "void":
        lines.append(f"{call};")
        lines += after
    else:
        lines.append(f"var __r = {call};")
        lines += after
        lines.append("return __r ? 1 : 0;" if result == "bool" else "return __r;")
    failed = {"void": "", "bool": "return 0;", "enum": "return 0;", "pointer": "return IntPtr.Zero;"}[result]
    params = ", ".join(f"{callback_native_param(p)} __p{n}" for n, p in enumerate(e.params))
    body = "".join(f"                        {line}\n" for line in lines)
    return (f"            Native.{e.callback_type} __callback = ({params}) =>\n"
            "            {\n"
            "                try\n                {\n"
            "                    using (var __lent = new Lent())\n                    {\n"
            f"{body}"
            "                    }\n                }\n"
            f"                catch (Exception __e) {{ Handlers.Report(\"{e.export}\", __e); {failed} }}\n"
            "            };\n")


def kept_key(source):
    """The key the delegates are kept under: a keyed source's (null is the empty key), or none."""
    return 'key ?? ""' if source.keyed else "null"


def registration_method(e):
    key = e.source.keyed
    params = (["string key"] if key else []) + [f"{handler_type(e)} handler"]
    call_args = ["Handle"] + (["key"] if key else []) + ["__callback"]
    return (f"        public void {e.registration}({', '.join(params)})\n"
            "        {\n"
            "            if (handler == null) throw new ArgumentNullException(\"handler\");\n"
            f"{adapter(e)}"
            f"            Handlers.Keep(Handle, {kept_key(e.source)}, __callback);\n"
            f"            Native.{e.export}({', '.join(call_args)});\n"
            "        }\n")


def removal_note(source, op):
    """RemoveAllHandlers also lets go of the delegates the removed handlers were."""
    if source is None or source.kind != "events" or op.name != "RemoveAllHandlers":
        return ""
    return f"Handlers.Drop(Handle, {kept_key(source)});"


def class_text(interface, model):
    name = interface.name
    source = model.queried_source(name)
    for op in interface.ops:
        if op.name in RESERVED or op.name == name:
            raise ValueError(f"{op.where}: {name}.{op.name} would hide a member of the C# object classes")
    if interface.root:
        out = [f"    /// <summary>{name}, the {interface.root}'s own interface: static methods.</summary>\n",
               f"    public static class {name}\n    {{\n"]
        # Outside the application, a clear error until the simulated host starts (TvApic.SimulatedHost).
        out += [method_text(op.name, True, None, op.export, op.params, op.result,
                            first=f'SimulatedHost.Require("{name}", "{op.export}");') for op in interface.ops]
        return "".join(out) + "    }\n"
    out = [f"    /// <summary>{name} (IID {interface.iid}).</summary>\n",
           f"    public sealed class {name} : ApiObject\n    {{\n",
           f"        public const string Iid = \"{interface.iid}\";\n",
           f"        {name}(IntPtr handle) : base(handle) {{ }}\n",
           f"        public override string Interface {{ get {{ return \"{name}\"; }} }}\n",
           "        /// <summary>Takes over a reference the caller holds; null for the null handle.</summary>\n",
           f"        public static {name} From(IntPtr handle) {{ return handle == IntPtr.Zero ? null : new {name}(handle); }}\n"]
    for op in interface.ops:
        out.append(method_text(op.name, False, "Handle", op.export, op.params, op.result, removal_note(source, op)))
    if source:
        out += [registration_method(e) for e in source.events]
    return "".join(out) + "    }\n"


def handler_delegates(model):
    out = []
    for e in model.events():
        if not e.source.queried:
            continue
        params = ", ".join(f"{handler_param(p)} {ident(p.name)}" for p in e.params)
        out.append(f"    public delegate {handler_result(e.result)} {handler_type(e)}({params});\n")
    return "".join(out)


def emit(model):
    out = [HEADER, "using System;\nusing System.Collections.Generic;\n\nnamespace TvApic.Objects\n{\n",
           "    // Handlers: objects they receive are lent for the call; Query<T>() keeps one.\n",
           handler_delegates(model), "\n"]
    out += [class_text(i, model) for i in model.interfaces.values()]
    factories = "".join(f"            {{ typeof({i.name}), {i.name}.From }},\n"
                        for i in model.interfaces.values() if not i.root)
    out.append("    public abstract partial class ApiObject\n    {\n"
               "        static readonly Dictionary<Type, Func<IntPtr, ApiObject>> Factories =\n"
               "            new Dictionary<Type, Func<IntPtr, ApiObject>>\n        {\n"
               f"            {{ typeof(IAPIObject), IAPIObject.From }},\n{factories}"
               "        };\n    }\n}\n")
    return "".join(out)
