// Converters between C vectors and host sequences.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "containers/convert.h"
#include "tvAPIC.h"
#include "tvapi/core.h"
#include "tvapi/values.h"

namespace {

using tvapi::SmartPtr;
using tvapi::WString;
using namespace tvapic::containers;

class IShape : public tvapi::IAPIObject {
public:
    virtual int Corners() = 0;

protected:
    ~IShape() = default;
};

}  // namespace

template <>
struct tvapi::IAPIObjectIID<IShape> {
    static constexpr char text[37] = "0badf00d-0000-4000-8000-000000000001";
};

namespace {

// A host object that counts its references and can be told to lack an
// interface or to fail its query.
class Shape : public IShape {
public:
    void HostReserved() override {}
    int AddRef() override { return ++refs; }
    int Release() override { return --refs; }
    void* QueryInterface(const char* iid) override {
        asked = iid;
        if (throws) throw std::runtime_error("query failed");
        if (is_shape && asked == tvapi::IAPIObjectIID<IShape>::text) return static_cast<IShape*>(this);
        if (has_object_face && asked == tvapi::IAPIObjectIID<tvapi::IAPIObject>::text)
            return static_cast<tvapi::IAPIObject*>(this);
        return nullptr;
    }
    int Corners() override { return 4; }

    int refs = 1;
    bool is_shape = true;
    bool has_object_face = true;
    bool throws = false;
    std::string asked;
};

using Shapes = std::vector<SmartPtr<IShape>>;

WString Text(const tvWChar* s) { return s; }

// ---- Argument conversion.

TEST(ToHostTest, NullVectorsAreEmptyLists) {
    EXPECT_TRUE(ToHost<double>(static_cast<DoubleVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<bool>(static_cast<BoolVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<WString>(static_cast<StringVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<SmartPtr<IShape>>(static_cast<ObjectReferenceVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<Shapes>(static_cast<ObjectReferenceVectorVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<tvapi::PropertyValue>(static_cast<PropertyValueVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<tvapi::StorageValue>(static_cast<StorageValueVector_t*>(nullptr)).empty());
}

// The header claims more elements than the host sequence can hold; data is
// null, so the check must come before any element is read.
template <class X, class CV>
void ExpectTooLong(std::uint64_t size, const char* message) {
    CV fake{size, nullptr};
    try {
        ToHost<X>(&fake);
        ADD_FAILURE() << "no length error for size " << size;
    } catch (const std::length_error& e) {
        EXPECT_STREQ(e.what(), message);
    }
}

TEST(ToHostTest, OverlongVectorsRaiseTheLengthErrorBeforeReading) {
    ExpectTooLong<bool, BoolVector_t>(0x8000000000000000ull, "vector<bool> too long");
    ExpectTooLong<std::int32_t, Int32Vector_t>(0x4000000000000000ull, "vector too long");
    ExpectTooLong<float, FloatVector_t>(0x4000000000000000ull, "vector too long");
    ExpectTooLong<double, DoubleVector_t>(0x2000000000000000ull, "vector too long");
    ExpectTooLong<std::uint64_t, NumericIdVector_t>(0x2000000000000000ull, "vector too long");
    ExpectTooLong<std::uint8_t, Uint8Vector_t>(0x8000000000000000ull, "vector too long");
    ExpectTooLong<WString, StringVector_t>(0x0800000000000000ull, "vector too long");
    ExpectTooLong<SmartPtr<IShape>, ObjectReferenceVector_t>(0x2000000000000000ull, "vector too long");
    ExpectTooLong<tvapi::PropertyValue, PropertyValueVector_t>(0x2000000000000000ull, "vector too long");
    ExpectTooLong<double, DoubleVector_t>(~0ull, "vector too long");
}

TEST(ToHostTest, ScalarsAreCopiedAndFlagsUnpacked) {
    std::int32_t words[] = {0, 5, -1};
    BoolVector_t flags{3, words};
    EXPECT_EQ(ToHost<bool>(&flags), (std::vector<bool>{false, true, true}));

    ColorVector_t colours{3, words};
    EXPECT_EQ(ToHost<std::uint32_t>(&colours), (std::vector<std::uint32_t>{0, 5, 0xffffffffu}));

    double reals[] = {0.5, -2.0};
    DoubleVector_t d{2, reals};
    EXPECT_EQ(ToHost<double>(&d), (std::vector<double>{0.5, -2.0}));

    std::uint8_t bytes[] = {0, 255};
    Uint8Vector_t b{2, bytes};
    EXPECT_EQ(ToHost<std::uint8_t>(&b), (std::vector<std::uint8_t>{0, 255}));
}

TEST(ToHostTest, TextsAreCopiedAndANullTextIsEmpty) {
    tvWChar a[] = TVAPIC_TEXT("alpha");
    tvWChar* texts[] = {a, nullptr};
    StringVector_t v{2, texts};
    const std::vector<WString> host = ToHost<WString>(&v);
    a[0] = TVAPIC_TEXT('A');
    EXPECT_EQ(host, (std::vector<WString>{WString(TVAPIC_TEXT("alpha")), WString()}));
}

TEST(ToHostTest, ObjectsAreQueriedAndNullOrMissingInterfacesArriveAsNull) {
    Shape shape, plain;
    plain.is_shape = false;
    void* handles[] = {&shape, nullptr, &plain};
    ObjectReferenceVector_t v{3, handles};
    {
        const Shapes host = ToHost<SmartPtr<IShape>>(&v);
        ASSERT_EQ(host.size(), 3u);
        EXPECT_EQ(host[0].get(), static_cast<IShape*>(&shape));
        EXPECT_EQ(host[1].get(), nullptr);
        EXPECT_EQ(host[2].get(), nullptr);
        EXPECT_EQ(shape.asked, tvapi::IAPIObjectIID<IShape>::text);
        EXPECT_EQ(shape.refs, 2);  // the host sequence holds its own
        EXPECT_EQ(plain.refs, 1);
    }
    EXPECT_EQ(shape.refs, 1);
}

TEST(ToHostTest, AFailingQueryGivesBackWhatWasAlreadyConverted) {
    Shape first, second;
    second.throws = true;
    void* handles[] = {&first, &second};
    ObjectReferenceVector_t v{2, handles};
    EXPECT_THROW(ToHost<SmartPtr<IShape>>(&v), std::runtime_error);
    EXPECT_EQ(first.refs, 1);
    EXPECT_EQ(second.refs, 1);
}

TEST(ToHostTest, VectorOfObjectVectorsConvertsEachInnerVector) {
    Shape shape;
    void* inner_handles[] = {&shape};
    ObjectReferenceVector_t inner{1, inner_handles};
    ObjectReferenceVector_t* outer_slots[] = {&inner, nullptr};
    ObjectReferenceVectorVector_t outer{2, outer_slots};
    const std::vector<Shapes> host = ToHost<Shapes>(&outer);
    ASSERT_EQ(host.size(), 2u);
    ASSERT_EQ(host[0].size(), 1u);
    EXPECT_EQ(host[0][0]->Corners(), 4);
    EXPECT_TRUE(host[1].empty());
}

TEST(ToHostTest, ValuesAreCopiedFromTheirHandles) {
    PropertyValue_t* number = PropertyValue_Create();
    PropertyValue_SetInt(number, 12);
    PropertyValue_t* slots[] = {number, nullptr};
    PropertyValueVector_t v{2, slots};
    const std::vector<tvapi::PropertyValue> host = ToHost<tvapi::PropertyValue>(&v);
    PropertyValue_SetInt(number, 13);
    ASSERT_EQ(host.size(), 2u);
    EXPECT_EQ(host[0].GetInt(), 12);
    EXPECT_EQ(host[1].GetValueType(), tvapi::PropertyValue::Empty);
    PropertyValue_Delete(number);

    const tvapi::AttributeValue cell(WString(TVAPIC_TEXT("cell")));
    AttributeValue_t* attribute = NewValueHandle<AttributeValue_t>(&cell);
    AttributeValue_t* attribute_slots[] = {attribute};
    AttributeValueVector_t attributes{1, attribute_slots};
    EXPECT_EQ(ToHost<tvapi::AttributeValue>(&attributes).at(0).Text(), WString(TVAPIC_TEXT("cell")));
    ReleaseHostValue(attribute->value);  // a short text: nothing on the heap
    delete attribute;

    // Storage value elements cannot be read from C: each is the empty value.
    StorageValue_t* storage_slots[] = {nullptr};
    StorageValueVector_t storage{1, storage_slots};
    EXPECT_TRUE(ToHost<tvapi::StorageValue>(&storage).at(0).Text().empty());
}

// ---- Result conversion.

TEST(NewVectorTest, ScalarsAreCopiedAsOneBlock) {
    DoubleVector_t* d = NewVector<DoubleVector_t>(std::vector<double>{1.5, -0.25, 8.0});
    ASSERT_EQ(d->size, 3u);
    EXPECT_EQ(d->data[0], 1.5);
    EXPECT_EQ(d->data[2], 8.0);
    DoubleVector_Delete(d);

    Int32Vector_t* empty = NewVector<Int32Vector_t>(std::vector<std::int32_t>{});
    EXPECT_EQ(empty->size, 0u);
    Int32Vector_Delete(empty);

    Uint8Vector_t* bytes = NewVector<Uint8Vector_t>(std::vector<std::uint8_t>{7, 0, 255});
    EXPECT_EQ(Uint8Vector_Get(bytes, 2), 255);
    Uint8Vector_Delete(bytes);
}

TEST(NewVectorTest, PackedFlagsBecomeZeroOrOnePerElement) {
    BoolVector_t* v = NewVector<BoolVector_t>(std::vector<bool>{true, false, true});
    ASSERT_EQ(v->size, 3u);
    EXPECT_EQ(v->data[0], 1);
    EXPECT_EQ(v->data[1], 0);
    EXPECT_EQ(v->data[2], 1);
    BoolVector_Delete(v);

    // Across the 32-bit words of the packed form.
    std::vector<bool> many(70);
    for (std::size_t i = 0; i < many.size(); ++i) many[i] = i % 3 == 0;
    v = NewVector<BoolVector_t>(many);
    for (std::size_t i = 0; i < many.size(); ++i) EXPECT_EQ(v->data[i], i % 3 == 0 ? 1 : 0) << i;
    BoolVector_Delete(v);
}

TEST(NewVectorTest, TextsAreCopiedWhole) {
    const WString with_zero{TVAPIC_TEXT('x'), 0, TVAPIC_TEXT('y')};
    StringVector_t* v = NewVector<StringVector_t>(std::vector<WString>{WString(TVAPIC_TEXT("one")), WString(), with_zero});
    ASSERT_EQ(v->size, 3u);
    EXPECT_EQ(Text(v->data[0]), TVAPIC_TEXT("one"));
    EXPECT_EQ(Text(v->data[1]), TVAPIC_TEXT(""));
    EXPECT_EQ(v->data[2][2], TVAPIC_TEXT('y'));  // units are copied by count, past the zero
    EXPECT_EQ(v->data[2][3], 0);
    StringVector_Delete(v);
}

TEST(NewVectorTest, ObjectsCarryOneReferenceForTheCaller) {
    Shape a, b, c;
    {
        const Shapes host{SmartPtr<IShape>(&a), SmartPtr<IShape>(&b), SmartPtr<IShape>(&c)};
        ObjectReferenceVector_t* v = NewVector<ObjectReferenceVector_t>(host);
        ASSERT_EQ(v->size, 3u);
        EXPECT_EQ(v->data[0], static_cast<tvapi::IAPIObject*>(&a));
        EXPECT_EQ(v->data[2], static_cast<tvapi::IAPIObject*>(&c));
        EXPECT_EQ(a.asked, tvapi::IAPIObjectIID<tvapi::IAPIObject>::text);
        EXPECT_EQ(b.refs, 3);  // the caller's, the host sequence's and the test's own
        for (std::uint64_t i = 0; i < v->size; ++i) static_cast<tvapi::IAPIObject*>(v->data[i])->Release();
        ObjectReferenceVector_Delete(v);
    }
    EXPECT_EQ(a.refs, 1);
    EXPECT_EQ(b.refs, 1);
    EXPECT_EQ(c.refs, 1);
}

TEST(NewVectorTest, NullAndFacelessObjectsAreStoredAsNull) {
    Shape faceless;
    faceless.has_object_face = false;
    {
        const Shapes host{SmartPtr<IShape>(), SmartPtr<IShape>(&faceless)};
        ObjectReferenceVector_t* v = NewVector<ObjectReferenceVector_t>(host);
        EXPECT_EQ(v->data[0], nullptr);
        EXPECT_EQ(v->data[1], nullptr);
        ObjectReferenceVector_Delete(v);
    }
    // The reference gained before the failed query stays with the object.
    EXPECT_EQ(faceless.refs, 2);
}

TEST(NewVectorTest, PropertyValuesBecomeNewHandlesWithCopies) {
    std::vector<tvapi::PropertyValue> host(2);
    host[0].SetDouble(0.5);
    host[1].SetString(WString(TVAPIC_TEXT("short")));
    PropertyValueVector_t* v = NewVector<PropertyValueVector_t>(host);
    host[0].SetDouble(9.0);
    ASSERT_EQ(v->size, 2u);
    EXPECT_EQ(PropertyValue_GetDouble(v->data[0]), 0.5);
    EXPECT_EQ(v->data[1]->value->GetString(), WString(TVAPIC_TEXT("short")));
    for (std::uint64_t i = 0; i < v->size; ++i) PropertyValue_Delete(v->data[i]);
    PropertyValueVector_Delete(v);
}

TEST(RefillTest, ReplacesContentsAndFreesTheOldOnes) {
    DoubleVector_t* d = DoubleVector_Create(2);
    Refill(d, std::vector<double>{4.0, 5.0, 6.0});
    ASSERT_EQ(d->size, 3u);
    EXPECT_EQ(d->data[2], 6.0);
    DoubleVector_Delete(d);

    // The old texts are freed by the refill (the sanitiser build checks it).
    StringVector_t* s = StringVector_Create(2);
    StringVector_Set(s, 0, TVAPIC_TEXT("an old text that lives on the heap"));
    StringVector_Set(s, 1, TVAPIC_TEXT("another old text on the heap"));
    Refill(s, std::vector<WString>{WString(TVAPIC_TEXT("new"))});
    ASSERT_EQ(s->size, 1u);
    EXPECT_EQ(Text(StringVector_Get(s, 0)), TVAPIC_TEXT("new"));
    StringVector_Delete(s);

    BoolVector_t* b = BoolVector_Create(1);
    Refill(b, std::vector<bool>{false, true});
    EXPECT_EQ(BoolVector_Get(b, 1), 1);
    BoolVector_Delete(b);
}

TEST(RefillTest, NullVectorDropsTheResult) {
    Refill(static_cast<DoubleVector_t*>(nullptr), std::vector<double>{1.0});
    Refill(static_cast<StringVector_t*>(nullptr), std::vector<WString>{WString(TVAPIC_TEXT("dropped"))});
    Shape shape;
    Refill(static_cast<ObjectReferenceVector_t*>(nullptr), Shapes{SmartPtr<IShape>(&shape)});
    EXPECT_EQ(shape.refs, 1);
}

}  // namespace
