// The handle base: references and identity of any API object.
#include "check/check.h"
#include "core/query.h"
#include "frame/checked.h"
#include "tvAPIC.h"

using tvapic::core::AsObject;
using tvapic::core::Query;
namespace check = tvapic::check;

namespace {

// A null handle does nothing and returns 0: the host's own operations would
// be called through it and end the application.
int NullHandle(const char* export_name) {
    if (check::On()) check::NullReference(export_name);
    return 0;
}

}  // namespace

extern "C" {

int IAPIObject_AddRef(void* handle) {
    if (!handle) return NullHandle("IAPIObject_AddRef");
    if (check::On()) [[unlikely]] check::ReferenceAdded(handle);
    return AsObject(handle)->AddRef();
}

int IAPIObject_Release(void* handle) {
    if (!handle) return NullHandle("IAPIObject_Release");
    if (check::On()) [[unlikely]] check::ReferenceReleased(handle);
    return AsObject(handle)->Release();
}

// Two handles are the same object when both answer the IAPIObject query with
// the same pointer; equal values (two nulls included) are the same at once.
bool IAPIObject_IsSameObjects(void* first, void* second) {
    if (first) AsObject(first)->AddRef();
    if (second) AsObject(second)->AddRef();
    bool same;
    if (first == second) {
        same = true;
    } else if (!first || !second) {
        same = false;
    } else {
        void* second_base = Query<tvapi::IAPIObject>(second);
        void* first_base = Query<tvapi::IAPIObject>(first);
        same = first_base == second_base;
    }
    if (second) AsObject(second)->Release();
    if (first) AsObject(first)->Release();
    return tvapic::frame::Returned<bool>("IAPIObject_IsSameObjects", same);
}

}  // extern "C"
