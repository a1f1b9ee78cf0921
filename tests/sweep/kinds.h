// Parameter kinds of the export sweep. Each makes one synthetic C argument
// (`c`), tells how the host must see it (Expected) and checks what the
// caller's argument looks like after the call (After). Values vary with the
// parameter's position so that swapped arguments are caught.
#pragma once

#include <string>
#include <vector>

#include "probe/describe.h"
#include "sweep/sweep.h"

namespace sweep::kind {

struct NoCopy {
    NoCopy() = default;
    NoCopy(const NoCopy&) = delete;
    NoCopy& operator=(const NoCopy&) = delete;
};

struct Bool : NoCopy {
    int c;
    Bool(Pass&, int pos) : c(pos % 2 ? 0 : 5) {}
    std::string Expected() const { return c ? "true" : "false"; }
    void After(Pass&) {}
};

template <class C>
struct Number : NoCopy {
    C c;
    Number(Pass&, int pos) : c(static_cast<C>(7 + pos)) {}
    std::string Expected() const { return tvprobe::Describe(c); }
    void After(Pass&) {}
};
using Int = Number<int>;
using Enum = Number<int>;

struct Int64 : NoCopy {
    uint64_t c;
    Int64(Pass&, int pos) : c(1000000000000ull + pos) {}
    std::string Expected() const { return tvprobe::Describe(c); }
    void After(Pass&) {}
};

struct Double : NoCopy {
    double c;
    Double(Pass&, int pos) : c(2.5 + pos) {}
    std::string Expected() const { return tvprobe::Describe(c); }
    void After(Pass&) {}
};

struct Text : NoCopy {
    tvapi::WString storage;
    const tvWChar* c;
    Text(Pass&, int pos)
        : storage(TVAPIC_TEXT("t") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + pos))), c(storage.c_str()) {}
    std::string Expected() const { return tvprobe::Describe(storage); }
    void After(Pass&) {}
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
            else if constexpr (std::is_same_v<Host, uint64_t>) want = a.out_id;
            else want = static_cast<C>(a.out_number);
        }
        p.Expect(local == want, "out-parameter: expected " + tvprobe::Describe(want) + ", got " +
                                    tvprobe::Describe(local));
    }
};
using OutBool = Out<int, bool>;
using OutInt = Out<int, int>;
using OutEnum = Out<int, int>;
using OutInt64 = Out<uint64_t, uint64_t>;
using OutDouble = Out<double, double>;

// An object returned through an out-parameter: borrowed, no reference.
struct OutObject : NoCopy {
    char sentinel = 0;
    void* local = &sentinel;
    void** c = &local;
    OutObject(Pass&, int, const char*) {}
    std::string Expected() const { return "&null"; }
    void After(Pass& p) {
        if (!p.reached()) {
            p.Expect(local == &sentinel, "an out-object must be untouched when the host is not reached");
            return;
        }
        p.Expect(local == p.result_object()->Handle(), "an out-object must be the object's IAPIObject face");
    }
};

// Input lists, and in/out lists that the host refills.
template <class CV>
struct Vector : NoCopy {
    CV* c = nullptr;
    std::string expected;
    bool inout;
    uint64_t size_before = 0;
    const void* data_before = nullptr;
    std::vector<tvprobe::Object*> objects;
    std::vector<PropertyValue_t*> values;
    bool refilled = false;

    Vector(Pass& p, int pos, const char* element = "", bool in_out = false);
    ~Vector();
    std::string Expected() const { return expected; }
    void After(Pass& p);
};

template <class CV>
struct InOut : Vector<CV> {
    InOut(Pass& p, int pos, const char* element = "") : Vector<CV>(p, pos, element, true) {}
};

}  // namespace sweep::kind

namespace sweep::kind {

// Single values: a property value handle the caller made; attribute and
// storage values cannot be made from C, so only null is passed.
struct PropertyValue : NoCopy {
    PropertyValue_t* c;
    int number;
    PropertyValue(Pass&, int pos) : c(PropertyValue_Create()), number(5 + pos) { PropertyValue_SetInt(c, number); }
    ~PropertyValue() { PropertyValue_Delete(c); }
    std::string Expected() const { return "pv:" + std::to_string(number); }
    void After(Pass&) {}
};

struct AttributeValue : NoCopy {
    AttributeValue_t* c = nullptr;
    AttributeValue(Pass&, int) {}
    std::string Expected() const { return "av:"; }
    void After(Pass&) {}
};

struct StorageValue : NoCopy {
    StorageValue_t* c = nullptr;
    StorageValue(Pass&, int) {}
    std::string Expected() const { return "sv:"; }
    void After(Pass&) {}
};

}  // namespace sweep::kind
