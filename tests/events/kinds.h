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
#include "probe/probe.h"
#include "probe/probe_faces.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace eventsweep {

// A text the library handed over, as a string; null reads as empty.
inline tvapi::WString Text(const tvWChar* s) { return s ? tvapi::WString(s) : tvapi::WString(); }

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

// What every kind has: its position, and nothing to prepare or check after.
struct At {
    int position;
    std::string where(const char* what) const { return std::string(what) + " at " + std::to_string(position); }
    void Before() {}
    void After(Report&) {}
};

// Kind<A>: a host argument of type A, for one call.
template <class A, class = void>
struct Kind;

// Numbers, truth values (received as 0 or 1) and enumerations, by value.
template <class T>
struct Kind<T, std::enable_if_t<std::is_arithmetic_v<T> || std::is_enum_v<T>>> : At {
    using C = std::conditional_t<std::is_same_v<T, bool> || std::is_enum_v<T>, int, T>;
    T value;
    static T ValueAt(int p) {
        if constexpr (std::is_same_v<T, bool>) return p % 2 == 0;
        else if constexpr (std::is_enum_v<T>) return static_cast<T>(3 + p);
        else if constexpr (std::is_same_v<T, std::uint32_t>) return 0x80000000u + static_cast<std::uint32_t>(p);
        else if constexpr (std::is_same_v<T, std::uint64_t>) return 0x300000000ull + static_cast<std::uint64_t>(p);
        else if constexpr (std::is_floating_point_v<T>) return 0.25 + p;
        else return static_cast<T>(-100 - p);
    }
    explicit Kind(int p) : At{p}, value(ValueAt(p)) {}
    T host() { return value; }
    void Received(Report& r, C c) { r.Expect(c == static_cast<C>(value), where("value")); }
};

template <>
struct Kind<void*> : At {
    using C = void*;
    char marker[8] = {};
    explicit Kind(int p) : At{p} {}
    void* host() { return marker + position % 8; }
    void Received(Report& r, C c) { r.Expect(c == host(), where("opaque pointer")); }
};

// A lent object: the raw interface pointer, no reference taken.
template <class I>
struct Kind<const tvapi::SmartPtr<I>&> : At {
    using C = void*;
    tvprobe::Held object{tvprobe::FaceName<I>::value};
    tvapi::SmartPtr<I> value{object->template As<I>()};
    int addrefs = 0;
    explicit Kind(int p) : At{p} {}
    const tvapi::SmartPtr<I>& host() { return value; }
    void Before() { addrefs = object->addrefs; }
    void Received(Report& r, C c) {
        r.Expect(c == value.get(), where("object is not the host's interface pointer"));
        r.Expect(object->addrefs == addrefs, where("object was referenced, not lent"));
    }
    void After(Report& r) { r.Expect(object->refs() == 2, where("object's references moved")); }
};

// Read-only text: the host's own buffer.
template <>
struct Kind<const tvapi::WString&> : At {
    using C = const tvWChar*;
    tvapi::WString value;
    explicit Kind(int p) : At{p}, value(TVAPIC_TEXT("text") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + p))) {}
    const tvapi::WString& host() { return value; }
    void Received(Report& r, C c) { r.Expect(c == value.c_str(), where("text is a copy, not the host's buffer")); }
};

// Writable text: offered empty, replaced by the callback's.
template <>
struct Kind<tvapi::WString&> : At {
    using C = tvWChar**;
    tvapi::WString value;
    tvapi::WString written;
    explicit Kind(int p) : At{p}, written(TVAPIC_TEXT("written") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + p))) {}
    tvapi::WString& host() { return value; }
    void Before() { value = TVAPIC_TEXT("before"); }
    void Received(Report& r, C c) {
        r.Expect(c && !*c, where("writable text must start unset"));
        if (c) *c = written.data();
    }
    void After(Report& r) { r.Expect(value == written, where("writable text not written back")); }
};

