"""Emits type stubs (.pyi) of the Python package's generated parts, so that
editors complete and type checkers check calls:

    native.pyi     every export of tvapic.native, with the module's own names
    objects.pyi    a class per interface of tvapic.objects
    _remote.pyi    the remote client's methods (tvapic.Client inherits them)

Types follow the binding's kinds (see model/python.py): handles are Handle in
process and the wire's Handle remotely, lists are List going out and Sequence
coming in, and a null (None) is allowed wherever the binding takes or gives one.
A result that does not travel is typed as in process: the object layer raises
rather than answer None for it.
"""

from .model.python import entries, methods, python_type, travelling
from .model.types import SCALARS
from .model.wire import result_wire

T = "_t."   # typing, imported under a name no interface or operation takes

_ELEMENT = {"BoolVector": "bool", "ColorVector": "int", "EnumVector": "int", "Int32Vector": "int",
            "Uint32Vector": "int", "NumericIdVector": "int", "Uint8Vector": "int", "FloatVector": "float",
            "DoubleVector": "float", "StringVector": "str", "PropertyValueVector": "PropertyValue",
            "AttributeValueVector": "None", "StorageValueVector": "None"}
_RAW = {"void": "None", "pointer": f"{T}Optional[int]", "nonnull": "int", "float": "float", "double": "float"}


def _opt(text):
    return text if text.startswith(f"{T}Optional[") or text == "None" else f"{T}Optional[{text}]"


class Types:
    """Python types of the binding's kinds; `objects` names what a handle of an interface becomes."""

    def __init__(self, objects=None):
        self.objects = objects or (lambda interface: "Handle")

    def element(self, words):
        family = words[1]
        if family == "ObjectReferenceVector":
            return _opt(self.objects(words[2]))
        if family == "ObjectReferenceVectorVector":
            return f"{T}Optional[{T}List[{_opt(self.objects(words[2]))}]]"
        return _ELEMENT[family]

    def value(self, words):
        """The type of a value of a kind, as it comes back."""
        head = words[0]
        if head in ("out", "inout"):
            return self.value(words[1:])
        if head in SCALARS:
            return python_type(head)
        if head in ("text", "borrowed-text", "nonnull-text"):
            return "str"
        if head == "object":
            return _opt(self.objects(words[1]))
        if head == "vector":
            return f"{T}List[{self.element(words)}]"
        if head == "value":
            return "PropertyValue" if words[1] == "PropertyValue" else "None"
        if head == "raw":
            return _RAW.get(words[1], "int")
        if head == "void":
            return "None"
        if head == "callback":
            return f"{T}Optional[{T}Callable[..., {T}Any]]"
        raise ValueError(f"no Python type for {' '.join(words)}")

    def argument(self, kind):
        words = kind.split()
        head = words[0]
        if head == "out":
            return _opt(self.value(words[1:]))
        if head == "inout" or head == "vector":
            inner = words[1:] if head == "inout" else words
            return f"{T}Optional[{T}Sequence[{self.element(inner)}]]"
        if head == "text":
            return f"{T}Optional[str]"
        if head == "handle":
            return self.objects("IAPIObject")
        if head == "raw" and words[1] == "pointer":
            return f"{T}Optional[int]"
        return self.value(words)

    def answer(self, result, params, remote=False):
        """The answer's type; remotely, refilled lists may be None."""
        result_type = self.value(result.split())
        returning = [kind for _, kind in params if kind.startswith(("out ", "inout "))]
        if not returning:
            return result_type
        items = [_opt(self.value(kind.split())) if kind.startswith("out ") or remote else self.value(kind.split())
                 for kind in returning]
        if result != "void":
            items.append(result_type)
        return f"{T}Tuple[{', '.join(items)}]"


def _defaults(params):
    """Out-parameters and refilled lists after the last parameter that must be given are optional."""
    required = [n for n, (_, kind) in enumerate(params) if not kind.startswith(("out ", "inout "))]
    last = required[-1] if required else -1
    return [n > last for n in range(len(params))]


def _def(name, params, answer, types, self_param=False):
    args = ["self"] if self_param else []
    for (pname, kind), optional in zip(params, _defaults(params)):
        args.append(f"{pname}: {types.argument(kind)}" + (" = ..." if optional else ""))
    return f"def {name}({', '.join(args)}) -> {answer}: ..."


# --- native.pyi -----------------------------------------------------------------

NATIVE_HEAD = f'''"""Type stubs of tvapic.native. Generated from the catalogue by tools/tvgen; do not edit."""

import typing as _t

PropertyValue = _t.Union[None, bool, int, float, str]

FUNCTIONS: _t.Dict[str, _t.Tuple[str, ...]]
CALLBACKS: _t.Dict[str, _t.Tuple[str, ...]]


class LibraryNotFound(OSError): ...


class Handle:
    def __init__(self, address: int) -> None: ...
    @classmethod
    def borrow(cls, address: {T}Optional[int]) -> {T}Optional["Handle"]: ...
    @property
    def address(self) -> int: ...
    @property
    def released(self) -> bool: ...
    def release(self) -> {T}Optional[int]: ...
    def duplicate(self) -> "Handle": ...
    def is_same_object(self, other: {T}Optional["Handle"]) -> bool: ...
    def __enter__(self) -> "Handle": ...
    def __exit__(self, *exc: {T}Any) -> None: ...


class Ref:
    value: {T}Any
    def __init__(self, value: {T}Any = ...) -> None: ...


class Function:
    __name__: str
    result_kind: str
    params: {T}List[{T}Tuple[str, str]]
    def __init__(self, name: str) -> None: ...
    def __call__(self, *args: {T}Any, **kwargs: {T}Any) -> {T}Any: ...


def load(path: {T}Optional[str] = ...) -> str: ...
def start_simulated_host(path: {T}Optional[str] = ...) -> str: ...
def stop_simulated_host() -> None: ...
def library_path() -> {T}Optional[str]: ...
def function(name: str) -> Function: ...
def outstanding() -> int: ...

'''


