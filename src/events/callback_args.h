// What a host event argument becomes for a C callback, and what the callback
// leaves in it afterwards: one CallbackArg<HostParam> per argument of a call.
//
// A CallbackArg is built from the host's argument before the callback runs,
// hands the callback its C form through c(), and after the call finish()
// writes in/out values back into the host's argument. Its destructor gives
// back what was made for the call (C vectors and the references they hold).
#pragma once

#include <cstdint>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "check/check.h"
#include "containers/convert.h"
#include "core/heap.h"
#include "core/query.h"
#include "core/text.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace tvapic::events {

template <class HostParam, class = void>
struct CallbackArg;

// Numbers, enumerations and truth values by value: a truth value as 0 or 1,
// an enumeration as its host number.
template <class T>
struct CallbackArg<T, std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>> {
    using C = std::conditional_t<std::is_same_v<T, bool> || std::is_enum_v<T>, int, T>;
    C value;
    explicit CallbackArg(T host) : value(static_cast<C>(host)) {}
    C c() const { return value; }
    void finish() {}
};

// An opaque host pointer passes through untouched.
template <>
struct CallbackArg<void*> {
    using C = void*;
    void* value;
    explicit CallbackArg(void* host) : value(host) {}
    C c() const { return value; }
    void finish() {}
};

// An object is lent: the raw interface pointer the host holds, without a
// reference. A callback that keeps it takes its own (checked mode counts that
// reference as kept from the handler's registration).
template <class I>
struct CallbackArg<const tvapi::SmartPtr<I>&> {
    using C = void*;
    I* value;
    explicit CallbackArg(const tvapi::SmartPtr<I>& host) : value(host.get()) {
        if (check::On()) check::Lent(value, tvapi::IAPIObjectIID<I>::text);
    }
    ~CallbackArg() {
        if (check::On()) check::LendingEnded(value);
    }
    CallbackArg(const CallbackArg&) = delete;
    CallbackArg& operator=(const CallbackArg&) = delete;
    C c() const { return value; }
    void finish() {}
};

// Read-only text is lent too: the host string's own buffer.
template <>
struct CallbackArg<const tvapi::WString&> {
    using C = const tvWChar*;
    const tvapi::WString& host;
    explicit CallbackArg(const tvapi::WString& h) : host(h) {}
    C c() const { return host.c_str(); }
    void finish() {}
};

// Writable text: the callback does not see the current text; it may point
// the slot at text of its own, which then replaces the host's (no text is
// the empty text). The callback's buffer stays the callback's.
template <>
struct CallbackArg<tvapi::WString&> {
    using C = tvWChar**;
    tvapi::WString& host;
    tvWChar* local = nullptr;
    explicit CallbackArg(tvapi::WString& h) : host(h) {}
    C c() { return &local; }
    void finish() { host = core::ToHostText(local); }
};

template <>
struct CallbackArg<int&> {
    using C = int*;
    int& host;
    int local;
    explicit CallbackArg(int& h) : host(h), local(h) {}
    C c() { return &local; }
    void finish() { host = local; }
};

// A writable truth value travels as an int: 0 or 1 in, non-zero is true out.
template <>
struct CallbackArg<bool&> {
    using C = int*;
    bool& host;
    int local;
    explicit CallbackArg(bool& h) : host(h), local(h ? 1 : 0) {}
    C c() { return &local; }
    void finish() { host = local != 0; }
};

// A read-only list made for this call: a C vector over a block of its own.
// After the call the block and the header it was made with are given back;
// the callback only reads the vector, so `data` is not consulted again.
template <class CV>
struct ReadOnlyList {
    CV* vector;
    decltype(CV::data) block;
    explicit ReadOnlyList(CV* v) : vector(v), block(v->data) {}
    ~ReadOnlyList() {
        heap::Free(block);
        delete vector;
    }
    ReadOnlyList(const ReadOnlyList&) = delete;
    ReadOnlyList& operator=(const ReadOnlyList&) = delete;
};

// A list of objects: each element is the object's IAPIObject handle with one
// reference taken for the vector. The vector and those references are given
// back after the call, so a callback that keeps an element takes its own
// reference, as for a single object.
template <class I>
struct CallbackArg<const std::vector<tvapi::SmartPtr<I>>&> {
    using C = const ObjectReferenceVector_t*;
    ReadOnlyList<ObjectReferenceVector_t> list;
    std::uint64_t size;
    explicit CallbackArg(const std::vector<tvapi::SmartPtr<I>>& host)
        : list(containers::NewVector<ObjectReferenceVector_t>(host)), size(list.vector->size) {
        if (!check::On()) return;
        for (std::uint64_t i = 0; i < size; ++i) check::Lent(list.block[i], tvapi::IAPIObjectIID<I>::text);
    }
    ~CallbackArg() {
        for (std::uint64_t i = 0; i < size; ++i) {
            if (check::On()) check::LendingEnded(list.block[i]);
            if (list.block[i]) core::AsObject(list.block[i])->Release();
        }
    }
    C c() const { return list.vector; }
    void finish() {}
};

// A list of 32-bit integers.
template <>
struct CallbackArg<const std::vector<std::int32_t>&> {
    using C = const Int32Vector_t*;
    ReadOnlyList<Int32Vector_t> list;
    explicit CallbackArg(const std::vector<std::int32_t>& host) : list(containers::NewVector<Int32Vector_t>(host)) {}
    C c() const { return list.vector; }
    void finish() {}
};

// A writable list of texts: a C string vector made for this call, whose
// content as the callback leaves it replaces the host's list.
//
// The callback may change the vector by its family's rules: set elements,
// free an element before replacing it, clear the vector, give it a new block.
// Several of these free what the vector held without a trace, and the heap
// may hand the same address out again at once, so the adapter cannot tell a
// text it made from one that merely reuses its address. It therefore frees
// only what the vector holds when the callback returns, which by the family's
// rules is the vector's own. A text replaced without being freed is left
// behind rather than freed on a guess (a leak, as StringVector_Set documents).
// One state stays ambiguous: a vector found empty over the block it was made
// with may have been cleared (the block is gone) or shortened in place; its
// block is left alone.
template <>
struct CallbackArg<std::vector<tvapi::WString>&> {
    using C = StringVector_t*;
    std::vector<tvapi::WString>& host;
    StringVector_t* vector;
    tvWChar** block = nullptr;

    explicit CallbackArg(std::vector<tvapi::WString>& h) : host(h), vector(new StringVector_t{0, nullptr}) {
        // An empty list gets no block at all, so a clear leaves nothing in doubt.
        if (!host.empty()) containers::Fill(vector, host);
        block = vector->data;
    }
    ~CallbackArg() {
        bool emptied_in_place = vector->size == 0 && vector->data == block;
        if (!emptied_in_place) {
            // The same text stored twice is freed once.
            std::unordered_set<tvWChar*> held(vector->data, vector->data + vector->size);
            for (tvWChar* text : held) heap::Free(text);
            heap::Free(vector->data);
        }
        delete vector;
    }
    CallbackArg(const CallbackArg&) = delete;
    CallbackArg& operator=(const CallbackArg&) = delete;

    C c() const { return vector; }
    void finish() { host = containers::ToHost<tvapi::WString>(vector); }
};

}  // namespace tvapic::events
