// Argument conversion: one Arg<HostParam, CArg> per parameter of a call.
//
// An Arg is built from the caller's C value before the host call, hands the
// host its parameter through host(), and after the call finish() writes back
// what the caller should see (out-parameters, refilled vectors). Its
// destructor then releases what the conversion made (host strings, vectors,
// references).
#pragma once

#include <type_traits>
#include <vector>

#include "containers/convert.h"
#include "containers/value_handles.h"
#include "core/query.h"
#include "core/text.h"
#include "tvapi/core.h"
#include "tvapi/values.h"

namespace tvapic::frame {

template <class HostParam, class CArg, class = void>
struct Arg;

// bool, int, 64-bit integers, doubles and enumerations by value. A truth value
// is true when the caller's integer is non-zero.
template <class T, class C>
struct Arg<T, C, std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>> {
    T value;
    explicit Arg(C c) : value(Convert(c)) {}
    static T Convert(C c) {
        if constexpr (std::is_same_v<T, bool>) return c != 0;
        else return static_cast<T>(c);
    }
    T host() const { return value; }
    void finish() {}
};

template <class C>
struct Arg<const tvapi::WString&, C> {
    tvapi::WString value;
    explicit Arg(const tvWChar* c) : value(core::ToHostText(c)) {}
    const tvapi::WString& host() const { return value; }
    void finish() {}
};

// An object argument is asked for the parameter's interface and held for the
// call; null, or an object without that interface, reaches the host as an
// empty pointer.
template <class I, class C>
struct Arg<const tvapi::SmartPtr<I>&, C> {
    tvapi::SmartPtr<I> value;
    explicit Arg(void* c) : value(c ? tvapi::SmartPtr<I>(core::Query<I>(c)) : tvapi::SmartPtr<I>()) {}
    const tvapi::SmartPtr<I>& host() const { return value; }
    void finish() {}
};

// An object held for the call without a query (the transfer service's
// argument; the null case never gets here).
template <class C>
struct Arg<tvapi::IAPIObject*, C> {
    core::HeldRef<tvapi::IAPIObject> hold;
    tvapi::IAPIObject* value;
    explicit Arg(void* c) : hold(core::AsObject(c)), value(core::AsObject(c)) {}
    tvapi::IAPIObject* host() const { return value; }
    void finish() {}
};

// Scalar out-parameters are in/out: the caller's value goes in through a
// local (0 where the pointer is null) and comes back only to a non-null one.
template <class T, class C>
struct Arg<T*, C*, std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>> {
    C* out;
    T local;
    explicit Arg(C* c) : out(c), local(c ? static_cast<T>(*c) : T()) {}
    T* host() { return &local; }
    void finish() {
        if (out) *out = static_cast<C>(local);
    }
};

// An object returned through an out-parameter is handed back borrowed: its
// IAPIObject face is stored, and the reference taken on it is given back.
template <class I, class C>
struct Arg<tvapi::SmartPtr<I>*, C> {
    void** out;
    tvapi::SmartPtr<I> local;
    explicit Arg(void** c) : out(c) {}
    tvapi::SmartPtr<I>* host() { return &local; }
    void finish() {
        if (!out) return;
        void* face = local ? core::Query<tvapi::IAPIObject>(local.get()) : nullptr;
        if (face) {
            core::AsObject(face)->AddRef();
            core::AsObject(face)->Release();
        }
        *out = face;
    }
};

// Input lists: converted before the call; a null vector is the empty list.
template <class X, class CV>
struct Arg<const std::vector<X>&, CV*> {
    std::vector<X> value;
    explicit Arg(CV* c) : value(containers::ToHost<X>(c)) {}
    const std::vector<X>& host() const { return value; }
    void finish() {}
};

// In/out lists: the host fills them, then the caller's vector is refilled.
template <class X, class CV>
struct Arg<std::vector<X>&, CV*> {
    CV* out;
    std::vector<X> value;
    explicit Arg(CV* c) : out(c), value(containers::ToHost<X>(c)) {}
    std::vector<X>& host() { return value; }
    void finish() { containers::Refill(out, value); }
};

// A single host value: the handle's host object, or an empty value for null.
template <class V, class H>
struct Arg<const V&, H*, std::enable_if_t<std::is_same_v<V, tvapi::PropertyValue> ||
                                          std::is_same_v<V, tvapi::AttributeValue> ||
                                          std::is_same_v<V, tvapi::StorageValue>>> {
    V empty;
    const V* value;
    explicit Arg(H* c) : value(c && c->value ? c->value : &empty) {}
    const V& host() const { return *value; }
    void finish() {}
};

}  // namespace tvapic::frame