def emit_native(model):
    types = Types()
    out = [NATIVE_HEAD]
    for name, result, params in entries(model):
        out.append(_def(name, params, types.answer(result, params), types) + "\n")
    return "".join(out)


# --- objects.pyi ----------------------------------------------------------------

OBJECTS_HEAD = f'''"""Type stubs of tvapic.objects. Generated from the catalogue by tools/tvgen; do not edit."""

import typing as _t

from .client import Client
from .errors import DoesNotTravel as DoesNotTravel, NotRemotable as NotRemotable, NullHandle as NullHandle

PropertyValue = _t.Union[None, bool, int, float, str]
_O = _t.TypeVar("_O", bound="APIObject")
_V = _t.TypeVar("_V")

INTERFACES: _t.Dict[str, _t.Tuple[str, {T}Optional[str], {T}Optional[str], bool, _t.Tuple[str, ...]]]


class APIObject:
    INTERFACE: str
    IID: {T}Optional[str]
    GROUP: {T}Optional[str]
    REMOTE: bool
    @property
    def handle(self) -> {T}Any: ...
    @property
    def in_process(self) -> bool: ...
    @_t.overload
    def query(self, interface: {T}Type[_O]) -> _O: ...
    @_t.overload
    def query(self, interface: str) -> "APIObject": ...
    def is_same_object(self, other: {T}Any) -> bool: ...
    def release(self) -> None: ...
    def __enter__(self: _O) -> _O: ...
    def __exit__(self, *exc: {T}Any) -> None: ...


def application(client: {T}Optional[Client] = ...) -> "IApplication": ...
def transfer_service() -> "ITransferService": ...
def interface_class(name: str) -> {T}Type[APIObject]: ...
def require(value: {T}Optional[_V]) -> _V: ...
def wrap(handle: {T}Any, interface: {T}Union[str, {T}Type[APIObject]] = ...,
         client: {T}Optional[Client] = ...) -> {T}Optional[APIObject]: ...

'''


def _object_class(interface):
    return "APIObject" if interface == "IAPIObject" else f'"{interface}"'


def emit_objects(model):
    types = Types(_object_class)
    table = {name: (result, params) for name, result, params in entries(model)}
    remote = {op.export for op in model.remotable()}
    out = [OBJECTS_HEAD]
    for i in model.interfaces.values():
        out.append(f"\nclass {i.name}(APIObject):\n")
        its_methods = methods(model, i)
        if not its_methods:
            out.append("    ...\n")
        for name, export in its_methods:
            result, params = table[export]
            params = params if i.root else params[1:]
            answer = types.answer(result, params, export in remote)
            out.append("    " + _def(name, params, answer, types, self_param=True) + "\n")
    return "".join(out)


# --- _remote.pyi ----------------------------------------------------------------

REMOTE_HEAD = '''"""Type stubs of the remote client's function table. Generated from the catalogue by tools/tvgen; do not edit."""

import typing as _t

from .wire import Handle, Signature

INTERFACES: _t.Tuple[str, ...]
SIGNATURES: _t.Dict[str, Signature]


class RemoteAPI:
'''

def _wire_value(kind):
    """The remote client's type of a value of a catalogue kind: handles may be null."""
    if kind == "vector":   # a StringVector result, the one list that travels
        return f"{T}Optional[{T}List[str]]"
    return _opt(python_type(kind)) if kind == "object" else python_type(kind)


def emit_remote(model):
    out = [REMOTE_HEAD]
    for op in model.remotable():
        params, _ = travelling(op)
        last_required = max((n for n, p in enumerate(params) if not p[1].endswith("slot")), default=-1)
        args = ["self"]
        slots = []
        for n, (name, kind, type_, _of) in enumerate(params):
            if kind.endswith("slot"):
                slots.append(_opt(_wire_value(type_)))
                args.append(f"{name}: {_opt(_wire_value(type_))}" + (" = ..." if n > last_required else ""))
            else:
                args.append(f"{name}: {_wire_value(type_)}")
        result = _wire_value(op.result.kind) if result_wire(op) else None
        if slots:
            answer = f"{T}Tuple[{', '.join(slots + ([result] if result else []))}]"
        else:
            answer = result or "None"
        out.append(f"    def {op.export}({', '.join(args)}) -> {answer}: ...\n")
    return "".join(out)


def outputs(model):
    """Stub files by path relative to the package."""
    return {
        "native.pyi": lambda: emit_native(model),
        "objects.pyi": lambda: emit_objects(model),
        "_remote.pyi": lambda: emit_remote(model),
    }
