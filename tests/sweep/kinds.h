// Parameter kinds of the export sweep. Each makes one synthetic C argument
// (`c`), tells how the host must see it (Expected) and checks what the
// caller's argument looks like after the call (After). Values vary with the
// parameter's position so that swapped arguments are caught.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "probe/describe.h"
#include "sweep/sweep.h"

namespace sweep::kind {

struct NoCopy {
    NoCopy() = default;
    NoCopy(const NoCopy&) = delete;
    NoCopy& operator=(const NoCopy&) = delete;
    void After(Pass&) {}
};

// Scalars by value, seen by the host as they are (flags: non-zero is true).
template <class C, long long kFirst>
struct Scalar : NoCopy {
    C c;
    Scalar(Pass&, int pos) : c(static_cast<C>(kFirst + pos) + static_cast<C>(std::is_floating_point_v<C> ? 0.5 : 0)) {}
    std::string Expected() const { return tvprobe::Describe(c); }
};
using Int = Scalar<int, 7>;
using Enum = Scalar<int, 7>;
using Int64 = Scalar<std::uint64_t, 1000000000000>;
using Double = Scalar<double, 2>;

struct Bool : NoCopy {
    int c;
    Bool(Pass&, int pos) : c(pos % 2 ? 0 : 5) {}
    std::string Expected() const { return c ? "true" : "false"; }
};

struct Text : NoCopy {
    tvapi::WString storage;
    const tvWChar* c;
    Text(Pass&, int pos)
        : storage(TVAPIC_TEXT("t") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + pos))), c(storage.c_str()) {}
    std::string Expected() const { return tvprobe::Describe(storage); }
};

struct Object : NoCopy {
    tvprobe::Object* object;
    void* c;
    Object(Pass& p, int, const char* interface) : object(p.MakeObject(interface)), c(object->Handle()) {}
    std::string Expected() const { return tvprobe::Describe(c); }
    void After(Pass& p) {
        p.Expect(object->refs() == 1 && object->addrefs == object->releases,
                 "an object argument's references must be given back");
        p.Expect(object->calls.empty(), "an object argument must not be called");
    }
};

// Scalar out-parameters: in/out through the caller's pointer.
template <class C, class Host>
struct Out : NoCopy {
    C local;
    C before;
    C* c = &local;
    Out(Pass&, int pos) : local(static_cast<C>(pos % 2 ? 1 : 3 + pos)), before(local) {}
    std::string Expected() const { return "&" + tvprobe::Describe(static_cast<Host>(before)); }
    void After(Pass& p) {
        const tvprobe::Answers& a = p.answers();
        C want = before;
        if (p.reached()) {
            if constexpr (std::is_same_v<Host, bool>) want = a.out_flag;
            else if constexpr (std::is_same_v<Host, double>) want = a.out_real;
            else if constexpr (std::is_same_v<Host, std::uint64_t>) want = a.out_id;
            else want = static_cast<C>(a.out_number);
        }
        p.Expect(local == want, "out-parameter: expected " + tvprobe::Describe(want) + ", got " +
                                    tvprobe::Describe(local));
    }
};
using OutBool = Out<int, bool>;
using OutInt = Out<int, int>;
using OutEnum = Out<int, int>;
using OutInt64 = Out<std::uint64_t, std::uint64_t>;
using OutDouble = Out<double, double>;

// Single values: a property value handle the caller made; attribute and
// storage values cannot be made from C, so only null is passed.
struct PropertyValue : NoCopy {
    PropertyValue_t* c = PropertyValue_Create();
    int number;
    PropertyValue(Pass&, int pos) : number(5 + pos) { PropertyValue_SetInt(c, number); }
    ~PropertyValue() { PropertyValue_Delete(c); }
    std::string Expected() const { return "pv:" + std::to_string(number); }
};

