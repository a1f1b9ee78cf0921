// The exported C vector families. Every family is the same header (size, then
// data) over a block of the C runtime heap shared with callers; the families differ only in element type and in
// what their clear does to the elements. Nothing is bounds-checked: a null
// vector is the one input that is looked at.
#include <cstdint>
#include <type_traits>

#include "check/check.h"
#include "check/families.h"
#include "containers/clear.h"
#include "containers/value_handles.h"
#include "core/heap.h"
#include "core/text.h"
#include "tvAPIC.h"

namespace {

using tvapic::containers::ClearOwning;
using tvapic::containers::ClearPlain;

template <class CV>
using Element = std::remove_pointer_t<decltype(CV::data)>;

// The block is left uninitialised; neither the count × width product nor the
// allocation result is checked (a failed block leaves a null data and the count).
template <class CV>
CV* Create(std::uint64_t count) {
    auto* v = new CV{count, static_cast<Element<CV>*>(tvapic::heap::Allocate(count * sizeof(Element<CV>)))};
    if (tvapic::check::On()) tvapic::check::VectorMade(v, tvapic::check::kFamily<CV>);
    return v;
}

// Checked mode stops counting a vector the caller deletes.
template <class CV>
void Forget(CV* v) {
    if (tvapic::check::On()) tvapic::check::VectorDeleted(v);
}

template <class CV>
Element<CV> Get(const CV* v, std::uint64_t i) {
    return v ? v->data[i] : Element<CV>{};
}

template <class CV>
void Set(CV* v, std::uint64_t i, Element<CV> x) {
    if (v) v->data[i] = x;
}

template <class CV>
void DeletePlain(CV* v) {
    if (!v) return;
    Forget(v);
    tvapic::heap::Free(v->data);
    delete v;
}

// Owning families: Clear is theirs, Delete is that clear plus the header.
template <class CV, class ClearFn>
void DeleteOwning(CV* v, ClearFn clear) {
    if (v) Forget(v);
    clear(v);
    delete v;
}

// Value handles are not owned by the vector: the clear gives back the block
// only, with the owning families' rule for data.
void KeepHandle(PropertyValue_t*) {}

}  // namespace

