// What the property value functions add to the host value they wrap: flags
// go in as integers and come back as 0 or 1, a null text is the empty text,
// and text comes back as a fresh block copied whole.
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

TEST_F(PropertyValueHandle, AnyNonZeroFlagIsTrueAndEveryFlagReadsAsZeroOrOne) {
    for (int flag : {7, 256, INT_MIN}) {
        PropertyValue_SetBool(h, flag);
        EXPECT_EQ(PropertyValue_GetBool(h), 1) << flag;
        EXPECT_EQ(PropertyValue_ToBool(h), 1) << flag;
    }
    PropertyValue_SetBool(h, 0);
    EXPECT_EQ(PropertyValue_GetBool(h), 0);
}

TEST_F(PropertyValueHandle, ANullTextIsTheEmptyText) {
    PropertyValue_SetString(h, TVAPIC_TEXT("before"));
    PropertyValue_SetString(h, nullptr);
    EXPECT_EQ(PropertyValue_GetValueType(h), PropertyValue::String);
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
