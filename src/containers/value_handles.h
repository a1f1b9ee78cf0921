// The library-owned value handles: each holds one host value object.
#pragma once

#include <new>

#include "tvAPIC.h"
#include "tvapi/values.h"

struct PropertyValue_t {
    tvapi::PropertyValue* value;
};

struct AttributeValue_t {
    tvapi::AttributeValue* value;
};

struct StorageValue_t {
    tvapi::StorageValue* value;
};

namespace tvapic::containers {

// A value handle and its host object live in separate library allocations.
// The handle is released with delete, the host object's storage with operator
// delete and without running the host destructor (see ReleaseHostValue).
template <class Handle, class Value>
Handle* NewValueHandle(const Value* copy_from = nullptr) {
    void* storage = ::operator new(sizeof(Value), std::nothrow);
    Value* value = nullptr;
    if (storage) value = copy_from ? new (storage) Value(*copy_from) : new (storage) Value();
    return new Handle{value};
}

// Gives back the host object's storage only. The host destructor is not run:
// that is the library's contract with the host's value classes.
template <class Value>
void ReleaseHostValue(Value* value) {
    ::operator delete(static_cast<void*>(value));
}

}  // namespace tvapic::containers
