// Converters between C vectors and host sequences.
#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "containers/convert.h"
#include "tvAPIC.h"
#include "tvapi/values.h"
#include "unit/shape.h"

namespace {

using tvapi::SmartPtr;
using tvapi::WString;
using namespace tvapic::containers;
using Shapes = std::vector<SmartPtr<IShape>>;

// ---- Argument conversion.

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

TEST(ToHost, OverlongVectorsRaiseTheLengthErrorBeforeReading) {
    ExpectTooLong<bool, BoolVector_t>(0x8000000000000000ull, "vector<bool> too long");
    ExpectTooLong<std::int32_t, Int32Vector_t>(0x4000000000000000ull, "vector too long");
    ExpectTooLong<double, DoubleVector_t>(0x2000000000000000ull, "vector too long");
    ExpectTooLong<std::uint8_t, Uint8Vector_t>(0x8000000000000000ull, "vector too long");
    ExpectTooLong<WString, StringVector_t>(0x0800000000000000ull, "vector too long");
    ExpectTooLong<SmartPtr<IShape>, ObjectReferenceVector_t>(0x2000000000000000ull, "vector too long");
}

TEST(ToHost, NullIsEmptyScalarsAreCopiedFlagsUnpackedAndNullTextsEmpty) {
    EXPECT_TRUE(ToHost<double>(static_cast<DoubleVector_t*>(nullptr)).empty());
    EXPECT_TRUE(ToHost<Shapes>(static_cast<ObjectReferenceVectorVector_t*>(nullptr)).empty());
    std::int32_t words[] = {0, 5, -1};
    BoolVector_t flags{3, words};
    EXPECT_EQ(ToHost<bool>(&flags), (std::vector<bool>{false, true, true}));
    ColorVector_t colours{3, words};
    EXPECT_EQ(ToHost<std::uint32_t>(&colours), (std::vector<std::uint32_t>{0, 5, 0xffffffffu}));
    tvWChar a[] = TVAPIC_TEXT("alpha");
    tvWChar* texts[] = {a, nullptr};
    StringVector_t v{2, texts};
    EXPECT_EQ(ToHost<WString>(&v), (std::vector<WString>{WString(TVAPIC_TEXT("alpha")), WString()}));
}

TEST(ToHost, ObjectsAreQueriedAndHeldAndNullOrMissingInterfacesArriveAsNull) {
    Shape shape, plain;
    plain.is_shape = false;
    void* handles[] = {shape.face(), nullptr, plain.face()};
    ObjectReferenceVector_t v{3, handles};
    ObjectReferenceVector_t* outer_slots[] = {&v};
    ObjectReferenceVectorVector_t outer{1, outer_slots};
    {
        const Shapes host = ToHost<SmartPtr<IShape>>(&v);
        ASSERT_EQ(host.size(), 3u);
        EXPECT_EQ(host[0].get(), static_cast<IShape*>(&shape));
        EXPECT_EQ(host[1].get(), nullptr);
        EXPECT_EQ(host[2].get(), nullptr);
        EXPECT_EQ(shape.asked, tvapi::IAPIObjectIID<IShape>::text);
        EXPECT_EQ(shape.refs, 2);  // the host sequence holds its own
        EXPECT_EQ(plain.refs, 1);
        EXPECT_EQ(ToHost<Shapes>(&outer).at(0).at(0)->Corners(), 4);
    }
    EXPECT_EQ(shape.refs, 1);

    plain.is_shape = true;
    shape.throws = true;  // a failing query gives back what was already converted
    void* two[] = {plain.face(), shape.face()};
    ObjectReferenceVector_t failing{2, two};
    EXPECT_THROW(ToHost<SmartPtr<IShape>>(&failing), std::runtime_error);
    EXPECT_EQ(plain.refs, 1);
}

// ---- Result conversion.

TEST(NewVector, PackedFlagsBecomeZeroOrOnePerElementAcrossWords) {
    std::vector<bool> many(70);
    for (std::size_t i = 0; i < many.size(); ++i) many[i] = i % 3 == 0;
    BoolVector_t* v = NewVector<BoolVector_t>(many);
    ASSERT_EQ(v->size, 70u);
    for (std::size_t i = 0; i < many.size(); ++i) EXPECT_EQ(v->data[i], i % 3 == 0 ? 1 : 0) << i;
    BoolVector_Delete(v);
}

TEST(NewVector, ObjectsCarryOneReferenceForTheCallerAndFacelessOnesAreNull) {
    Shape a, faceless;
    faceless.has_object_face = false;
    {
        const Shapes host{SmartPtr<IShape>(&a), SmartPtr<IShape>(), SmartPtr<IShape>(&faceless)};
        ObjectReferenceVector_t* v = NewVector<ObjectReferenceVector_t>(host);
        ASSERT_EQ(v->size, 3u);
        EXPECT_EQ(v->data[0], a.face());
        EXPECT_EQ(v->data[1], nullptr);
        EXPECT_EQ(v->data[2], nullptr);
        EXPECT_EQ(a.asked, tvapi::IAPIObjectIID<tvapi::IAPIObject>::text);
        EXPECT_EQ(a.refs, 3);  // the caller's, the host sequence's and the test's own
        IAPIObject_Release(v->data[0]);
        ObjectReferenceVector_Delete(v);
    }
    EXPECT_EQ(a.refs, 1);
    EXPECT_EQ(faceless.refs, 2);  // the reference gained before the failed query stays
}

TEST(Refill, ReplacesTheContentsAndANullVectorDropsTheResult) {
    StringVector_t* s = StringVector_Create(1);
    StringVector_Set(s, 0, TVAPIC_TEXT("an old text that lives on the heap"));  // freed by the refill
    Refill(s, std::vector<WString>{WString(TVAPIC_TEXT("new")), WString()});
    ASSERT_EQ(s->size, 2u);
    EXPECT_EQ(WString(StringVector_Get(s, 0)), TVAPIC_TEXT("new"));
    StringVector_Delete(s);

    Refill(static_cast<DoubleVector_t*>(nullptr), std::vector<double>{1.0});
    Shape shape;
    Refill(static_cast<ObjectReferenceVector_t*>(nullptr), Shapes{SmartPtr<IShape>(&shape)});
    EXPECT_EQ(shape.refs, 1);
}

}  // namespace
