// Text in the event tests: literals are written TVAPIC_TEXT("..."), in the
// text unit the library and the host share (tvWChar and tvapi::WChar are
// wchar_t on Windows and char16_t elsewhere).
#pragma once

#include "tvAPIC.h"
#include "tvapi/core.h"

namespace eventtext {

// A text the library handed over, as a string; null reads as empty.
inline tvapi::WString Text(const tvWChar* s) { return s ? tvapi::WString(s) : tvapi::WString(); }

}  // namespace eventtext
