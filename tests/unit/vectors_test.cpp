// The exported C vector families, driven as a C caller drives them.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#if defined(__GLIBC__) || defined(_WIN32)
#include <malloc.h>
#endif

#include "common/c_heap.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace {

// ---- Plain families: one typed suite over every family with the plain clear.

#define TVAPIC_PLAIN_FAMILY(F, V, A, B)                      \
    struct F##Ops {                                          \
        using Vec = F##_t;                                   \
        using Value = V;                                     \
        static Vec* Create(uint64_t n) { return F##_Create(n); } \
        static Value Get(Vec* v, uint64_t i) { return F##_Get(v, i); } \
        static void Set(Vec* v, uint64_t i, Value x) { F##_Set(v, i, x); } \
        static void Clear(Vec* v) { F##_Clear(v); }          \
        static void Delete(Vec* v) { F##_Delete(v); }        \
        static Value First() { return A; }                   \
        static Value Second() { return B; }                  \
    };

int anchor_a, anchor_b;  // addresses that stand for object handles

TVAPIC_PLAIN_FAMILY(BoolVector, int32_t, 7, -1)
TVAPIC_PLAIN_FAMILY(ColorVector, int32_t, 0x00ff8040, -16777216)
TVAPIC_PLAIN_FAMILY(EnumVector, int32_t, 3, std::numeric_limits<int32_t>::min())
TVAPIC_PLAIN_FAMILY(Int32Vector, int32_t, -42, std::numeric_limits<int32_t>::max())
TVAPIC_PLAIN_FAMILY(Uint32Vector, uint32_t, 0xffffffffu, 17u)
TVAPIC_PLAIN_FAMILY(FloatVector, float, 0.1f, -3.25e38f)
TVAPIC_PLAIN_FAMILY(DoubleVector, double, 0.1, -1e300)
TVAPIC_PLAIN_FAMILY(NumericIdVector, uint64_t, 0xffffffffffffffffull, 1ull << 40)
TVAPIC_PLAIN_FAMILY(Uint8Vector, uint8_t, 255, 0)
TVAPIC_PLAIN_FAMILY(ObjectReferenceVector, void*, &anchor_a, &anchor_b)

template <class Ops>
class PlainVectorTest : public ::testing::Test {};

using PlainFamilies =
    ::testing::Types<BoolVectorOps, ColorVectorOps, EnumVectorOps, Int32VectorOps, Uint32VectorOps, FloatVectorOps,
                     DoubleVectorOps, NumericIdVectorOps, Uint8VectorOps, ObjectReferenceVectorOps>;
TYPED_TEST_SUITE(PlainVectorTest, PlainFamilies);

TYPED_TEST(PlainVectorTest, NullVectorReadsZeroAndIgnoresWrites) {
    using Ops = TypeParam;
    EXPECT_EQ(Ops::Get(nullptr, 7), typename Ops::Value{});
    Ops::Set(nullptr, 0, Ops::First());
    Ops::Clear(nullptr);
    Ops::Delete(nullptr);
}

TYPED_TEST(PlainVectorTest, ElementsRoundTripBitForBitAndAreVisibleInData) {
    using Ops = TypeParam;
    auto* v = Ops::Create(3);
    ASSERT_NE(v, nullptr);
    EXPECT_EQ(v->size, 3u);
    ASSERT_NE(v->data, nullptr);
    Ops::Set(v, 0, Ops::First());
    Ops::Set(v, 1, Ops::Second());
    Ops::Set(v, 2, Ops::First());
    EXPECT_EQ(Ops::Get(v, 0), Ops::First());
    EXPECT_EQ(Ops::Get(v, 1), Ops::Second());
    EXPECT_EQ(v->data[1], Ops::Second());  // callers read the block directly
    Ops::Set(v, 0, Ops::Second());
    EXPECT_EQ(Ops::Get(v, 0), Ops::Second());
    EXPECT_EQ(Ops::Get(v, 2), Ops::First());
    Ops::Delete(v);
}

TYPED_TEST(PlainVectorTest, ClearDropsTheBlockAndKeepsTheHeader) {
    using Ops = TypeParam;
    auto* v = Ops::Create(3);
    Ops::Clear(v);
    EXPECT_EQ(v->size, 0u);
    EXPECT_EQ(v->data, nullptr);
    Ops::Clear(v);   // nothing left to free
    Ops::Delete(v);  // releases the header only
}

TEST(ScalarVectorTest, BoolElementsAreNotNormalised) {
    BoolVector_t* v = BoolVector_Create(2);
    BoolVector_Set(v, 0, 2);
    BoolVector_Set(v, 1, 5);
    EXPECT_EQ(BoolVector_Get(v, 0), 2);
    EXPECT_EQ(BoolVector_Get(v, 1), 5);
    BoolVector_Delete(v);
}

// ---- Vector of byte vectors: owns its elements.

TEST(Uint8VectorVectorTest, ClearDeletesEveryElementAndKeepsTheOldBlockAddress) {
    Uint8VectorVector_t* v = Uint8VectorVector_Create(3);
    Uint8Vector_t* a = Uint8Vector_Create(4);
    Uint8Vector_t* b = Uint8Vector_Create(0);
    Uint8VectorVector_Set(v, 0, a);
    Uint8VectorVector_Set(v, 1, nullptr);
    Uint8VectorVector_Set(v, 2, b);
    EXPECT_EQ(Uint8VectorVector_Get(v, 0), a);
    EXPECT_EQ(Uint8VectorVector_Get(v, 1), nullptr);

    Uint8Vector_t** block = v->data;
    Uint8VectorVector_Clear(v);  // a and b go; the sanitiser build sees any leak
    EXPECT_EQ(v->size, 0u);
    EXPECT_EQ(v->data, block);

    // The kept address is already freed: a later Delete would free it again.
    v->data = nullptr;
    Uint8VectorVector_Delete(v);
}

TEST(Uint8VectorVectorTest, SetTakesOverTheNewElementAndLeavesTheOldOne) {
    Uint8VectorVector_t* v = Uint8VectorVector_Create(1);
    Uint8Vector_t* first = Uint8Vector_Create(1);
    Uint8Vector_t* second = Uint8Vector_Create(1);
    Uint8Vector_Set(first, 0, 9);
    Uint8VectorVector_Set(v, 0, first);
    Uint8VectorVector_Set(v, 0, second);
    EXPECT_EQ(Uint8VectorVector_Get(v, 0), second);
    EXPECT_EQ(Uint8Vector_Get(first, 0), 9);  // still alive: still the caller's
    Uint8Vector_Delete(first);
    Uint8VectorVector_Delete(v);  // deletes second
}

// ---- String vectors.

tvapi::WString Text(const tvWChar* s) { return s; }

TEST(StringVectorTest, SetStoresAnIndependentCopy) {
    StringVector_t* v = StringVector_Create(1);
    tvWChar caller[] = TVAPIC_TEXT("ab");
    StringVector_Set(v, 0, caller);
    tvWChar* stored = StringVector_Get(v, 0);
    EXPECT_NE(stored, caller);
    caller[0] = TVAPIC_TEXT('x');
    EXPECT_EQ(Text(stored), TVAPIC_TEXT("ab"));
    EXPECT_EQ(StringVector_Get(v, 0), stored);  // the stored pointer, not a copy
    EXPECT_EQ(v->data[0], stored);
    StringVector_Delete(v);
}

TEST(StringVectorTest, CopyBlockHoldsEightBytesPerUnit) {
    StringVector_t* v = StringVector_Create(2);
    const tvWChar* text = TVAPIC_TEXT("fifteen units..");  // 15 units: 128 bytes, not 32
    StringVector_Set(v, 0, text);
    StringVector_Set(v, 1, TVAPIC_TEXT(""));
    EXPECT_EQ(Text(StringVector_Get(v, 0)), text);
    EXPECT_EQ(Text(StringVector_Get(v, 1)), TVAPIC_TEXT(""));
#if defined(__GLIBC__)
    EXPECT_GE(malloc_usable_size(StringVector_Get(v, 0)), 16u * 8u);
#elif defined(_WIN32)
    EXPECT_GE(_msize(StringVector_Get(v, 0)), 16u * 8u);
#endif
    StringVector_Delete(v);
}

TEST(StringVectorTest, SettingASlotAgainDoesNotFreeTheEarlierCopy) {
    StringVector_t* v = StringVector_Create(1);
    StringVector_Set(v, 0, TVAPIC_TEXT("old"));
    tvWChar* old = StringVector_Get(v, 0);
    StringVector_Set(v, 0, TVAPIC_TEXT("new"));
    EXPECT_NE(StringVector_Get(v, 0), old);
    EXPECT_EQ(Text(old), TVAPIC_TEXT("old"));  // still readable: nobody freed it
    c_heap::Free(old);
    StringVector_Delete(v);
}

TEST(StringVectorTest, ClearFreesTheTextsAndKeepsTheOldBlockAddress) {
    StringVector_t* v = StringVector_Create(2);
    StringVector_Set(v, 0, TVAPIC_TEXT("a long enough text to live on the heap"));
    StringVector_Set(v, 1, TVAPIC_TEXT("b"));
    tvWChar** block = v->data;
    StringVector_Clear(v);
    EXPECT_EQ(v->size, 0u);
    EXPECT_EQ(v->data, block);
    v->data = nullptr;  // see Uint8VectorVectorTest: avoid freeing it twice
    StringVector_Delete(v);
}

TEST(StringVectorTest, VectorOfVectorsDeletesEverythingItHolds) {
    StringVector_t* inner = StringVector_Create(2);
    StringVector_Set(inner, 0, TVAPIC_TEXT("first"));
    StringVector_Set(inner, 1, TVAPIC_TEXT("second"));
    StringVectorVector_t* outer = StringVectorVector_Create(2);
    StringVectorVector_Set(outer, 0, inner);
    StringVectorVector_Set(outer, 1, nullptr);
    EXPECT_EQ(StringVectorVector_Get(outer, 0), inner);
    StringVectorVector_Delete(outer);  // the leak check of the sanitiser build
}

TEST(OwningVectorTest, NullVectorsAreIgnored) {
    EXPECT_EQ(Uint8VectorVector_Get(nullptr, 0), nullptr);
    EXPECT_EQ(StringVector_Get(nullptr, 0), nullptr);
    EXPECT_EQ(StringVectorVector_Get(nullptr, 0), nullptr);
    EXPECT_EQ(ObjectReferenceVectorVector_Get(nullptr, 3), nullptr);
    Uint8VectorVector_Set(nullptr, 0, nullptr);
    StringVector_Set(nullptr, 0, TVAPIC_TEXT("x"));
    Uint8VectorVector_Clear(nullptr);
    StringVector_Clear(nullptr);
    StringVectorVector_Clear(nullptr);
    ObjectReferenceVectorVector_Clear(nullptr);
    Uint8VectorVector_Delete(nullptr);
    StringVector_Delete(nullptr);
    StringVectorVector_Delete(nullptr);
    ObjectReferenceVectorVector_Delete(nullptr);
}

// ---- Object reference vectors.

// Counts its references; a vector must never touch them.
class CountedObject : public tvapi::IAPIObject {
public:
    void HostReserved() override {}
    int AddRef() override { return ++refs; }
    int Release() override { return --refs; }
    void* QueryInterface(const char*) override { return nullptr; }
    int refs = 1;
};

TEST(ObjectReferenceVectorTest, HandlesAreStoredWithoutReferences) {
    CountedObject object;
    ObjectReferenceVector_t* v = ObjectReferenceVector_Create(2);
    ObjectReferenceVector_Set(v, 0, &object);
    ObjectReferenceVector_Set(v, 1, nullptr);
    EXPECT_EQ(ObjectReferenceVector_Get(v, 0), &object);
    EXPECT_EQ(ObjectReferenceVector_Get(v, 1), nullptr);
    ObjectReferenceVector_Delete(v);
    EXPECT_EQ(object.refs, 1);
}

TEST(ObjectReferenceVectorTest, VectorOfVectorsOwnsTheInnerVectorsButNoObject) {
    CountedObject object;
    ObjectReferenceVector_t* inner = ObjectReferenceVector_Create(1);
    ObjectReferenceVector_Set(inner, 0, &object);
    ObjectReferenceVectorVector_t* outer = ObjectReferenceVectorVector_Create(2);
    ObjectReferenceVectorVector_Set(outer, 0, nullptr);
    ObjectReferenceVectorVector_Set(outer, 1, inner);
    EXPECT_EQ(ObjectReferenceVectorVector_Get(outer, 1), inner);

    ObjectReferenceVector_t** block = outer->data;
    ObjectReferenceVectorVector_Clear(outer);
    EXPECT_EQ(outer->size, 0u);
    EXPECT_EQ(outer->data, block);
    EXPECT_EQ(object.refs, 1);
    outer->data = nullptr;
    ObjectReferenceVectorVector_Delete(outer);
}

// ---- Vectors of value handles.

TEST(ValueVectorTest, PropertyValueVectorNeverDeletesItsHandles) {
    PropertyValue_t* a = PropertyValue_Create();
    PropertyValue_t* b = PropertyValue_Create();
    PropertyValue_SetInt(a, 11);
    PropertyValue_SetInt(b, 22);
    PropertyValueVector_t* v = PropertyValueVector_Create(2);
    PropertyValueVector_Set(v, 0, a);
    PropertyValueVector_Set(v, 1, b);
    EXPECT_EQ(PropertyValueVector_Get(v, 1), b);
    PropertyValueVector_Delete(v);
    EXPECT_EQ(PropertyValue_GetInt(a), 11);
    EXPECT_EQ(PropertyValue_GetInt(b), 22);
    PropertyValue_Delete(a);
    PropertyValue_Delete(b);
}

TEST(ValueVectorTest, PropertyValueVectorClearKeepsTheOldBlockAddress) {
    PropertyValue_t* h = PropertyValue_Create();
    PropertyValueVector_t* v = PropertyValueVector_Create(1);
    PropertyValueVector_Set(v, 0, h);
    PropertyValue_t** block = v->data;
    PropertyValueVector_Clear(v);
    EXPECT_EQ(v->size, 0u);
    EXPECT_EQ(v->data, block);
    v->data = nullptr;
    PropertyValueVector_Delete(v);
    PropertyValue_Delete(h);

    EXPECT_EQ(PropertyValueVector_Get(nullptr, 0), nullptr);
    PropertyValueVector_Set(nullptr, 0, nullptr);
    PropertyValueVector_Clear(nullptr);
    PropertyValueVector_Delete(nullptr);
}

TEST(ValueVectorTest, AttributeAndStorageFamiliesHoldNothing) {
    EXPECT_EQ(AttributeValueVector_Create(5), nullptr);
    EXPECT_EQ(StorageValueVector_Create(5), nullptr);
    EXPECT_EQ(AttributeValueVector_Get(nullptr, 0), nullptr);
    EXPECT_EQ(StorageValueVector_Get(nullptr, 0), nullptr);

    // Vectors laid out by hand on the stack: Set and Delete must leave them
    // alone (freeing a stack block would abort the sanitiser build).
    auto* marker_a = reinterpret_cast<AttributeValue_t*>(&anchor_a);
    auto* marker_s = reinterpret_cast<StorageValue_t*>(&anchor_b);
    AttributeValue_t* attribute_slots[1] = {marker_a};
    StorageValue_t* storage_slots[1] = {marker_s};
    AttributeValueVector_t attributes{1, attribute_slots};
    StorageValueVector_t storage{1, storage_slots};

    EXPECT_EQ(AttributeValueVector_Get(&attributes, 0), marker_a);
    EXPECT_EQ(StorageValueVector_Get(&storage, 0), nullptr);
    AttributeValueVector_Set(&attributes, 0, nullptr);
    StorageValueVector_Set(&storage, 0, nullptr);
    AttributeValueVector_Delete(&attributes);
    StorageValueVector_Delete(&storage);
    EXPECT_EQ(attributes.size, 1u);
    EXPECT_EQ(attribute_slots[0], marker_a);
    EXPECT_EQ(storage.data, storage_slots);
    EXPECT_EQ(storage_slots[0], marker_s);
}

}  // namespace
