// Property value handles through the C functions, and the host stand-in's
// value classes underneath them.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

#include "common/c_heap.h"
#include "containers/value_handles.h"
#include "tvAPIC.h"
#include "tvapi/values.h"

namespace {

using tvapi::PropertyValue;
using tvapi::WString;

// Takes a returned text and frees it, as a C caller must.
WString Take(tvWChar* s) {
    EXPECT_NE(s, nullptr);
    if (!s) return {};
    WString out(s);
    c_heap::Free(s);
    return out;
}

// A handle for one test. PropertyValue_Delete gives back the storage only, so
// a value left holding a heap text would keep it; the fixture empties the
// value first (storing a number drops the text) to keep leak checks quiet.
class PropertyValueHandleTest : public ::testing::Test {
protected:
    void TearDown() override {
        PropertyValue_SetInt(h, 0);
        PropertyValue_Delete(h);
    }
    PropertyValue_t* h = PropertyValue_Create();
};

TEST_F(PropertyValueHandleTest, NewValueIsEmpty) {
    ASSERT_NE(h->value, nullptr);
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::Empty);
    EXPECT_EQ(PropertyValue_GetBool(h), 0);
    EXPECT_EQ(PropertyValue_GetInt(h), 0);
    EXPECT_EQ(PropertyValue_GetDouble(h), 0.0);
    EXPECT_EQ(Take(PropertyValue_GetString(h)), TVAPIC_TEXT(""));
    EXPECT_EQ(Take(PropertyValue_ToString(h)), TVAPIC_TEXT(""));
    EXPECT_EQ(PropertyValue_ToInt(h), 0);
}

TEST_F(PropertyValueHandleTest, AnyNonZeroFlagIsTrueAndReadsAsOne) {
    PropertyValue_SetBool(h, 7);
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::Bool);
    EXPECT_EQ(PropertyValue_GetBool(h), 1);
    EXPECT_EQ(PropertyValue_ToBool(h), 1);
    EXPECT_EQ(PropertyValue_ToInt(h), 1);
    EXPECT_EQ(Take(PropertyValue_ToString(h)), TVAPIC_TEXT("true"));
    PropertyValue_SetBool(h, INT_MIN);
    EXPECT_EQ(PropertyValue_GetBool(h), 1);
    PropertyValue_SetBool(h, 0);
    EXPECT_EQ(PropertyValue_GetBool(h), 0);
    EXPECT_EQ(Take(PropertyValue_ToString(h)), TVAPIC_TEXT("false"));
}

TEST_F(PropertyValueHandleTest, GettersAnswerOnlyForTheStoredType) {
    PropertyValue_SetInt(h, -42);
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::Int);
    EXPECT_EQ(PropertyValue_GetInt(h), -42);
    EXPECT_EQ(PropertyValue_GetDouble(h), 0.0);
    EXPECT_EQ(PropertyValue_GetBool(h), 0);
    EXPECT_EQ(Take(PropertyValue_GetString(h)), TVAPIC_TEXT(""));
    EXPECT_EQ(PropertyValue_ToDouble(h), -42.0);
    EXPECT_EQ(PropertyValue_ToBool(h), 1);
    EXPECT_EQ(Take(PropertyValue_ToString(h)), TVAPIC_TEXT("-42"));

    PropertyValue_SetString(h, TVAPIC_TEXT("5"));
    PropertyValue_SetDouble(h, 2.5);  // a later Set replaces type and value
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::Double);
    EXPECT_EQ(PropertyValue_GetDouble(h), 2.5);
    EXPECT_EQ(Take(PropertyValue_GetString(h)), TVAPIC_TEXT(""));
}

TEST_F(PropertyValueHandleTest, NullTextIsStoredAsEmptyText) {
    PropertyValue_SetString(h, nullptr);
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::String);
    EXPECT_EQ(Take(PropertyValue_GetString(h)), TVAPIC_TEXT(""));
}

TEST_F(PropertyValueHandleTest, EveryTextResultIsAFreshWideBlock) {
    PropertyValue_SetString(h, TVAPIC_TEXT("a text longer than the inline buffer"));
    tvWChar* first = PropertyValue_GetString(h);
    tvWChar* second = PropertyValue_GetString(h);
    ASSERT_NE(first, second);
#if defined(__GLIBC__)
    EXPECT_GE(malloc_usable_size(first), (36u + 1) * 8);
#endif
    EXPECT_EQ(Take(first), TVAPIC_TEXT("a text longer than the inline buffer"));
    EXPECT_EQ(Take(second), TVAPIC_TEXT("a text longer than the inline buffer"));  // unharmed by the free
}

