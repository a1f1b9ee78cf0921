// The host arguments of the registration sweep, one kind at a time: the
// value a handler is called with (distinct per position, so that swapped
// arguments show), the check of what the C callback receives, what the
// callback writes back, and the check of the host's argument afterwards.
// Also what callbacks answer and what the host must see of each answer.
//
// The C form of each kind is spelled out here independently of the library,
// so a callback type in tvAPIC.h that disagrees with the host's handler does
// not compile.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "common/c_heap.h"
#include "events/test_text.h"
#include "probe/probe.h"
#include "probe/probe_faces.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace eventsweep {

using eventtext::Text;

// Failures of one case, each line naming the case.
class Report {
public:
    Report(std::string name, std::vector<std::string>& failures) : name_(std::move(name)), failures_(failures) {}
    void Expect(bool ok, const std::string& what) {
        if (!ok) failures_.push_back(name_ + ": " + what);
    }

private:
    std::string name_;
    std::vector<std::string>& failures_;
};

// Kind<A>: a host argument of type A, for one call.
template <class A, class = void>
struct Kind;

std::string At(int position);

template <class T>
T NumberAt(int position) {
    if constexpr (std::is_same_v<T, std::uint32_t>) return 0x80000000u + static_cast<std::uint32_t>(position);
    else if constexpr (std::is_same_v<T, std::uint64_t>) return 0x300000000ull + static_cast<std::uint64_t>(position);
    else if constexpr (std::is_floating_point_v<T>) return 0.25 + position;
    else return -100 - position;
}

template <class T>
struct Kind<T, std::enable_if_t<std::is_arithmetic_v<T> && !std::is_same_v<T, bool>>> {
    using C = T;
    T value;
    explicit Kind(int p) : value(NumberAt<T>(p)), position(p) {}
    T host() { return value; }
    void Before() {}
    void Received(Report& r, C c) { r.Expect(c == value, "number" + At(position)); }
    void After(Report&) {}
    int position;
};

template <>
struct Kind<bool> {
    using C = int;
    bool value;
    explicit Kind(int p) : value(p % 2 == 0), position(p) {}
    bool host() { return value; }
    void Before() {}
    void Received(Report& r, C c) { r.Expect(c == (value ? 1 : 0), "truth value" + At(position) + " as 0 or 1"); }
    void After(Report&) {}
    int position;
};

template <class E>
struct Kind<E, std::enable_if_t<std::is_enum_v<E>>> {
    using C = int;
    E value;
    explicit Kind(int p) : value(static_cast<E>(3 + p)), position(p) {}
    E host() { return value; }
    void Before() {}
    void Received(Report& r, C c) { r.Expect(c == 3 + position, "enumeration" + At(position)); }
    void After(Report&) {}
    int position;
};

template <>
struct Kind<void*> {
    using C = void*;
    char marker[8] = {};
    int position;
    explicit Kind(int p) : position(p) {}
    void* host() { return marker + position % 8; }
    void Before() {}
    void Received(Report& r, C c) { r.Expect(c == marker + position % 8, "opaque pointer" + At(position)); }
    void After(Report&) {}
};

// A lent object: the raw interface pointer, no reference taken.
template <class I>
struct Kind<const tvapi::SmartPtr<I>&> {
    using C = void*;
    tvprobe::Object* object = tvprobe::Object::Create({tvprobe::FaceName<I>::value});
    tvapi::SmartPtr<I> value{object->As<I>()};
    int position;
    int addrefs = 0;
    explicit Kind(int p) : position(p) {}
    ~Kind() { object->Release(); }
    Kind(const Kind&) = delete;
    Kind& operator=(const Kind&) = delete;
    const tvapi::SmartPtr<I>& host() { return value; }
    void Before() { addrefs = object->addrefs; }
    void Received(Report& r, C c) {
        r.Expect(c == value.get(), "object" + At(position) + " is not the host's interface pointer");
        r.Expect(object->addrefs == addrefs, "object" + At(position) + " was referenced, not lent");
    }
    void After(Report& r) { r.Expect(object->refs() == 2, "object" + At(position) + " references moved"); }
};

// Read-only text: the host's own buffer.
template <>
struct Kind<const tvapi::WString&> {
    using C = const tvWChar*;
    tvapi::WString value;
    int position;
    explicit Kind(int p) : value(TVAPIC_TEXT("text") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + p))), position(p) {}
    const tvapi::WString& host() { return value; }
    void Before() {}
    void Received(Report& r, C c) {
        r.Expect(c == value.c_str(), "text" + At(position) + " is a copy, not the host's buffer");
    }
    void After(Report&) {}
};

// Writable text: offered empty, replaced by the callback's.
template <>
struct Kind<tvapi::WString&> {
    using C = tvWChar**;
    tvapi::WString value;
    tvapi::WString written;
    int position;
    explicit Kind(int p)
        : written(TVAPIC_TEXT("written") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + p))), position(p) {}
    tvapi::WString& host() { return value; }
    void Before() { value = TVAPIC_TEXT("before"); }
    void Received(Report& r, C c) {
        r.Expect(c && !*c, "writable text" + At(position) + " must start unset");
        if (c) *c = written.data();
    }
    void After(Report& r) { r.Expect(value == written, "writable text" + At(position) + " not written back"); }
};

