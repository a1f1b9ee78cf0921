// Text across the boundary: zero-terminated UTF-16 in, caller-owned copies out.
#pragma once

#include <cstdlib>
#include <cstring>

#include "tvAPIC.h"
#include "tvapi/core.h"

namespace tvapic::frame {

static_assert(sizeof(tvWChar) == 2, "text units are 16 bits on every platform");
static_assert(sizeof(tvapi::WChar) == sizeof(tvWChar));

inline std::size_t TextLength(const tvWChar* s) {
    std::size_t n = 0;
    while (s[n] != 0) ++n;
    return n;
}

// A text argument as a host string; null is the empty string.
inline tvapi::WString ToHostText(const tvWChar* s) {
    if (!s) return {};
    return tvapi::WString(reinterpret_cast<const tvapi::WChar*>(s), TextLength(s));
}

// A fresh malloc block of `units` + 1 units holding `s` and a zero unit. The
// units are copied by count, so a zero inside the host string is kept (the
// caller sees the text end there). String vector elements and property value
// texts use wider blocks of `bytes_per_unit` bytes per unit; the copy is the same.
inline tvWChar* CopyText(const tvapi::WChar* s, std::size_t units, std::size_t bytes_per_unit = 2) {
    auto* out = static_cast<tvWChar*>(std::malloc((units + 1) * bytes_per_unit));
    std::memcpy(out, s, units * sizeof(tvWChar));
    out[units] = 0;
    return out;
}

inline tvWChar* CopyText(const tvapi::WString& s) { return CopyText(s.data(), s.size()); }

}  // namespace tvapic::frame
