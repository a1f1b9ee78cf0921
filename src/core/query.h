// Interface query and temporary references: the first steps of every export.
#pragma once

#include <cstring>

#include "tvapi/core.h"

namespace tvapic::core {

inline tvapi::IAPIObject* AsObject(void* handle) {
    return static_cast<tvapi::IAPIObject*>(handle);
}

// Asks a non-null handle for interface I. The IID text is copied into a fresh
// buffer for every query, since the host must not rely on the pointer lasting
// beyond the call. The result carries no reference of its own.
template <class I>
I* Query(void* handle) {
    char iid[37];
    std::memcpy(iid, tvapi::IAPIObjectIID<I>::text, sizeof iid);
    return static_cast<I*>(AsObject(handle)->QueryInterface(iid));
}

// Holds one reference on an interface for the length of a call. The release
// runs in a destructor, which cannot throw: a host that throws from Release
// ends the process rather than leaving a reference behind.
template <class I>
class HeldRef {
public:
    explicit HeldRef(I* p) : p_(p) { p_->AddRef(); }
    ~HeldRef() { p_->Release(); }
    HeldRef(const HeldRef&) = delete;
    HeldRef& operator=(const HeldRef&) = delete;

private:
    I* p_;
};

}  // namespace tvapic::core
