"""The kinds of value the API Server's wire carries (docs/protocol.md,
"Values"). A slot is an out-parameter's value: a flag byte, then the value
when the flag is 0; it travels both ways."""

from dataclasses import dataclass


@dataclass(frozen=True)
class WireKind:
    name: str          # as the protocol reference writes it
    accessor: str      # the name of its decoder and encoders: WireKind::U64, c.U64(n), q.U64(v)
    slot: bool = False

    def __str__(self):
        return self.name


U64 = WireKind("u64", "U64")
I32 = WireKind("i32", "I32")
F64 = WireKind("f64", "F64")
STRING = WireKind("string", "Text")
STRING_VECTOR = WireKind("string vector", "TextVector")   # a result only
I32_SLOT = WireKind("i32 slot", "SlotI32", slot=True)
F64_SLOT = WireKind("f64 slot", "SlotF64", slot=True)
