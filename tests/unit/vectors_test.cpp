// The exported C vector families, driven as a C caller drives them.
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "common/c_heap.h"
#include "tvAPIC.h"
#include "tvapi/core.h"

namespace {

// ---- Plain families: one typed suite over every family with the plain clear.

#define TVAPIC_PLAIN_FAMILY(F, V, A, B)                                   \
    struct F##Ops {                                                       \
        using Vec = F##_t;                                                \
        using Value = V;                                                  \
        static constexpr auto Create = F##_Create;                        \
        static constexpr auto Get = F##_Get;                              \
        static constexpr auto Set = F##_Set;                              \
        static constexpr auto Clear = F##_Clear;                          \
        static constexpr auto Delete = F##_Delete;                        \
        static Value First() { return A; }                                \
        static Value Second() { return B; }                               \
    };

int anchor_a, anchor_b;  // addresses that stand for object handles

TVAPIC_PLAIN_FAMILY(BoolVector, int32_t, 7, -1)  // flags are kept as given, not made 0 or 1
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

TYPED_TEST(PlainVectorTest, ElementsRoundTripBitForBitAndClearDropsTheBlock) {
    using Ops = TypeParam;
    EXPECT_EQ(Ops::Get(nullptr, 7), typename Ops::Value{});
    Ops::Set(nullptr, 0, Ops::First());
    Ops::Clear(nullptr);
    Ops::Delete(nullptr);

    auto* v = Ops::Create(3);
    ASSERT_EQ(v->size, 3u);
    Ops::Set(v, 0, Ops::First());
    Ops::Set(v, 1, Ops::Second());
    Ops::Set(v, 2, Ops::First());
    EXPECT_EQ(Ops::Get(v, 0), Ops::First());
    EXPECT_EQ(v->data[1], Ops::Second());  // callers read the block directly
    EXPECT_EQ(Ops::Get(v, 2), Ops::First());
    Ops::Clear(v);
    EXPECT_EQ(v->size, 0u);
    EXPECT_EQ(v->data, nullptr);
    Ops::Delete(v);  // the header only
}

// ---- Families that own their elements: the clear deletes them, and keeps
// the freed block's address (so a cleared vector is not deleted again).

TEST(OwningVectors, ClearDeletesTheElementsAndKeepsTheBlockAddress) {
    Uint8VectorVector_t* bytes = Uint8VectorVector_Create(2);
    Uint8VectorVector_Set(bytes, 0, Uint8Vector_Create(4));
    Uint8VectorVector_Set(bytes, 1, nullptr);
    StringVector_t* texts = StringVector_Create(1);
    StringVector_Set(texts, 0, TVAPIC_TEXT("a text long enough to live on the heap"));
    StringVectorVector_t* lists = StringVectorVector_Create(1);
    StringVectorVector_Set(lists, 0, StringVector_Create(0));
    ObjectReferenceVectorVector_t* objects = ObjectReferenceVectorVector_Create(1);
    ObjectReferenceVectorVector_Set(objects, 0, ObjectReferenceVector_Create(1));

    auto check = [](auto* v, auto clear, auto remove) {
        const void* block = v->data;
        clear(v);
        EXPECT_EQ(v->size, 0u);
        EXPECT_EQ(v->data, block);
        v->data = nullptr;  // already freed
        remove(v);
    };
    check(bytes, Uint8VectorVector_Clear, Uint8VectorVector_Delete);
    check(texts, StringVector_Clear, StringVector_Delete);
    check(lists, StringVectorVector_Clear, StringVectorVector_Delete);
    check(objects, ObjectReferenceVectorVector_Clear, ObjectReferenceVectorVector_Delete);

    EXPECT_EQ(StringVector_Get(nullptr, 0), nullptr);
    EXPECT_EQ(ObjectReferenceVectorVector_Get(nullptr, 3), nullptr);
    StringVector_Set(nullptr, 0, TVAPIC_TEXT("x"));
    Uint8VectorVector_Delete(nullptr);
    StringVectorVector_Clear(nullptr);
}

TEST(OwningVectors, SetTakesOverTheNewElementAndLeavesTheOldOne) {
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

TEST(StringVectors, SetStoresAnIndependentCopyAndLeavesTheEarlierOne) {
    StringVector_t* v = StringVector_Create(1);
    tvWChar caller[] = TVAPIC_TEXT("ab");
    StringVector_Set(v, 0, caller);
    tvWChar* stored = StringVector_Get(v, 0);
    EXPECT_NE(stored, caller);
    caller[0] = TVAPIC_TEXT('x');
    EXPECT_EQ(tvapi::WString(stored), TVAPIC_TEXT("ab"));
    EXPECT_EQ(StringVector_Get(v, 0), stored);  // the stored pointer, not a copy
    StringVector_Set(v, 0, TVAPIC_TEXT("new"));
    EXPECT_EQ(tvapi::WString(stored), TVAPIC_TEXT("ab"));  // not freed: still the caller's to free
    c_heap::Free(stored);
    StringVector_Delete(v);
}

// ---- Handles in vectors are never referenced, released or deleted.

class CountedObject : public tvapi::IAPIObject {
public:
    void HostReserved() override {}
    int AddRef() override { return ++refs; }
    int Release() override { return --refs; }
    void* QueryInterface(const char*) override { return nullptr; }
    int refs = 1;
};

TEST(HandleVectors, HoldHandlesWithoutOwningThem) {
    CountedObject object;
    ObjectReferenceVector_t* inner = ObjectReferenceVector_Create(1);
    ObjectReferenceVector_Set(inner, 0, &object);
    ObjectReferenceVectorVector_t* outer = ObjectReferenceVectorVector_Create(1);
    ObjectReferenceVectorVector_Set(outer, 0, inner);
    EXPECT_EQ(ObjectReferenceVectorVector_Get(outer, 0), inner);
    ObjectReferenceVectorVector_Delete(outer);
    EXPECT_EQ(object.refs, 1);

    PropertyValue_t* value = PropertyValue_Create();
    PropertyValue_SetInt(value, 11);
    PropertyValueVector_t* values = PropertyValueVector_Create(1);
    PropertyValueVector_Set(values, 0, value);
    EXPECT_EQ(PropertyValueVector_Get(values, 0), value);
    PropertyValueVector_Delete(values);
    EXPECT_EQ(PropertyValue_GetInt(value), 11);
    PropertyValue_Delete(value);
}

TEST(HandleVectors, AttributeAndStorageFamiliesHoldNothing) {
    EXPECT_EQ(AttributeValueVector_Create(5), nullptr);
    EXPECT_EQ(StorageValueVector_Create(5), nullptr);
    StorageValue_t* slots[1] = {reinterpret_cast<StorageValue_t*>(&anchor_b)};
    StorageValueVector_t storage{1, slots};
    EXPECT_EQ(StorageValueVector_Get(&storage, 0), nullptr);
    StorageValueVector_Delete(&storage);  // leaves a vector laid out by hand alone
    EXPECT_EQ(storage.data, slots);
}

}  // namespace
