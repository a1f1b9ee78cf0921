// Text across the boundary: zero-terminated UTF-16 in, caller-owned copies out.
#pragma once

#include <cstring>

#include "tvAPIC.h"
#include "tvapi/core.h"

namespace tvapic::core {

static_assert(sizeof(tvWChar) == 2, "text units are 16 bits on every platform");
static_assert(sizeof(tvapi::WChar) == sizeof(tvWChar));

std::size_t TextLength(const tvWChar* s);

// A text argument as a host string; null is the empty string.
tvapi::WString ToHostText(const tvWChar* s);

// A fresh block of the heap shared with callers (core/heap.h) of `units` + 1
// units holding `s` and a zero unit. The units are copied by count, so a zero
// inside the host string is kept (the caller sees the text end there). String vector elements and property value
// texts use wider blocks of `bytes_per_unit` bytes per unit; the copy is the same.
tvWChar* CopyText(const tvapi::WChar* s, std::size_t units, std::size_t bytes_per_unit = 2);
tvWChar* CopyText(const tvapi::WString& s);

}  // namespace tvapic::core
