// Converters between C vectors and host sequences.
//
// ToHost:    a caller's C vector (possibly null) -> a host sequence by value.
// NewVector: a host sequence -> a new C vector that belongs to the caller.
// Refill:    a host sequence -> the caller's existing C vector, replaced.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "containers/clear.h"
#include "containers/value_handles.h"
#include "core/heap.h"
#include "core/query.h"
#include "core/text.h"
#include "tvAPIC.h"
#include "tvapi/core.h"
#include "tvapi/values.h"

namespace tvapic::containers {

template <class T>
struct IsSmartPtr : std::false_type {};
template <class I>
struct IsSmartPtr<tvapi::SmartPtr<I>> : std::true_type {};

template <class T>
struct IsObjectList : std::false_type {};
template <class I>
struct IsObjectList<std::vector<tvapi::SmartPtr<I>>> : std::true_type {};

// The longest host sequence of each element kind; longer C vectors are
// refused before anything is allocated. The figures are the host's own
// (64-bit) sequence limits.
template <class X>
constexpr std::uint64_t LongestHostSequence() {
    if constexpr (std::is_same_v<X, bool> || sizeof(X) == 1) return 0x7fffffffffffffffull;
    else if constexpr (std::is_same_v<X, tvapi::WString>) return 0x07ffffffffffffffull;
    else if constexpr (sizeof(X) == 4) return 0x3fffffffffffffffull;
    else return 0x1fffffffffffffffull;
}

template <class X>
void CheckLength(std::uint64_t size) {
    if (size > LongestHostSequence<X>()) {
        throw std::length_error(std::is_same_v<X, bool> ? "vector<bool> too long" : "vector too long");
    }
}

template <class X, class CV>
std::vector<X> ToHost(const CV* v);

// One C element as its host form.
template <class X, class E>
X ToHostElement(E e) {
    if constexpr (std::is_same_v<X, tvapi::WString>) {
        return core::ToHostText(e);  // a null element is the empty text
    } else if constexpr (IsSmartPtr<X>::value) {
        using I = std::remove_pointer_t<decltype(X().get())>;
        return e ? X(core::Query<I>(e)) : X();
    } else if constexpr (IsObjectList<X>::value) {
        using Inner = typename X::value_type;
        return ToHost<Inner>(e);
    } else if constexpr (std::is_same_v<X, tvapi::StorageValue>) {
        // Elements of a storage value vector cannot be read from C: a storage
        // value handle is never handed out, so each element is the empty value.
        (void)e;
        return X();
    } else {
        // Property and attribute values: a copy of the handle's host object.
        return e && e->value ? X(*e->value) : X();
    }
}

template <class X, class CV>
std::vector<X> ToHost(const CV* v) {
    std::vector<X> out;
    if (!v) return out;  // a null vector is the empty list
    CheckLength<X>(v->size);
    if constexpr (std::is_arithmetic_v<X>) {
        // Scalars (flags included: non-zero becomes true) in one pass.
        out.assign(v->data, v->data + v->size);
    } else {
        out.reserve(v->size);
        for (std::uint64_t i = 0; i < v->size; ++i) out.push_back(ToHostElement<X>(v->data[i]));
    }
    return out;
}

template <class CV>
using ElementOf = std::remove_pointer_t<decltype(CV::data)>;

// An object element for the caller: it gains one reference, is asked for its
// IAPIObject face, and that face is stored. The query's own reference is
// taken and given back at once, so the stored handle carries the first one.
template <class I>
void* ToCallerObject(const tvapi::SmartPtr<I>& element) {
    I* p = element.get();
    if (!p) return nullptr;
    p->AddRef();
    auto* face = core::Query<tvapi::IAPIObject>(p);
    if (!face) return nullptr;  // the gained reference stays with the host object
    face->AddRef();
    void* stored = face;
    face->Release();
    return stored;
}

template <class CV, class X>
CV* NewVector(const std::vector<X>& host);

template <class CV, class X>
void Fill(CV* v, const std::vector<X>& host) {
    using E = ElementOf<CV>;
    v->size = host.size();
    v->data = static_cast<E*>(heap::Allocate(host.size() * sizeof(E)));
    if constexpr (std::is_arithmetic_v<X> && !std::is_same_v<X, bool>) {
        static_assert(sizeof(X) == sizeof(E));
        if (!host.empty()) std::memcpy(v->data, host.data(), host.size() * sizeof(E));
    } else {
        for (std::size_t i = 0; i < host.size(); ++i) {
            if constexpr (std::is_same_v<X, bool>) v->data[i] = host[i] ? 1 : 0;
            else if constexpr (std::is_same_v<X, tvapi::WString>) v->data[i] = core::CopyText(host[i]);
            else if constexpr (IsSmartPtr<X>::value) v->data[i] = ToCallerObject(host[i]);
            else if constexpr (IsObjectList<X>::value) v->data[i] = NewVector<ObjectReferenceVector_t>(host[i]);
            else v->data[i] = NewValueHandle<PropertyValue_t>(&host[i]);
        }
    }
}

template <class CV, class X>
CV* NewVector(const std::vector<X>& host) {
    CV* v = new CV{0, nullptr};
    Fill(v, host);
    return v;
}

// Replaces the contents of the caller's vector. The old contents are cleared
// by the family's own clear, except for object vectors, whose fill overwrites
// the header as it stands (they are refilled only when freshly made).
template <class CV, class X>
void Refill(CV* v, const std::vector<X>& host) {
    if (!v) return;
    if constexpr (!IsSmartPtr<X>::value) Clear(v);
    Fill(v, host);
}

}  // namespace tvapic::containers
