// The host object API's base vocabulary: wide text, the reference-counted
// object base, interface identifiers and the owning interface pointer.
#pragma once

#include <cstddef>
#include <string>
#include <utility>

#include "tvapi/export.h"

namespace tvapi {

// One UTF-16 unit. The host is a Windows program, where wchar_t is 16 bits;
// elsewhere char16_t has the same size and meaning.
#if defined(_WIN32)
using WChar = wchar_t;
#else
using WChar = char16_t;
#endif
using WString = std::basic_string<WChar>;

}  // namespace tvapi

// A text or character literal of WChar units: TVAPI_TEXT("Main"),
// TVAPI_TEXT('/'). A plain u"..." literal is char16_t, which is not WChar
// on Windows.
#if defined(_WIN32)
#define TVAPI_TEXT(literal) L##literal
#else
#define TVAPI_TEXT(literal) u##literal
#endif

namespace tvapi {

// Base of every queryable host interface. Slot order is part of the ABI:
// 0 is the host's own, 1 AddRef, 2 Release, 3 query by IID text. There is no
// virtual destructor, so the layout is the same under every compiler.
class IAPIObject {
public:
    virtual void HostReserved() = 0;
    virtual int AddRef() = 0;
    virtual int Release() = 0;
    // Returns the object's implementation of the interface named by `iid`
    // (37 bytes with the terminating zero), or null. Adds no reference.
    virtual void* QueryInterface(const char* iid) = 0;

protected:
    ~IAPIObject() = default;
};

// IID text of an interface, specialised for every catalogued interface.
template <class I>
struct IAPIObjectIID;

template <>
struct IAPIObjectIID<IAPIObject> {
    static constexpr char text[37] = "11473080-d3ff-4d2c-82fa-f746284274b4";
};

// Owning interface pointer: holds one reference for as long as it lives.
template <class I>
class SmartPtr {
public:
    SmartPtr() noexcept = default;
    SmartPtr(std::nullptr_t) noexcept {}
    // Takes a reference of its own on `p`.
    explicit SmartPtr(I* p) : p_(p) {
        if (p_) p_->AddRef();
    }
    SmartPtr(const SmartPtr& o) : SmartPtr(o.p_) {}
    SmartPtr(SmartPtr&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    SmartPtr& operator=(SmartPtr o) noexcept {
        std::swap(p_, o.p_);
        return *this;
    }
    ~SmartPtr() {
        if (p_) p_->Release();
    }

    // Wraps `p` taking over a reference the caller already holds.
    static SmartPtr Adopt(I* p) noexcept {
        SmartPtr s;
        s.p_ = p;
        return s;
    }

    I* get() const noexcept { return p_; }
    I* operator->() const noexcept { return p_; }
    explicit operator bool() const noexcept { return p_ != nullptr; }

private:
    I* p_ = nullptr;
};

}  // namespace tvapi
