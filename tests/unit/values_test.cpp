// Property value handles through the C functions: each reaches the host
// value it wraps, flags go in as integers and come back as 0 or 1, and text
// comes back as a fresh block.
#include <gtest/gtest.h>

#include <climits>

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
    WString out = s ? WString(s) : WString();
    c_heap::Free(s);
    return out;
}

// A handle for one test, emptied before it goes (PropertyValue_Delete gives
// back the storage only; a number drops any heap text).
class PropertyValueHandle : public ::testing::Test {
protected:
    void TearDown() override {
        PropertyValue_SetInt(h, 0);
        PropertyValue_Delete(h);
    }
    PropertyValue_t* h = PropertyValue_Create();
};

TEST_F(PropertyValueHandle, StartsEmptyAndAnyNonZeroFlagIsTrueAndReadsAsOne) {
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::Empty);
    EXPECT_EQ(Take(PropertyValue_GetString(h)), TVAPIC_TEXT(""));
    for (int flag : {7, INT_MIN}) {
        PropertyValue_SetBool(h, flag);
        EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::Bool);
        EXPECT_EQ(PropertyValue_GetBool(h), 1);
    }
    PropertyValue_SetBool(h, 0);
    EXPECT_EQ(PropertyValue_GetBool(h), 0);
}

TEST_F(PropertyValueHandle, GettersAnswerOnlyForTheStoredType) {
    PropertyValue_SetInt(h, -42);
    EXPECT_EQ(PropertyValue_GetInt(h), -42);
    EXPECT_EQ(PropertyValue_GetDouble(h), 0.0);
    EXPECT_EQ(PropertyValue_ToDouble(h), -42.0);
    EXPECT_EQ(Take(PropertyValue_ToString(h)), TVAPIC_TEXT("-42"));
    PropertyValue_SetString(h, nullptr);  // the empty text
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::String);
    PropertyValue_SetDouble(h, 2.5);  // a later Set replaces type and value
    EXPECT_EQ(PropertyValue_GetDouble(h), 2.5);
    EXPECT_EQ(Take(PropertyValue_GetString(h)), TVAPIC_TEXT(""));
}

TEST_F(PropertyValueHandle, EveryTextResultIsAFreshBlockCopiedWhole) {
    h->value->SetString(WString{TVAPIC_TEXT('a'), 0, TVAPIC_TEXT('b')});
    tvWChar* first = PropertyValue_GetString(h);
    tvWChar* second = PropertyValue_GetString(h);
    ASSERT_NE(first, second);
    EXPECT_EQ(WString(first, 4), (WString{TVAPIC_TEXT('a'), 0, TVAPIC_TEXT('b'), 0}));
    c_heap::Free(first);
    EXPECT_EQ(WString(second, 4), (WString{TVAPIC_TEXT('a'), 0, TVAPIC_TEXT('b'), 0}));  // unharmed by the free
    c_heap::Free(second);
}

}  // namespace
