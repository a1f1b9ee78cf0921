#include "core/text.h"

#include "core/heap.h"

namespace tvapic::core {

std::size_t TextLength(const tvWChar* s) {
    std::size_t n = 0;
    while (s[n] != 0) ++n;
    return n;
}

tvapi::WString ToHostText(const tvWChar* s) {
    if (!s) return {};
    return tvapi::WString(reinterpret_cast<const tvapi::WChar*>(s), TextLength(s));
}

// The allocation is not tested: an exhausted heap is not handled here.
tvWChar* CopyText(const tvapi::WChar* s, std::size_t units, std::size_t bytes_per_unit) {
    auto* out = static_cast<tvWChar*>(heap::Allocate((units + 1) * bytes_per_unit));
    std::memcpy(out, s, units * sizeof(tvWChar));
    out[units] = 0;
    return out;
}

tvWChar* CopyText(const tvapi::WString& s) { return CopyText(s.data(), s.size()); }

}  // namespace tvapic::core
