// Property value handles. None of these looks at the handle: a null one is a
// caller error, as everywhere a handle is taken without a query. Host
// exceptions pass through.
#include <cstdint>

#include "containers/value_handles.h"
#include "core/text.h"
#include "tvAPIC.h"
#include "tvapi/values.h"

namespace {

using tvapic::containers::NewValueHandle;
using tvapic::containers::ReleaseHostValue;

// Value texts go out in blocks of 8 bytes per unit, the width callers of these
// functions have always been given (other text results use 2).
tvWChar* CopyValueText(const tvapi::WString& s) {
    return tvapic::core::CopyText(s.data(), s.size(), 8);
}

int32_t Flag(bool b) { return b ? 1 : 0; }

}  // namespace

extern "C" {

PropertyValue_t* PropertyValue_Create(void) { return NewValueHandle<PropertyValue_t, tvapi::PropertyValue>(); }

// Only the storage is given back; the host destructor deliberately does not run.
void PropertyValue_Delete(PropertyValue_t* h) {
    ReleaseHostValue(h->value);
    delete h;
}

int32_t PropertyValue_GetBool(PropertyValue_t* h) { return Flag(h->value->GetBool()); }
int32_t PropertyValue_GetInt(PropertyValue_t* h) { return h->value->GetInt(); }
double PropertyValue_GetDouble(PropertyValue_t* h) { return h->value->GetDouble(); }
tvWChar* PropertyValue_GetString(PropertyValue_t* h) { return CopyValueText(h->value->GetString()); }
int32_t PropertyValue_GetValueType(PropertyValue_t* h) { return h->value->GetValueType(); }

void PropertyValue_SetBool(PropertyValue_t* h, int32_t flag) { h->value->SetBool(flag != 0); }
void PropertyValue_SetInt(PropertyValue_t* h, int32_t number) { h->value->SetInt(number); }
void PropertyValue_SetDouble(PropertyValue_t* h, double number) { h->value->SetDouble(number); }
void PropertyValue_SetString(PropertyValue_t* h, const tvWChar* text) {
    h->value->SetString(tvapic::core::ToHostText(text));
}

int32_t PropertyValue_ToBool(PropertyValue_t* h) { return Flag(h->value->ToBool()); }
int32_t PropertyValue_ToInt(PropertyValue_t* h) { return h->value->ToInt(); }
double PropertyValue_ToDouble(PropertyValue_t* h) { return h->value->ToDouble(); }
tvWChar* PropertyValue_ToString(PropertyValue_t* h) { return CopyValueText(h->value->ToString()); }

}  // extern "C"