TEST_F(PropertyValueHandleTest, HostTextWithAZeroInsideIsCopiedWhole) {
    h->value->SetString(WString{TVAPIC_TEXT('a'), 0, TVAPIC_TEXT('b')});
    tvWChar* copy = PropertyValue_GetString(h);
    EXPECT_EQ(copy[0], TVAPIC_TEXT('a'));
    EXPECT_EQ(copy[1], 0);
    EXPECT_EQ(copy[2], TVAPIC_TEXT('b'));
    EXPECT_EQ(copy[3], 0);
    c_heap::Free(copy);
}

TEST_F(PropertyValueHandleTest, TextIsConvertedAsADecimalNumber) {
    PropertyValue_SetString(h, TVAPIC_TEXT(" 12.75 "));
    EXPECT_EQ(PropertyValue_ToDouble(h), 12.75);
    EXPECT_EQ(PropertyValue_ToInt(h), 12);
    EXPECT_EQ(PropertyValue_ToBool(h), 1);
    PropertyValue_SetString(h, TVAPIC_TEXT("-3e2"));
    EXPECT_EQ(PropertyValue_ToInt(h), -300);
    PropertyValue_SetString(h, TVAPIC_TEXT("+0"));
    EXPECT_EQ(PropertyValue_ToBool(h), 0);
}

TEST_F(PropertyValueHandleTest, UnreadableTextConvertsToZero) {
    // The last: a non-ASCII digit.
    const tvWChar* texts[] = {TVAPIC_TEXT(""), TVAPIC_TEXT("abc"), TVAPIC_TEXT("12abc"), TVAPIC_TEXT("1,5"),
                              TVAPIC_TEXT("\u0661")};
    for (int i = 0; i < 5; ++i) {
        PropertyValue_SetString(h, texts[i]);
        EXPECT_EQ(PropertyValue_ToInt(h), 0) << "text " << i;
        EXPECT_EQ(PropertyValue_ToDouble(h), 0.0) << "text " << i;
        EXPECT_EQ(PropertyValue_ToBool(h), 0) << "text " << i;
    }
}

TEST(PropertyValueTest, FlagWordsReadBackInAnyCase) {
    PropertyValue v;
    v.SetString(WString(TVAPIC_TEXT("TRUE")));
    EXPECT_TRUE(v.ToBool());
    EXPECT_EQ(v.ToInt(), 1);
    v.SetString(WString(TVAPIC_TEXT("False")));
    EXPECT_FALSE(v.ToBool());
    EXPECT_EQ(v.ToDouble(), 0.0);
}

TEST(PropertyValueTest, RealsBecomeShortTextWithoutTrailingZeros) {
    const std::pair<double, const tvWChar*> cases[] = {
        {2.5, TVAPIC_TEXT("2.5")}, {3.0, TVAPIC_TEXT("3")}, {0.1, TVAPIC_TEXT("0.1")}, {-1.25, TVAPIC_TEXT("-1.25")}, {100.0, TVAPIC_TEXT("100")}, {0.0, TVAPIC_TEXT("0")},
    };
    PropertyValue v;
    for (const auto& [number, text] : cases) {
        v.SetDouble(number);
        EXPECT_EQ(v.ToString(), text) << number;
        PropertyValue back;
        back.SetString(v.ToString());
        EXPECT_EQ(back.ToDouble(), number);  // the text reads back exactly
    }
}

TEST(PropertyValueTest, RealsTruncateTowardZeroAndSaturate) {
    PropertyValue v;
    const std::pair<double, int> cases[] = {
        {2.9, 2}, {-2.9, -2}, {1e20, INT_MAX}, {-1e20, INT_MIN}, {std::nan(""), 0},
    };
    for (const auto& [number, expected] : cases) {
        v.SetDouble(number);
        EXPECT_EQ(v.ToInt(), expected) << number;
    }
    v.SetDouble(0.0);
    EXPECT_FALSE(v.ToBool());
    v.SetDouble(-0.5);
    EXPECT_TRUE(v.ToBool());
}

TEST(PropertyValueTest, CopiesAreIndependentAndMovesLeaveAnEmptyValue) {
    PropertyValue original;
    original.SetString(WString(TVAPIC_TEXT("a text long enough to be on the heap")));
    PropertyValue copy(original);
    original.SetInt(1);
    EXPECT_EQ(copy.GetString(), WString(TVAPIC_TEXT("a text long enough to be on the heap")));

    PropertyValue moved(std::move(copy));
    EXPECT_EQ(moved.GetValueType(), PropertyValue::String);
    EXPECT_EQ(copy.GetValueType(), PropertyValue::Empty);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(copy.GetString(), WString());

    PropertyValue assigned;
    assigned = std::move(moved);
    EXPECT_EQ(assigned.ToString(), WString(TVAPIC_TEXT("a text long enough to be on the heap")));
    assigned = original;
    EXPECT_EQ(assigned.GetInt(), 1);
}

}  // namespace
