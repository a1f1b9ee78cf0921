// What a host event argument becomes for a C callback, and what the callback
// leaves in it afterwards: one CallbackArg<HostParam> per argument of a call.
//
// A CallbackArg is built from the host's argument before the callback runs,
// hands the callback its C form through c(), and after the call finish()
// writes in/out values back into the host's argument. Its destructor gives
// back what was made for the call (C vectors and the references they hold).
#pragma once

#include <cstdint>
#include <cstdlib>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include "containers/convert.h"
#include "frame/query.h"
#include "frame/text.h"
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
// reference. A callback that keeps it takes its own.
template <class I>
struct CallbackArg<const tvapi::SmartPtr<I>&> {
    using C = void*;
    I* value;
    explicit CallbackArg(const tvapi::SmartPtr<I>& host) : value(host.get()) {}
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
    void finish() { host = frame::ToHostText(local); }
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

// A list of objects: a C vector made for this call, each element the
// object's IAPIObject handle with one reference taken for the vector. Both
// the vector and those references are given back after the call, so a
// callback that keeps an element takes its own reference, as for a single
// object.
template <class I>
struct CallbackArg<const std::vector<tvapi::SmartPtr<I>>&> {
    using C = const ObjectReferenceVector_t*;
    ObjectReferenceVector_t* vector;
    std::vector<void*> held;  // what the vector was given, whatever the callback does to it
    explicit CallbackArg(const std::vector<tvapi::SmartPtr<I>>& host)
        : vector(containers::NewVector<ObjectReferenceVector_t>(host)), held(vector->data, vector->data + vector->size) {}
    ~CallbackArg() {
        for (void* element : held) {
            if (element) frame::AsObject(element)->Release();
        }
        ObjectReferenceVector_Delete(vector);
    }
    CallbackArg(const CallbackArg&) = delete;
    CallbackArg& operator=(const CallbackArg&) = delete;
    C c() const { return vector; }
    void finish() {}
};

// A list of 32-bit integers: a C vector made for this call and freed after it.
template <>
struct CallbackArg<const std::vector<std::int32_t>&> {
    using C = const Int32Vector_t*;
    Int32Vector_t* vector;
    explicit CallbackArg(const std::vector<std::int32_t>& host)
        : vector(containers::NewVector<Int32Vector_t>(host)) {}
    ~CallbackArg() { Int32Vector_Delete(vector); }
    CallbackArg(const CallbackArg&) = delete;
    CallbackArg& operator=(const CallbackArg&) = delete;
    C c() const { return vector; }
    void finish() {}
};

// A writable list of texts: a C string vector made for this call, whose
// content as the callback leaves it replaces the host's list.
//
// The vector is then deleted as its family deletes, with two allowances for
// the family's own members: StringVector_Set leaves the text it replaces in
// place, so replaced texts are freed here; StringVector_Clear frees the texts
// and the block but leaves `data` as it was, so a vector found emptied over
// its original block has only its header left to free.
template <>
struct CallbackArg<std::vector<tvapi::WString>&> {
    using C = StringVector_t*;
    std::vector<tvapi::WString>& host;
    StringVector_t* vector;
    tvWChar** block = nullptr;
    std::vector<tvWChar*> texts;  // the texts the vector was made with

    explicit CallbackArg(std::vector<tvapi::WString>& h) : host(h), vector(new StringVector_t{0, nullptr}) {
        // An empty list gets no block at all, so that a clear has nothing to free twice.
        if (!host.empty()) containers::Fill(vector, host);
        block = vector->data;
        texts.assign(vector->data, vector->data + vector->size);
    }
    ~CallbackArg() {
        bool cleared = vector->size == 0 && vector->data == block && !texts.empty();
        if (!cleared) {
            if (vector->data == block) FreeReplacedTexts();
            containers::Clear(vector);
        }
        delete vector;
    }
    CallbackArg(const CallbackArg&) = delete;
    CallbackArg& operator=(const CallbackArg&) = delete;

    C c() const { return vector; }
    void finish() { host = containers::ToHost<tvapi::WString>(vector); }

private:
    void FreeReplacedTexts() {
        std::unordered_set<tvWChar*> kept(vector->data, vector->data + vector->size);
        for (tvWChar* text : texts) {
            if (!kept.count(text)) std::free(text);
        }
    }
};

}  // namespace tvapic::events
