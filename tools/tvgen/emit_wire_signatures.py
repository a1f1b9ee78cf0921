"""Emits server/wire_signatures.h: the wire signatures as data, for the load
tool, the fuzzer's seeds and tests."""

from .cpp import GENERATED
from .model.wire import wire_signature


def emit(model):
    """The wire signatures as data, for the load tool, the fuzzer's seeds and
    tests: one entry per remotable function, kinds separated by commas."""
    out = [GENERATED + "#pragma once\n\n#include <cstddef>\n\n",
           "namespace tvapic::server {\n\nstruct WireSignature {\n    const char* name;\n"
           "    const char* request;   // e.g. \"u64,string,i32 slot\"\n    const char* response;\n};\n\n",
           "inline constexpr WireSignature kWireSignatures[] = {\n"]
    for op in model.remotable():
        request, response = wire_signature(op)
        out.append(f'    {{"{op.export}", "{",".join(map(str, request))}", "{",".join(map(str, response))}"}},\n')
    out.append("};\n\n}  // namespace tvapic::server\n")
    return "".join(out)
