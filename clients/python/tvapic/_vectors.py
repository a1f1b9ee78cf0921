"""C vectors and property values as Python lists and values.

Every vector family is the same header, a 64-bit size and a pointer to the
elements, made by the family's _Create and given back with its _Delete. What
differs is the element: numbers are copied in one slice; texts go in through
StringVector_Set (which copies them) and stay the vector's; object handles are
stored as given, and those a function returns carry one reference each, which
the list's Handles take over; property values are handles of their own that
the vector does not delete.

make() builds a vector for one call and registers in the call what gives it
back afterwards; take() reads a returned vector and deletes it.
"""

import ctypes

from . import _c_runtime, _utf16
from ._handles import HeldHandle, handle_address


class CVector(ctypes.Structure):
    _fields_ = [("size", ctypes.c_uint64), ("data", ctypes.c_void_p)]


_VECTOR_P = ctypes.POINTER(CVector)
_I32 = (-(1 << 31), (1 << 31) - 1)
_TEXT_P = ctypes.POINTER(ctypes.c_uint16)


def declare(lib, name, restype, *argtypes):
    f = getattr(lib, name)
    f.restype = restype
    f.argtypes = list(argtypes)
    return f


def header(vector):
    return ctypes.cast(vector, _VECTOR_P).contents


def _elements(vector, element):
    h = header(vector)
    return (element * h.size).from_address(h.data) if h.size else []


def as_list(values, where):
    if isinstance(values, (str, bytes, bytearray)) or not hasattr(values, "__len__"):
        raise TypeError(f"{where} must be a list (or None), not {type(values).__name__}")
    return list(values)


class Family:
    """One vector family of plain elements of type `element`."""

    element = ctypes.c_void_p

    def __init__(self, lib, name, families):
        self.name = name
        self.families = families
        self.create = declare(lib, f"{name}_Create", ctypes.c_void_p, ctypes.c_uint64)
        self.delete = declare(lib, f"{name}_Delete", None, ctypes.c_void_p)

    def check(self, values, where):
        """The C elements of a list, every element checked before anything is made."""
        return [self.element_in(v, f"{where}[{n}]") for n, v in enumerate(as_list(values, where))]

    def element_in(self, value, where):
        return value

    def build(self, items):
        """A new vector holding checked items; the caller owns it."""
        vector = self.create(len(items))
        if not vector:
            if items:
                raise MemoryError(f"{self.name}_Create({len(items)}) gave no vector")
            return None
        if items and not header(vector).data:
            self.delete(vector)
            raise MemoryError(f"{self.name}_Create({len(items)}) gave no storage")
        try:
            self.store(vector, items)
        except BaseException:
            self.delete(vector)
            raise
        return vector

    def store(self, vector, items):
        if items:
            _elements(vector, self.element)[:] = items

    def make(self, values, where, call):
        vector = self.build(self.check(values, where))
        if vector:
            call.cleanups.append(lambda: self.delete(vector))
        return vector

    def read(self, vector):
        return [self.element_out(x) for x in _elements(vector, self.element)[:]]

    def element_out(self, raw):
        return raw

    def take(self, vector):
        """A returned vector: its list (None for the null vector), then it is deleted."""
        if not vector:
            return None
        try:
            return self.read(vector)
        finally:
            self.delete(vector)


class IntFamily(Family):
    def __init__(self, lib, name, families, element, low, high, what="an int"):
        super().__init__(lib, name, families)
        self.element = element
        self.low, self.high, self.what = low, high, what

    def element_in(self, value, where):
        if not isinstance(value, int):
            raise TypeError(f"{where} must be {self.what}, not {type(value).__name__}")
        if not self.low <= value <= self.high:
            raise ValueError(f"{where} does not fit: {value} is outside {self.low}..{self.high}")
        return int(value)


class BoolFamily(IntFamily):
    def __init__(self, lib, name, families):
        super().__init__(lib, name, families, ctypes.c_int32, *_I32, "a bool")

    def element_out(self, raw):
        return raw != 0