template <>
struct Kind<int&> {
    using C = int*;
    int value = 0;
    int position;
    explicit Kind(int p) : position(p) {}
    int& host() { return value; }
    void Before() { value = 10 + position; }
    void Received(Report& r, C c) {
        r.Expect(c && *c == 10 + position, "writable int" + At(position) + " must start with the host's value");
        if (c) *c = 20 + position;
    }
    void After(Report& r) { r.Expect(value == 20 + position, "writable int" + At(position) + " not written back"); }
};

// A writable truth value goes both ways: the even positions start true and
// are set to 0, the odd ones start false and are set to 5.
template <>
struct Kind<bool&> {
    using C = int*;
    bool value = false;
    int position;
    explicit Kind(int p) : position(p) {}
    bool starts() const { return position % 2 == 0; }
    bool& host() { return value; }
    void Before() { value = starts(); }
    void Received(Report& r, C c) {
        r.Expect(c && *c == (starts() ? 1 : 0), "writable truth value" + At(position) + " must start as 0 or 1");
        if (c) *c = starts() ? 0 : 5;
    }
    void After(Report& r) {
        r.Expect(value == !starts(), "writable truth value" + At(position) + " not written back");
    }
};

// A list of objects: handles of their IAPIObject faces, each holding one
// reference for the call only; a null reference stays null.
template <class I>
struct Kind<const std::vector<tvapi::SmartPtr<I>>&> {
    using C = const ObjectReferenceVector_t*;
    tvprobe::Object* first = tvprobe::Object::Create({tvprobe::FaceName<I>::value});
    tvprobe::Object* second = tvprobe::Object::Create({tvprobe::FaceName<I>::value});
    std::vector<tvapi::SmartPtr<I>> value{tvapi::SmartPtr<I>(first->As<I>()), tvapi::SmartPtr<I>(),
                                          tvapi::SmartPtr<I>(second->As<I>())};
    int position;
    explicit Kind(int p) : position(p) {}
    ~Kind() {
        value.clear();
        first->Release();
        second->Release();
    }
    Kind(const Kind&) = delete;
    Kind& operator=(const Kind&) = delete;
    const std::vector<tvapi::SmartPtr<I>>& host() { return value; }
    void Before() {}
    void Received(Report& r, C c) {
        bool shaped = c && c->size == 3 && c->data[0] == first->Handle() && c->data[1] == nullptr &&
                      c->data[2] == second->Handle();
        r.Expect(shaped, "object list" + At(position) + " is not [first, null, second] as IAPIObject handles");
        r.Expect(first->refs() == 3 && second->refs() == 3,
                 "object list" + At(position) + " elements must hold one reference each");
    }
    void After(Report& r) {
        r.Expect(first->refs() == 2 && second->refs() == 2,
                 "object list" + At(position) + " references not given back after the call");
    }
};

template <>
struct Kind<const std::vector<std::int32_t>&> {
    using C = const Int32Vector_t*;
    std::vector<std::int32_t> value;
    int position;
    explicit Kind(int p) : value{5, -6, 7 + p}, position(p) {}
    const std::vector<std::int32_t>& host() { return value; }
    void Before() {}
    void Received(Report& r, C c) {
        bool same = c && c->size == value.size();
        for (std::size_t i = 0; same && i < value.size(); ++i) same = c->data[i] == value[i];
        r.Expect(same, "integer list" + At(position));
    }
    void After(Report&) {}
};

// A writable list of texts: the callback replaces the second text, freeing
// the one it replaces.
template <>
struct Kind<std::vector<tvapi::WString>&> {
    using C = StringVector_t*;
    std::vector<tvapi::WString> value;
    int position;
    explicit Kind(int p) : position(p) {}
    std::vector<tvapi::WString>& host() { return value; }
    void Before() { value = {tvapi::WString(TVAPIC_TEXT("a")), tvapi::WString(TVAPIC_TEXT("b"))}; }
    void Received(Report& r, C c) {
        bool same = c && c->size == 2 && Text(c->data[0]) == TVAPIC_TEXT("a") && Text(c->data[1]) == TVAPIC_TEXT("b");
        r.Expect(same, "text list" + At(position) + " is not the host's list");
        if (!same) return;
        c_heap::Free(c->data[1]);
        StringVector_Set(c, 1, TVAPIC_TEXT("z"));
    }
    void After(Report& r) {
        r.Expect(value == std::vector<tvapi::WString>{tvapi::WString(TVAPIC_TEXT("a")), tvapi::WString(TVAPIC_TEXT("z"))},
                 "text list" + At(position) + " not copied back");
    }
};

// What a callback answers, and what the host must see of it.
template <class R, class = void>
struct Answers;

template <>
struct Answers<void> {
    using C = void;
};

template <>
struct Answers<bool> {
    using C = int;
    static std::vector<std::pair<int, bool>> All() { return {{2, true}, {0, false}, {-1, true}}; }
};

template <class E>
struct Answers<E, std::enable_if_t<std::is_enum_v<E>>> {
    using C = int;
    static std::vector<std::pair<int, E>> All() { return {{9, static_cast<E>(9)}, {-2, static_cast<E>(-2)}}; }
};

template <>
struct Answers<void*> {
    using C = void*;
    static std::vector<std::pair<void*, void*>> All() {
        static char token;
        return {{&token, &token}, {nullptr, nullptr}};
    }
};

}  // namespace eventsweep