// A writable integer or truth value goes both ways: it starts with the
// host's value (a truth value as 0 or 1) and comes back as the callback left
// it (a truth value true when non-zero: even positions start true and are
// set to 0, odd ones start false and are set to 5).
template <class T>
struct Kind<T&, std::enable_if_t<std::is_same_v<T, int> || std::is_same_v<T, bool>>> : At {
    using C = int*;
    T value{};
    explicit Kind(int p) : At{p} {}
    static constexpr bool kFlag = std::is_same_v<T, bool>;
    int starts() const { return kFlag ? position % 2 == 0 : 10 + position; }
    int writes() const { return kFlag ? (starts() ? 0 : 5) : 20 + position; }
    T& host() { return value; }
    void Before() { value = static_cast<T>(starts()); }
    void Received(Report& r, C c) {
        r.Expect(c && *c == starts(), where("writable value must start with the host's"));
        if (c) *c = writes();
    }
    void After(Report& r) { r.Expect(value == static_cast<T>(writes()), where("writable value not written back")); }
};

// A list of objects: handles of their IAPIObject faces, each holding one
// reference for the call only; a null reference stays null.
template <class I>
struct Kind<const std::vector<tvapi::SmartPtr<I>>&> : At {
    using C = const ObjectReferenceVector_t*;
    tvprobe::Held first{tvprobe::FaceName<I>::value};
    tvprobe::Held second{tvprobe::FaceName<I>::value};
    std::vector<tvapi::SmartPtr<I>> value{tvapi::SmartPtr<I>(first->template As<I>()), tvapi::SmartPtr<I>(),
                                          tvapi::SmartPtr<I>(second->template As<I>())};
    explicit Kind(int p) : At{p} {}
    const std::vector<tvapi::SmartPtr<I>>& host() { return value; }
    void Received(Report& r, C c) {
        bool shaped = c && c->size == 3 && c->data[0] == first.handle() && c->data[1] == nullptr &&
                      c->data[2] == second.handle();
        r.Expect(shaped, where("object list is not [first, null, second] as IAPIObject handles"));
        r.Expect(first->refs() == 3 && second->refs() == 3, where("object list elements must hold one reference"));
    }
    void After(Report& r) {
        r.Expect(first->refs() == 2 && second->refs() == 2, where("object list references not given back"));
    }
};

template <>
struct Kind<const std::vector<std::int32_t>&> : At {
    using C = const Int32Vector_t*;
    std::vector<std::int32_t> value;
    explicit Kind(int p) : At{p}, value{5, -6, 7 + p} {}
    const std::vector<std::int32_t>& host() { return value; }
    void Received(Report& r, C c) {
        r.Expect(c && std::vector<std::int32_t>(c->data, c->data + c->size) == value, where("integer list"));
    }
};

// A writable list of texts: the callback replaces the second text, freeing
// the one it replaces.
template <>
struct Kind<std::vector<tvapi::WString>&> : At {
    using C = StringVector_t*;
    std::vector<tvapi::WString> value;
    explicit Kind(int p) : At{p} {}
    std::vector<tvapi::WString>& host() { return value; }
    void Before() { value = {TVAPIC_TEXT("a"), TVAPIC_TEXT("b")}; }
    void Received(Report& r, C c) {
        bool same = c && c->size == 2 && Text(c->data[0]) == TVAPIC_TEXT("a") && Text(c->data[1]) == TVAPIC_TEXT("b");
        r.Expect(same, where("text list is not the host's list"));
        if (!same) return;
        c_heap::Free(c->data[1]);
        StringVector_Set(c, 1, TVAPIC_TEXT("z"));
    }
    void After(Report& r) {
        r.Expect(value == std::vector<tvapi::WString>{TVAPIC_TEXT("a"), TVAPIC_TEXT("z")},
                 where("text list not copied back"));
    }
};

// What a callback answers, and what the host must see of it.
template <class R, class = void>
struct Answers {
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
