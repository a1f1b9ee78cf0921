"""Emits objects.pyi: the type stubs of tvapic.objects, a class per
interface (bindings/stubs.py has the types)."""

from .bindings.python import entries, methods
from .bindings.stubs import T, Types, stub_def

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


def emit(model):
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
            out.append("    " + stub_def(name, params, answer, types, self_param=True) + "\n")
    return "".join(out)
