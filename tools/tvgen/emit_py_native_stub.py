"""Emits native.pyi: the type stubs of every export of tvapic.native, with
the module's own names, so that editors complete and type checkers check
calls (bindings/stubs.py has the types)."""

from .bindings.python import entries
from .bindings.stubs import T, Types, stub_def

NATIVE_HEAD = f'''"""Type stubs of tvapic.native. Generated from the catalogue by tools/tvgen; do not edit."""

import typing as _t

PropertyValue = _t.Union[None, bool, int, float, str]

FUNCTIONS: _t.Dict[str, _t.Tuple[str, ...]]
CALLBACKS: _t.Dict[str, _t.Tuple[str, ...]]


class LibraryNotFound(OSError): ...


class HeldHandle:
    def __init__(self, address: int) -> None: ...
    @classmethod
    def borrow(cls, address: {T}Optional[int]) -> {T}Optional["HeldHandle"]: ...
    @property
    def address(self) -> int: ...
    @property
    def released(self) -> bool: ...
    def release(self) -> {T}Optional[int]: ...
    def duplicate(self) -> "HeldHandle": ...
    def is_same_object(self, other: {T}Optional["HeldHandle"]) -> bool: ...
    def __enter__(self) -> "HeldHandle": ...
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


def emit(model):
    types = Types()
    out = [NATIVE_HEAD]
    for name, result, params in entries(model):
        out.append(stub_def(name, params, types.answer(result, params), types) + "\n")
    return "".join(out)