template <class H, char kTag>
struct NullValue : NoCopy {
    H* c = nullptr;
    NullValue(Pass&, int) {}
    std::string Expected() const { return std::string(1, kTag) + "v:"; }
};
using AttributeValue = NullValue<AttributeValue_t, 'a'>;
using StorageValue = NullValue<StorageValue_t, 's'>;

// Input lists: two elements (an object list: an object and a null), left as
// they were. In/out lists are refilled with the probe's answer (object
// lists over a fresh, empty header).
template <class CV>
struct Vector : NoCopy {
    CV* c = nullptr;
    std::string expected = "[]";
    bool inout;
    bool refilled = false;
    std::uint64_t size_before = 0;
    const void* data_before = nullptr;
    std::vector<tvprobe::Object*> objects;
    PropertyValue_t* value = nullptr;

    Vector(Pass& p, int pos, const char* element = "", bool in_out = false) : inout(in_out) {
        auto object = [&] {
            objects.push_back(p.MakeObject(element));
            return "obj" + std::to_string(objects.back()->id());
        };
        if constexpr (kValueList<CV>) {
            return;
        } else if constexpr (std::is_same_v<CV, ObjectReferenceVector_t>) {
            c = ObjectReferenceVector_Create(inout ? 0 : 2);
            if (inout) {
                ObjectReferenceVector_Clear(c);
            } else {
                expected = "[" + object() + ",null]";
                c->data[0] = objects[0]->Handle();
                c->data[1] = nullptr;
            }
        } else if constexpr (std::is_same_v<CV, ObjectReferenceVectorVector_t>) {
            expected = "[[" + object() + "]]";
            c = ObjectReferenceVectorVector_Create(1);
            c->data[0] = ObjectReferenceVector_Create(1);
            c->data[0]->data[0] = objects[0]->Handle();
        } else if constexpr (std::is_same_v<CV, StringVector_t>) {
            c = StringVector_Create(2);
            StringVector_Set(c, 0, (TVAPIC_TEXT("s") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + pos))).c_str());
            StringVector_Set(c, 1, TVAPIC_TEXT(""));
            expected = "[\"s" + std::to_string(pos) + "\",\"\"]";
        } else if constexpr (std::is_same_v<CV, PropertyValueVector_t>) {
            value = PropertyValue_Create();
            PropertyValue_SetInt(value, 3 + pos);
            c = PropertyValueVector_Create(1);
            c->data[0] = value;
            expected = "[pv:" + std::to_string(3 + pos) + "]";
        } else if constexpr (std::is_same_v<CV, BoolVector_t>) {
            c = BoolVector_Create(2);
            c->data[0] = 3;
            c->data[1] = 0;
            expected = "[true,false]";
        } else {
            using E = std::remove_pointer_t<decltype(c->data)>;
            c = Family<CV>::Create(2);
            c->data[0] = static_cast<E>(1 + pos);
            c->data[1] = static_cast<E>(0.5);
            expected = "[" + tvprobe::Describe(c->data[0]) + "," + tvprobe::Describe(c->data[1]) + "]";
        }
        size_before = c->size;
        data_before = c->data;
    }
    ~Vector() {
        if (refilled) DeleteAnswerVector(c);
        else if (c) Family<CV>::Delete(c);
        if (value) PropertyValue_Delete(value);
    }
    std::string Expected() const { return expected; }
    void After(Pass& p) {
        for (auto* o : objects) {
            p.Expect(o->refs() == 1 && o->addrefs == o->releases, "a list element's references must be given back");
        }
        if (!c) return;
        if (inout && p.reached()) {
            CheckAnswerVector(p, c, p.answers().count);
            refilled = true;
        } else {
            p.Expect(c->size == size_before && c->data == data_before, "an input list must be left as it was");
        }
    }
};

template <class CV>
struct InOut : Vector<CV> {
    InOut(Pass& p, int pos, const char* element = "") : Vector<CV>(p, pos, element, true) {}
};

}  // namespace sweep::kind
