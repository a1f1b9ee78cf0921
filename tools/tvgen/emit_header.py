"""Emits tvAPIC.h, the public C header: types, vector families, every export.
Beside each prototype whose result the caller owns, a comment says what to
release it with (the type table's and the families' release facts)."""

from .model import families
from .model.types import c_signature, callback_c_params, callback_c_result, registration_params, result_release

PREAMBLE = """\
/* tvAPIC: flat C access to the host application's object API.
 * Generated from the catalogue; do not edit.
 *
 * Ownership: a handle passed in stays the caller's; a handle returned carries
 * one reference, given back with IAPIObject_Release. Returned text is freed
 * with the C runtime's free; returned vectors with their family's _Delete.
 * Each prototype whose result the caller owns ends with what releases it.
 */
#ifndef TVAPIC_H
#define TVAPIC_H

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

#if defined(_WIN32)
#  if defined(TVAPIC_BUILDING)
#    define TVAPIC_API __declspec(dllexport)
#  else
#    define TVAPIC_API __declspec(dllimport)
#  endif
#elif defined(__GNUC__)
#  define TVAPIC_API __attribute__((visibility("default")))
#else
#  define TVAPIC_API
#endif

/* One UTF-16 text unit. */
#if defined(_WIN32)
typedef wchar_t tvWChar;
#elif defined(__cplusplus)
typedef char16_t tvWChar;
#else
typedef uint_least16_t tvWChar;
#endif

/* A text or character literal of tvWChar units, on every platform:
 * TVAPIC_TEXT("a.tvd"), TVAPIC_TEXT('/'). Outside Windows it is a u"..."
 * literal, which C has from C11 and C++ from C++11. */
#if defined(_WIN32)
#  define TVAPIC_TEXT(literal) L##literal
#else
#  define TVAPIC_TEXT(literal) u##literal
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Value handles: library-owned blocks holding one host value. */
typedef struct PropertyValue_t PropertyValue_t;
typedef struct AttributeValue_t AttributeValue_t;
typedef struct StorageValue_t StorageValue_t;

/* C vectors: `size` elements in one block at `data`. */
"""

POSTAMBLE = """
#ifdef __cplusplus
}
#endif

#endif /* TVAPIC_H */
"""


def release_note(release):
    """The comment that ends a prototype whose result the caller owns ('' for others)."""
    if release is None:
        return ""
    if release.each:
        elements = "each element of the inner vectors" if release.nested else "each element"
        return f"  /* release {elements} with {release.each}(), then the vector with {release.function}() */"
    return f"  /* release with {release.function}() */"


def prototype(result, name, params, release):
    return f"TVAPIC_API {result} {name}({params});{release_note(release)}\n"


def callback_typedef(e):
    return f"typedef {callback_c_result(e.result)} (*{e.callback_type})({callback_c_params(e)});\n"


def events_section(model):
    out = ["\n/* Event subscriptions. A callback runs on the thread that raises the event;\n"
           " * handles and texts it receives are lent for the call, vectors made for it are\n"
           " * freed after it. A keyed registration is removed with its interface's\n"
           " * RemoveAllHandlers(key); a null key is the empty key. */\n"]
    for source in model.sources.values():
        out.append(f"\n/* {source.name} */\n")
        out.extend(callback_typedef(e) for e in source.events)
        out.extend(f"TVAPIC_API void {e.export}({registration_params(e)});\n" for e in source.events)
    return "".join(out)


def emit(model):
    out = [PREAMBLE]
    for fam in families.FAMILIES:
        out.append(f"typedef struct {fam.c_type} {{ uint64_t size; {fam.element}* data; }} {fam.c_type};\n")
    out.append("\n/* Handle base. */\n")
    out.extend(f"TVAPIC_API {proto.declaration};\n" for proto in families.HANDLE_BASE)
    out.append("\n/* Vectors and values. */\n")
    out.extend(prototype(proto.result.c_type, proto.name, proto.param_list, proto.result.release)
               for proto in families.container_prototypes())
    for group in model.groups:
        ops = list(model.ops(group))
        if not ops:
            continue
        out.append(f"\n/* Group: {group}. */\n")
        for op in ops:
            result, params = c_signature(op)
            out.append(prototype(result, op.export, params, result_release(op.result)))
    out.append(events_section(model))
    out.append(POSTAMBLE)
    return "".join(out)