class ColorFamily(IntFamily):
    """Colours are unsigned 32-bit values held as int32_t: either form goes in, unsigned comes out."""

    def __init__(self, lib, name, families):
        super().__init__(lib, name, families, ctypes.c_int32, _I32[0], (1 << 32) - 1)

    def element_in(self, value, where):
        value = super().element_in(value, where)
        return value - (1 << 32) if value > _I32[1] else value

    def element_out(self, raw):
        return raw & 0xFFFFFFFF


class RealFamily(Family):
    def __init__(self, lib, name, families, element):
        super().__init__(lib, name, families)
        self.element = element

    def element_in(self, value, where):
        if not isinstance(value, (int, float)):
            raise TypeError(f"{where} must be a float, not {type(value).__name__}")
        return float(value)


class StringFamily(Family):
    """Texts are copied in by StringVector_Set and belong to the vector."""

    def __init__(self, lib, name, families):
        super().__init__(lib, name, families)
        self.set = declare(lib, f"{name}_Set", None, ctypes.c_void_p, ctypes.c_uint64, _TEXT_P)

    def element_in(self, value, where):
        return _utf16.to_units("" if value is None else value, where)   # None: the empty text

    def store(self, vector, items):
        for n, units in enumerate(items):
            self.set(vector, n, units)

    def element_out(self, raw):
        return _utf16.read_units(raw)


class ObjectFamily(Family):
    """Handles as given; a returned vector's elements each carry one reference."""

    def element_in(self, value, where):
        return handle_address(value, where)

    def element_out(self, raw):
        return HeldHandle(raw) if raw else None

    def make(self, values, where, call):
        vector = self.build(self.check(values, where))
        if vector:
            block = header(vector).data

            def give_back():
                # A refill writes a new block over the header without freeing
                # the one the vector was made with: that one goes here.
                if header(vector).data != block and block:
                    _c_runtime.free(block)
                self.delete(vector)
            call.cleanups.append(give_back)
        return vector


class ObjectListFamily(Family):
    """Lists of object lists: the outer vector owns (and deletes) the inner ones."""

    def inner(self):
        return self.families.family("ObjectReferenceVector")

    def element_in(self, value, where):
        return None if value is None else self.inner().check(value, where)

    def store(self, vector, items):
        data = _elements(vector, ctypes.c_void_p)
        data[:] = [None] * len(items)  # an element that fails leaves the rest null for the delete
        for n, inner in enumerate(items):
            data[n] = None if inner is None else self.inner().build(inner)

    def element_out(self, raw):
        return self.inner().read(raw) if raw else None


class PropertyValueFamily(Family):
    """Property value handles, which the vector neither copies nor deletes."""

    def element_in(self, value, where):
        self.families.values.check(value, where)
        return value

    def store(self, vector, items):
        data = _elements(vector, ctypes.c_void_p)
        data[:] = [None] * len(items)
        for n, value in enumerate(items):
            data[n] = self.families.values.build(value)

    def make(self, values, where, call):
        vector = self.build(self.check(values, where))
        if vector:
            def give_back():
                for handle in _elements(vector, ctypes.c_void_p)[:]:
                    if handle:
                        self.families.values.delete(handle)
                self.delete(vector)
            call.cleanups.append(give_back)
        return vector

    def read(self, vector):
        handles = _elements(vector, ctypes.c_void_p)[:]
        try:
            return [self.families.values.read(h) if h else None for h in handles]
        finally:
            for h in handles:
                if h:
                    self.families.values.delete(h)


class NullOnlyFamily(Family):
    """Attribute and storage value vectors: C has no way to fill one, so only
    None or an empty list goes in."""

    def make(self, values, where, call):
        if as_list(values, where):
            raise TypeError(f"{where}: a {self.name} cannot be filled from Python; pass None or []")
        return None

    def read(self, vector):
        return [None] * header(vector).size


_INTEGERS = {"EnumVector": (ctypes.c_int32, *_I32), "Int32Vector": (ctypes.c_int32, *_I32),
             "Uint32Vector": (ctypes.c_uint32, 0, (1 << 32) - 1),
             "NumericIdVector": (ctypes.c_uint64, 0, (1 << 64) - 1), "Uint8Vector": (ctypes.c_uint8, 0, 255)}
