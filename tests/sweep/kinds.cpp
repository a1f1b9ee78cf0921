#include "sweep/kinds.h"

#include <type_traits>

namespace sweep::kind {
namespace {

template <class CV>
struct Family;

#define SWEEP_FAMILY(F)                                   \
    template <>                                           \
    struct Family<F##_t> {                                \
        static F##_t* Create(uint64_t n) { return F##_Create(n); } \
        static void Delete(F##_t* v) { F##_Delete(v); }   \
    };
SWEEP_FAMILY(BoolVector)
SWEEP_FAMILY(Int32Vector)
SWEEP_FAMILY(EnumVector)
SWEEP_FAMILY(ColorVector)
SWEEP_FAMILY(Uint32Vector)
SWEEP_FAMILY(FloatVector)
SWEEP_FAMILY(DoubleVector)
SWEEP_FAMILY(NumericIdVector)
SWEEP_FAMILY(Uint8Vector)
SWEEP_FAMILY(StringVector)
SWEEP_FAMILY(ObjectReferenceVector)
SWEEP_FAMILY(ObjectReferenceVectorVector)
SWEEP_FAMILY(PropertyValueVector)
SWEEP_FAMILY(AttributeValueVector)
SWEEP_FAMILY(StorageValueVector)
#undef SWEEP_FAMILY

template <class CV>
constexpr bool IsOneOf() {
    return false;
}
template <class CV, class First, class... Rest>
constexpr bool IsOneOf() {
    return std::is_same_v<CV, First> || IsOneOf<CV, Rest...>();
}

}  // namespace

template <class CV>
Vector<CV>::Vector(Pass& p, int pos, const char* element, bool in_out) : inout(in_out) {
    if constexpr (IsOneOf<CV, AttributeValueVector_t, StorageValueVector_t>()) {
        // A C caller cannot build these: the only list it can pass is null.
        expected = "[]";
        return;
    } else if constexpr (std::is_same_v<CV, ObjectReferenceVector_t>) {
        if (inout) {
            // Object lists are refilled over a fresh, empty header.
            c = Family<CV>::Create(0);
            ObjectReferenceVector_Clear(c);
            expected = "[]";
        } else {
            objects.push_back(p.MakeObject(element));
            c = ObjectReferenceVector_Create(2);
            ObjectReferenceVector_Set(c, 0, objects[0]->Handle());
            ObjectReferenceVector_Set(c, 1, nullptr);
            expected = "[obj" + std::to_string(objects[0]->id()) + ",null]";
        }
    } else if constexpr (std::is_same_v<CV, ObjectReferenceVectorVector_t>) {
        objects.push_back(p.MakeObject(element));
        ObjectReferenceVector_t* inner = ObjectReferenceVector_Create(1);
        ObjectReferenceVector_Set(inner, 0, objects[0]->Handle());
        c = ObjectReferenceVectorVector_Create(1);
        ObjectReferenceVectorVector_Set(c, 0, inner);
        expected = "[[obj" + std::to_string(objects[0]->id()) + "]]";
    } else if constexpr (std::is_same_v<CV, StringVector_t>) {
        c = StringVector_Create(2);
        tvapi::WString first = TVAPIC_TEXT("s") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + pos));
        StringVector_Set(c, 0, first.c_str());
        StringVector_Set(c, 1, TVAPIC_TEXT(""));
        expected = "[\"s" + std::to_string(pos) + "\",\"\"]";
    } else if constexpr (std::is_same_v<CV, PropertyValueVector_t>) {
        values.push_back(PropertyValue_Create());
        PropertyValue_SetInt(values[0], 3 + pos);
        c = PropertyValueVector_Create(1);
        PropertyValueVector_Set(c, 0, values[0]);
        expected = "[pv:" + std::to_string(3 + pos) + "]";
    } else {
        using E = std::remove_pointer_t<decltype(c->data)>;
        c = Family<CV>::Create(2);
        if constexpr (std::is_same_v<CV, BoolVector_t>) {
            c->data[0] = 3;
            c->data[1] = 0;
            expected = "[true,false]";
        } else {
            c->data[0] = static_cast<E>(1 + pos);
            c->data[1] = static_cast<E>(0.5);
            expected = "[" + tvprobe::Describe(c->data[0]) + "," + tvprobe::Describe(c->data[1]) + "]";
        }
    }
    if (c) {
        size_before = c->size;
        data_before = c->data;
    }
}

template <class CV>
void Vector<CV>::After(Pass& p) {
    for (auto* o : objects) {
        p.Expect(o->refs() == 1 && o->addrefs == o->releases, "a list element's references must be given back");
    }
    if (!c) return;
    if (inout && p.reached()) {
        if constexpr (IsOneOf<CV, AttributeValueVector_t, StorageValueVector_t>()) {
            p.Fail("value lists cannot be refilled");
        } else {
            CheckAnswerVector(p, c);
            refilled = true;
        }
        return;
    }
    p.Expect(c->size == size_before && c->data == data_before, "an input list must be left as it was");
}

template <class CV>
Vector<CV>::~Vector() {
    if constexpr (!IsOneOf<CV, AttributeValueVector_t, StorageValueVector_t>()) {
        if (refilled) DeleteAnswerVector(c);
        else Family<CV>::Delete(c);
    }
    for (auto* v : values) PropertyValue_Delete(v);
}

template struct Vector<BoolVector_t>;
template struct Vector<Int32Vector_t>;
template struct Vector<EnumVector_t>;
template struct Vector<ColorVector_t>;
template struct Vector<Uint32Vector_t>;
template struct Vector<FloatVector_t>;
template struct Vector<DoubleVector_t>;
template struct Vector<NumericIdVector_t>;
template struct Vector<Uint8Vector_t>;
template struct Vector<StringVector_t>;
template struct Vector<ObjectReferenceVector_t>;
template struct Vector<ObjectReferenceVectorVector_t>;
template struct Vector<PropertyValueVector_t>;
template struct Vector<AttributeValueVector_t>;
template struct Vector<StorageValueVector_t>;

}  // namespace sweep::kind
