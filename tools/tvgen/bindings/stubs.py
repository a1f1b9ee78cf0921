"""The Python type stubs' shared part: the Python type of each of the
binding's kinds (python.py lists them), and a stub's `def` line.

Handles are HeldHandle in process and the wire's Handle remotely, lists are List
going out and Sequence coming in, and a null (None) is allowed wherever the
binding takes or gives one. A result that does not travel is typed as in
process: the object layer raises rather than answer None for it.
"""

from ..model.types import SCALARS
from .python import python_type

T = "_t."   # typing, imported under a name no interface or operation takes

_ELEMENT = {"BoolVector": "bool", "ColorVector": "int", "EnumVector": "int", "Int32Vector": "int",
            "Uint32Vector": "int", "NumericIdVector": "int", "Uint8Vector": "int", "FloatVector": "float",
            "DoubleVector": "float", "StringVector": "str", "PropertyValueVector": "PropertyValue",
            "AttributeValueVector": "None", "StorageValueVector": "None"}
_RAW = {"void": "None", "pointer": f"{T}Optional[int]", "nonnull": "int", "float": "float", "double": "float"}


def optional(text):
    return text if text.startswith(f"{T}Optional[") or text == "None" else f"{T}Optional[{text}]"


class Types:
    """Python types of the binding's kinds; `objects` names what a handle of an interface becomes."""

    def __init__(self, objects=None):
        self.objects = objects or (lambda interface: "HeldHandle")

    def element(self, words):
        family = words[1]
        if family == "ObjectReferenceVector":
            return optional(self.objects(words[2]))
        if family == "ObjectReferenceVectorVector":
            return f"{T}Optional[{T}List[{optional(self.objects(words[2]))}]]"
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
            return optional(self.objects(words[1]))
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
            return optional(self.value(words[1:]))
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
        items = [optional(self.value(kind.split())) if kind.startswith("out ") or remote else self.value(kind.split())
                 for kind in returning]
        if result != "void":
            items.append(result_type)
        return f"{T}Tuple[{', '.join(items)}]"


def _defaults(params):
    """Out-parameters and refilled lists after the last parameter that must be given are optional."""
    required = [n for n, (_, kind) in enumerate(params) if not kind.startswith(("out ", "inout "))]
    last = required[-1] if required else -1
    return [n > last for n in range(len(params))]


def stub_def(name, params, answer, types, self_param=False):
    args = ["self"] if self_param else []
    for (pname, kind), optional in zip(params, _defaults(params)):
        args.append(f"{pname}: {types.argument(kind)}" + (" = ..." if optional else ""))
    return f"def {name}({', '.join(args)}) -> {answer}: ..."