extern "C" {

BoolVector_t* BoolVector_Create(uint64_t count) { return Create<BoolVector_t>(count); }
int32_t BoolVector_Get(BoolVector_t* v, uint64_t i) { return Get(v, i); }
void BoolVector_Set(BoolVector_t* v, uint64_t i, int32_t x) { Set(v, i, x); }
void BoolVector_Clear(BoolVector_t* v) { ClearPlain(v); }
void BoolVector_Delete(BoolVector_t* v) { DeletePlain(v); }

ColorVector_t* ColorVector_Create(uint64_t count) { return Create<ColorVector_t>(count); }
int32_t ColorVector_Get(ColorVector_t* v, uint64_t i) { return Get(v, i); }
void ColorVector_Set(ColorVector_t* v, uint64_t i, int32_t x) { Set(v, i, x); }
void ColorVector_Clear(ColorVector_t* v) { ClearPlain(v); }
void ColorVector_Delete(ColorVector_t* v) { DeletePlain(v); }

EnumVector_t* EnumVector_Create(uint64_t count) { return Create<EnumVector_t>(count); }
int32_t EnumVector_Get(EnumVector_t* v, uint64_t i) { return Get(v, i); }
void EnumVector_Set(EnumVector_t* v, uint64_t i, int32_t x) { Set(v, i, x); }
void EnumVector_Clear(EnumVector_t* v) { ClearPlain(v); }
void EnumVector_Delete(EnumVector_t* v) { DeletePlain(v); }

Int32Vector_t* Int32Vector_Create(uint64_t count) { return Create<Int32Vector_t>(count); }
int32_t Int32Vector_Get(Int32Vector_t* v, uint64_t i) { return Get(v, i); }
void Int32Vector_Set(Int32Vector_t* v, uint64_t i, int32_t x) { Set(v, i, x); }
void Int32Vector_Clear(Int32Vector_t* v) { ClearPlain(v); }
void Int32Vector_Delete(Int32Vector_t* v) { DeletePlain(v); }

Uint32Vector_t* Uint32Vector_Create(uint64_t count) { return Create<Uint32Vector_t>(count); }
uint32_t Uint32Vector_Get(Uint32Vector_t* v, uint64_t i) { return Get(v, i); }
void Uint32Vector_Set(Uint32Vector_t* v, uint64_t i, uint32_t x) { Set(v, i, x); }
void Uint32Vector_Clear(Uint32Vector_t* v) { ClearPlain(v); }
void Uint32Vector_Delete(Uint32Vector_t* v) { DeletePlain(v); }

FloatVector_t* FloatVector_Create(uint64_t count) { return Create<FloatVector_t>(count); }
float FloatVector_Get(FloatVector_t* v, uint64_t i) { return Get(v, i); }
void FloatVector_Set(FloatVector_t* v, uint64_t i, float x) { Set(v, i, x); }
void FloatVector_Clear(FloatVector_t* v) { ClearPlain(v); }
void FloatVector_Delete(FloatVector_t* v) { DeletePlain(v); }

DoubleVector_t* DoubleVector_Create(uint64_t count) { return Create<DoubleVector_t>(count); }
double DoubleVector_Get(DoubleVector_t* v, uint64_t i) { return Get(v, i); }
void DoubleVector_Set(DoubleVector_t* v, uint64_t i, double x) { Set(v, i, x); }
void DoubleVector_Clear(DoubleVector_t* v) { ClearPlain(v); }
void DoubleVector_Delete(DoubleVector_t* v) { DeletePlain(v); }

NumericIdVector_t* NumericIdVector_Create(uint64_t count) { return Create<NumericIdVector_t>(count); }
uint64_t NumericIdVector_Get(NumericIdVector_t* v, uint64_t i) { return Get(v, i); }
void NumericIdVector_Set(NumericIdVector_t* v, uint64_t i, uint64_t x) { Set(v, i, x); }
void NumericIdVector_Clear(NumericIdVector_t* v) { ClearPlain(v); }
void NumericIdVector_Delete(NumericIdVector_t* v) { DeletePlain(v); }

Uint8Vector_t* Uint8Vector_Create(uint64_t count) { return Create<Uint8Vector_t>(count); }
uint8_t Uint8Vector_Get(Uint8Vector_t* v, uint64_t i) { return Get(v, i); }
void Uint8Vector_Set(Uint8Vector_t* v, uint64_t i, uint8_t x) { Set(v, i, x); }
void Uint8Vector_Clear(Uint8Vector_t* v) { ClearPlain(v); }
void Uint8Vector_Delete(Uint8Vector_t* v) { DeletePlain(v); }

// Owns its byte vectors; Set takes over the new one and leaves the old alone.
Uint8VectorVector_t* Uint8VectorVector_Create(uint64_t count) { return Create<Uint8VectorVector_t>(count); }
Uint8Vector_t* Uint8VectorVector_Get(Uint8VectorVector_t* v, uint64_t i) { return Get(v, i); }
void Uint8VectorVector_Set(Uint8VectorVector_t* v, uint64_t i, Uint8Vector_t* x) { Set(v, i, x); }
void Uint8VectorVector_Clear(Uint8VectorVector_t* v) { ClearOwning(v, Uint8Vector_Delete); }
void Uint8VectorVector_Delete(Uint8VectorVector_t* v) { DeleteOwning(v, Uint8VectorVector_Clear); }

// Owns its texts. A caller's text is copied into a block of 8 bytes per unit
// (the width callers of this family have always been given); the text that
// stood in the slot before is not freed.
StringVector_t* StringVector_Create(uint64_t count) { return Create<StringVector_t>(count); }
tvWChar* StringVector_Get(StringVector_t* v, uint64_t i) { return Get(v, i); }
void StringVector_Set(StringVector_t* v, uint64_t i, const tvWChar* s) {
    if (v) v->data[i] = tvapic::core::CopyText(s, tvapic::core::TextLength(s), 8);
}
void StringVector_Clear(StringVector_t* v) { tvapic::containers::Clear(v); }
void StringVector_Delete(StringVector_t* v) { DeleteOwning(v, StringVector_Clear); }

StringVectorVector_t* StringVectorVector_Create(uint64_t count) { return Create<StringVectorVector_t>(count); }
StringVector_t* StringVectorVector_Get(StringVectorVector_t* v, uint64_t i) { return Get(v, i); }
void StringVectorVector_Set(StringVectorVector_t* v, uint64_t i, StringVector_t* x) { Set(v, i, x); }
void StringVectorVector_Clear(StringVectorVector_t* v) { ClearOwning(v, StringVector_Delete); }
void StringVectorVector_Delete(StringVectorVector_t* v) { DeleteOwning(v, StringVectorVector_Clear); }

// Handles are stored as given: the vector never adds or releases a reference.
ObjectReferenceVector_t* ObjectReferenceVector_Create(uint64_t count) { return Create<ObjectReferenceVector_t>(count); }
void* ObjectReferenceVector_Get(ObjectReferenceVector_t* v, uint64_t i) { return Get(v, i); }
void ObjectReferenceVector_Set(ObjectReferenceVector_t* v, uint64_t i, void* x) { Set(v, i, x); }
void ObjectReferenceVector_Clear(ObjectReferenceVector_t* v) { ClearPlain(v); }
void ObjectReferenceVector_Delete(ObjectReferenceVector_t* v) { DeletePlain(v); }

ObjectReferenceVectorVector_t* ObjectReferenceVectorVector_Create(uint64_t count) {
    return Create<ObjectReferenceVectorVector_t>(count);
}
ObjectReferenceVector_t* ObjectReferenceVectorVector_Get(ObjectReferenceVectorVector_t* v, uint64_t i) {
    return Get(v, i);
}
void ObjectReferenceVectorVector_Set(ObjectReferenceVectorVector_t* v, uint64_t i, ObjectReferenceVector_t* x) {
    Set(v, i, x);
}
void ObjectReferenceVectorVector_Clear(ObjectReferenceVectorVector_t* v) {
    ClearOwning(v, ObjectReferenceVector_Delete);
}
void ObjectReferenceVectorVector_Delete(ObjectReferenceVectorVector_t* v) {
    DeleteOwning(v, ObjectReferenceVectorVector_Clear);
}

PropertyValueVector_t* PropertyValueVector_Create(uint64_t count) { return Create<PropertyValueVector_t>(count); }
PropertyValue_t* PropertyValueVector_Get(PropertyValueVector_t* v, uint64_t i) { return Get(v, i); }
void PropertyValueVector_Set(PropertyValueVector_t* v, uint64_t i, PropertyValue_t* x) { Set(v, i, x); }
void PropertyValueVector_Clear(PropertyValueVector_t* v) { ClearOwning(v, KeepHandle); }
void PropertyValueVector_Delete(PropertyValueVector_t* v) { DeleteOwning(v, PropertyValueVector_Clear); }

// A C caller has no way to make attribute or storage value handles, so these
// families have nothing to hold: only a null vector ever reaches an operation.
AttributeValueVector_t* AttributeValueVector_Create(uint64_t) { return nullptr; }
AttributeValue_t* AttributeValueVector_Get(AttributeValueVector_t* v, uint64_t i) { return Get(v, i); }
void AttributeValueVector_Set(AttributeValueVector_t*, uint64_t, AttributeValue_t*) {}
void AttributeValueVector_Delete(AttributeValueVector_t*) {}

StorageValueVector_t* StorageValueVector_Create(uint64_t) { return nullptr; }
StorageValue_t* StorageValueVector_Get(StorageValueVector_t*, uint64_t) { return nullptr; }
void StorageValueVector_Set(StorageValueVector_t*, uint64_t, StorageValue_t*) {}
void StorageValueVector_Delete(StorageValueVector_t*) {}

}  // extern "C"
