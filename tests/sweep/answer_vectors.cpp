// Vectors the library built from a probe's answered list: element i of a
// scalar list is 10 + i (flags: i even), texts "e<i>", objects the answering
// object's IAPIObject face, property values holding 10 + i.
#include <string>

#include "sweep/sweep.h"

namespace sweep {
namespace {

template <class CV>
bool SizeIs(Pass& p, CV* v) {
    if (v->size == p.answers().count) return true;
    p.Fail("list of " + std::to_string(v->size) + " elements, expected " + std::to_string(p.answers().count));
    return false;
}

template <class CV>
void CheckNumbers(Pass& p, CV* v) {
    if (!SizeIs(p, v)) return;
    for (uint64_t i = 0; i < v->size; ++i) {
        p.Expect(v->data[i] == static_cast<std::remove_pointer_t<decltype(v->data)>>(10 + i),
                 "list element " + std::to_string(i));
    }
}

void CheckObjects(Pass& p, ObjectReferenceVector_t* v, uint64_t expected_size) {
    if (v->size != expected_size) {
        p.Fail("object list of " + std::to_string(v->size) + " elements");
        return;
    }
    for (uint64_t i = 0; i < v->size; ++i) {
        p.Expect(v->data[i] == p.result_object()->Handle(), "an object list element must be the IAPIObject face");
    }
}

}  // namespace

void CheckAnswerVector(Pass& p, BoolVector_t* v) {
    if (!SizeIs(p, v)) return;
    for (uint64_t i = 0; i < v->size; ++i) p.Expect(v->data[i] == (i % 2 == 0 ? 1 : 0), "flag list element");
}
void CheckAnswerVector(Pass& p, Int32Vector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, EnumVector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, ColorVector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, Uint32Vector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, FloatVector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, DoubleVector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, NumericIdVector_t* v) { CheckNumbers(p, v); }
void CheckAnswerVector(Pass& p, Uint8Vector_t* v) { CheckNumbers(p, v); }

void CheckAnswerVector(Pass& p, StringVector_t* v) {
    if (!SizeIs(p, v)) return;
    for (uint64_t i = 0; i < v->size; ++i) {
        p.Expect(Text(v->data[i]) == TVAPIC_TEXT("e") + tvapi::WString(1, tvWChar(TVAPIC_TEXT('0') + i)),
                 "text list element");
    }
}

void CheckAnswerVector(Pass& p, ObjectReferenceVector_t* v) { CheckObjects(p, v, p.answers().count); }

void CheckAnswerVector(Pass& p, ObjectReferenceVectorVector_t* v) {
    if (!SizeIs(p, v)) return;
    for (uint64_t i = 0; i < v->size; ++i) CheckObjects(p, v->data[i], 1);
}

void CheckAnswerVector(Pass& p, PropertyValueVector_t* v) {
    if (!SizeIs(p, v)) return;
    for (uint64_t i = 0; i < v->size; ++i) {
        p.Expect(PropertyValue_GetInt(v->data[i]) == static_cast<int>(10 + i), "property value list element");
    }
}

void CheckAnswerVector(Pass& p, AttributeValueVector_t*) { p.Fail("attribute value lists are never returned"); }
void CheckAnswerVector(Pass& p, StorageValueVector_t*) { p.Fail("storage value lists are never returned"); }

void DeleteAnswerVector(BoolVector_t* v) { BoolVector_Delete(v); }
void DeleteAnswerVector(Int32Vector_t* v) { Int32Vector_Delete(v); }
void DeleteAnswerVector(EnumVector_t* v) { EnumVector_Delete(v); }
void DeleteAnswerVector(ColorVector_t* v) { ColorVector_Delete(v); }
void DeleteAnswerVector(Uint32Vector_t* v) { Uint32Vector_Delete(v); }
void DeleteAnswerVector(FloatVector_t* v) { FloatVector_Delete(v); }
void DeleteAnswerVector(DoubleVector_t* v) { DoubleVector_Delete(v); }
void DeleteAnswerVector(NumericIdVector_t* v) { NumericIdVector_Delete(v); }
void DeleteAnswerVector(Uint8Vector_t* v) { Uint8Vector_Delete(v); }
void DeleteAnswerVector(StringVector_t* v) { StringVector_Delete(v); }

// Returned handles carry one reference each; the caller gives them back.
void DeleteAnswerVector(ObjectReferenceVector_t* v) {
    for (uint64_t i = 0; i < v->size; ++i) {
        if (v->data[i]) IAPIObject_Release(v->data[i]);
    }
    ObjectReferenceVector_Delete(v);
}

void DeleteAnswerVector(ObjectReferenceVectorVector_t* v) {
    for (uint64_t i = 0; i < v->size; ++i) {
        ObjectReferenceVector_t* inner = v->data[i];
        for (uint64_t j = 0; inner && j < inner->size; ++j) IAPIObject_Release(inner->data[j]);
    }
    ObjectReferenceVectorVector_Delete(v);
}

// The vector does not own its value handles: each is deleted first.
void DeleteAnswerVector(PropertyValueVector_t* v) {
    for (uint64_t i = 0; i < v->size; ++i) PropertyValue_Delete(v->data[i]);
    PropertyValueVector_Delete(v);
}

void DeleteAnswerVector(AttributeValueVector_t* v) { AttributeValueVector_Delete(v); }
void DeleteAnswerVector(StorageValueVector_t* v) { StorageValueVector_Delete(v); }

}  // namespace sweep