_REALS = {"FloatVector": ctypes.c_float, "DoubleVector": ctypes.c_double}
_OTHERS = {"BoolVector": BoolFamily, "ColorVector": ColorFamily, "StringVector": StringFamily,
           "ObjectReferenceVector": ObjectFamily, "ObjectReferenceVectorVector": ObjectListFamily,
           "PropertyValueVector": PropertyValueFamily, "AttributeValueVector": NullOnlyFamily,
           "StorageValueVector": NullOnlyFamily}


class Families:
    """The vector families of one loaded library, each bound when first used."""

    def __init__(self, lib):
        self.lib = lib
        self.values = PropertyValues(lib)
        self._bound = {}

    def family(self, name):
        family = self._bound.get(name)
        if family is None:
            if name in _INTEGERS:
                family = IntFamily(self.lib, name, self, *_INTEGERS[name])
            elif name in _REALS:
                family = RealFamily(self.lib, name, self, _REALS[name])
            elif name in _OTHERS:
                family = _OTHERS[name](self.lib, name, self)
            else:
                raise ValueError(f"no vector family {name!r}")
            self._bound[name] = family
        return family


class PropertyValues:
    """Single property values: made from None, a bool, int, float or str; read back as those."""

    EMPTY, BOOL, INT, DOUBLE, STRING = range(5)

    def __init__(self, lib):
        vp = ctypes.c_void_p
        self.create = declare(lib, "PropertyValue_Create", vp)
        self.delete = declare(lib, "PropertyValue_Delete", None, vp)
        self.value_type = declare(lib, "PropertyValue_GetValueType", ctypes.c_int32, vp)
        self.getters = {self.BOOL: declare(lib, "PropertyValue_GetBool", ctypes.c_int32, vp),
                        self.INT: declare(lib, "PropertyValue_GetInt", ctypes.c_int32, vp),
                        self.DOUBLE: declare(lib, "PropertyValue_GetDouble", ctypes.c_double, vp),
                        self.STRING: declare(lib, "PropertyValue_GetString", vp, vp)}
        self.setters = {bool: declare(lib, "PropertyValue_SetBool", None, vp, ctypes.c_int32),
                        int: declare(lib, "PropertyValue_SetInt", None, vp, ctypes.c_int32),
                        float: declare(lib, "PropertyValue_SetDouble", None, vp, ctypes.c_double),
                        str: declare(lib, "PropertyValue_SetString", None, vp, _TEXT_P)}

    def check(self, value, where):
        if value is None or isinstance(value, (bool, float)):
            return
        if isinstance(value, str):
            _utf16.to_units(value, where)
        elif isinstance(value, int):
            if not _I32[0] <= value <= _I32[1]:
                raise ValueError(f"{where} does not fit a property value's int: {value}")
        else:
            raise TypeError(f"{where} must be None, a bool, int, float or str, not {type(value).__name__}")

    def build(self, value):
        """A new value handle holding a checked value; the caller deletes it."""
        handle = self.create()
        if not handle:
            raise MemoryError("PropertyValue_Create gave no value")
        if value is not None:
            kind = type(value) if type(value) in self.setters else next(t for t in self.setters if isinstance(value, t))
            self.setters[kind](handle, _utf16.to_units(value, "a property value") if kind is str else value)
        return handle

    def make(self, value, where, call):
        self.check(value, where)
        handle = self.build(value)
        call.cleanups.append(lambda: self.delete(handle))
        return handle

    def read(self, handle):
        kind = self.value_type(handle)
        if kind not in self.getters:
            return None
        raw = self.getters[kind](handle)
        if kind == self.BOOL:
            return raw != 0
        if kind == self.STRING:
            return _utf16.take_units(raw)
        return raw

    def take(self, handle):
        """A returned value handle: its value (None for null or empty), then the handle is deleted."""
        if not handle:
            return None
        try:
            return self.read(handle)
        finally:
            self.delete(handle)
