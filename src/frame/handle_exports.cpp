// The handle base: references and identity of any API object.
#include "core/query.h"
#include "tvAPIC.h"

using tvapic::core::AsObject;
using tvapic::core::Query;

extern "C" {

// No null test: a null handle is a caller error here, as on the host.
int IAPIObject_AddRef(void* handle) { return AsObject(handle)->AddRef(); }
int IAPIObject_Release(void* handle) { return AsObject(handle)->Release(); }

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
    return same;
}

}  // extern "C"
