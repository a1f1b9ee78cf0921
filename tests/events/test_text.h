// Text in the event tests: literals are written as UTF-16 (u"..."), and
// converted to the platform's text units where they cross into the library
// or the host (tvWChar and tvapi::WChar are wchar_t on Windows).
#pragma once

#include <string>

#include "tvAPIC.h"
#include "tvapi/core.h"

namespace eventtext {

inline const tvWChar* Wide(const char16_t* s) { return reinterpret_cast<const tvWChar*>(s); }

inline tvapi::WString HostText(const std::u16string& s) { return tvapi::WString(s.begin(), s.end()); }

inline std::u16string Text(const tvWChar* s) {
    std::u16string out;
    for (; s && *s; ++s) out += static_cast<char16_t>(*s);
    return out;
}

}  // namespace eventtext
